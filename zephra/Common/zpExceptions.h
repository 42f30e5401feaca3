#pragma once
// The exception classes of the library. Every failure carries a message and nothing else.

#include <exception>
#include <string>

namespace zephra {

class Exception : public std::exception {
 public:
  explicit Exception(std::string message) : FMessage(std::move(message)) {}
  const std::string& Message() const noexcept { return FMessage; }
  const char* what() const noexcept override { return FMessage.c_str(); }

 private:
  std::string FMessage;
};

#define ZEPHRA_DECLARE_EXCEPTION(Name, Base) \
  class Name : public Base {                 \
   public:                                   \
    using Base::Base;                        \
  }

ZEPHRA_DECLARE_EXCEPTION(EArgumentException, Exception);
ZEPHRA_DECLARE_EXCEPTION(EArgumentNullException, EArgumentException);
ZEPHRA_DECLARE_EXCEPTION(EInvalidOpException, Exception);
ZEPHRA_DECLARE_EXCEPTION(EAssertionFailed, Exception);
ZEPHRA_DECLARE_EXCEPTION(EConvertError, Exception);
ZEPHRA_DECLARE_EXCEPTION(EFOpenError, Exception);
ZEPHRA_DECLARE_EXCEPTION(EInOutError, Exception);
ZEPHRA_DECLARE_EXCEPTION(EListError, Exception);
ZEPHRA_DECLARE_EXCEPTION(EMathError, Exception);
ZEPHRA_DECLARE_EXCEPTION(ERefSystemNotFound, Exception);
ZEPHRA_DECLARE_EXCEPTION(EImageFileError, Exception);
ZEPHRA_DECLARE_EXCEPTION(EVectorFileError, Exception);
ZEPHRA_DECLARE_EXCEPTION(EZephraPalette, Exception);

#undef ZEPHRA_DECLARE_EXCEPTION

// Raised with an empty message by callers that have no words of their own; the message then
// names the one failure that needs none.
class EImageHeaderError : public Exception {
 public:
  explicit EImageHeaderError(const std::string& msg)
      : Exception(msg.empty() ? "Unknown Image Header DataType" : msg) {}
};

}  // namespace zephra
