#pragma once
// Printers: every command result as text for people (the default) or as JSON (--json). The JSON
// shapes are documented in the README and kept stable.

#include <ostream>
#include <type_traits>

#include "Context.h"
#include "ConvertCommand.h"
#include "HeaderCommands.h"
#include "InfoCommand.h"
#include "Json.h"
#include "PaletteCommands.h"
#include "ReclassCommand.h"
#include "SampleCommand.h"
#include "VectorCommands.h"

namespace zephra::cli {

void PrintText(const TInfoResult& result, std::ostream& out);
void PrintText(const TSampleResult& result, std::ostream& out);
void PrintText(const TWriteResult& result, std::ostream& out);
void PrintText(const TReclassResult& result, std::ostream& out);
void PrintText(const THeaderResult& result, std::ostream& out);
void PrintText(const THeaderSetResult& result, std::ostream& out);
void PrintText(const TVectorInfoResult& result, std::ostream& out);
void PrintText(const TVectorPipResult& result, std::ostream& out);
void PrintText(const TVectorAreaResult& result, std::ostream& out);
void PrintText(const TPaletteResult& result, std::ostream& out);

TJson ToJson(const TInfoResult& result);
TJson ToJson(const TSampleResult& result);
TJson ToJson(const TWriteResult& result);
TJson ToJson(const TReclassResult& result);
TJson ToJson(const THeaderResult& result);
TJson ToJson(const THeaderSetResult& result);
TJson ToJson(const TVectorInfoResult& result);
TJson ToJson(const TVectorPipResult& result);
TJson ToJson(const TVectorAreaResult& result);
TJson ToJson(const TPaletteResult& result);

// Results that only report what a command wrote, which --quiet leaves unprinted as text.
template <typename TResult>
constexpr bool kReportsWrite =
    std::is_same_v<TResult, TWriteResult> || std::is_same_v<TResult, TReclassResult> ||
    std::is_same_v<TResult, THeaderSetResult>;

template <typename TResult>
void Print(const TResult& result, const TContext& context) {
  if (context.Format == TFormat::Json) {
    context.Out << ToJson(result);
  } else if (!(context.Quiet && kReportsWrite<TResult>)) {
    PrintText(result, context.Out);
  }
}

}  // namespace zephra::cli
