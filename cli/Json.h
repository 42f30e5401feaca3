#pragma once
// A JSON value and its text, just what the --json output needs: null, booleans, numbers (kept
// as their shortest text), strings, arrays and objects whose keys keep their order.

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace zephra::cli {

class TJson {
 public:
  using TArray = std::vector<TJson>;
  using TObject = std::vector<std::pair<std::string, TJson>>;

  TJson() = default;  // null
  TJson(bool value) : FValue(value) {}
  TJson(int32_t value) : FValue(TNumber{std::to_string(value)}) {}
  TJson(int64_t value) : FValue(TNumber{std::to_string(value)}) {}
  TJson(float value);   // null when not finite
  TJson(double value);  // null when not finite
  TJson(std::string value) : FValue(std::move(value)) {}
  TJson(const char* value) : FValue(std::string(value)) {}
  TJson(TArray value) : FValue(std::move(value)) {}
  TJson(TObject value) : FValue(std::move(value)) {}
  template <typename T>
  TJson(const std::optional<T>& value) : TJson(value ? TJson(*value) : TJson()) {}

  // The text, indented by two blanks a level, without a final line end.
  void Write(std::ostream& out, int indent = 0) const;

 private:
  struct TNumber {
    std::string Text;
  };

  std::variant<std::nullptr_t, bool, TNumber, std::string, TArray, TObject> FValue = nullptr;
};

// value's text and a line end.
std::ostream& operator<<(std::ostream& out, const TJson& value);

}  // namespace zephra::cli
