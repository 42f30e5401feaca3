#include "Json.h"

#include <cmath>
#include <cstdio>

#include "NumberText.h"

namespace zephra::cli {

namespace {

void WriteString(std::ostream& out, const std::string& text) {
  out << '"';
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      out << '\\' << c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
      out << escaped;
    } else {
      out << c;  // UTF-8 passes as it is
    }
  }
  out << '"';
}

void NewLine(std::ostream& out, int indent) {
  out << '\n' << std::string(static_cast<size_t>(indent) * 2, ' ');
}

}  // namespace

TJson::TJson(float value) {
  if (std::isfinite(value)) {
    FValue = TNumber{ShortText(value)};
  }
}

TJson::TJson(double value) {
  if (std::isfinite(value)) {
    FValue = TNumber{ShortText(value)};
  }
}

void TJson::Write(std::ostream& out, int indent) const {
  if (std::holds_alternative<std::nullptr_t>(FValue)) {
    out << "null";
  } else if (const bool* flag = std::get_if<bool>(&FValue)) {
    out << (*flag ? "true" : "false");
  } else if (const TNumber* number = std::get_if<TNumber>(&FValue)) {
    out << number->Text;
  } else if (const std::string* text = std::get_if<std::string>(&FValue)) {
    WriteString(out, *text);
  } else if (const TArray* array = std::get_if<TArray>(&FValue)) {
    out << '[';
    for (size_t i = 0; i < array->size(); ++i) {
      out << (i > 0 ? "," : "");
      NewLine(out, indent + 1);
      (*array)[i].Write(out, indent + 1);
    }
    if (!array->empty()) {
      NewLine(out, indent);
    }
    out << ']';
  } else {
    const TObject& object = std::get<TObject>(FValue);
    out << '{';
    for (size_t i = 0; i < object.size(); ++i) {
      out << (i > 0 ? "," : "");
      NewLine(out, indent + 1);
      WriteString(out, object[i].first);
      out << ": ";
      object[i].second.Write(out, indent + 1);
    }
    if (!object.empty()) {
      NewLine(out, indent);
    }
    out << '}';
  }
}

std::ostream& operator<<(std::ostream& out, const TJson& value) {
  value.Write(out);
  return out << '\n';
}

}  // namespace zephra::cli
