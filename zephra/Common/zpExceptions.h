#pragma once
/// @file
/// The exception classes of the library. Every failure of the library's own is an Exception or
/// derives from it, and carries a message and nothing else; messages quoted in a contract are
/// used to the letter. All are exported with their type information, so hosts catch them by type.

#include <exception>
#include <string>

#include <zephra/Common/zpExport.h>

namespace zephra {

/// The root of the library's failures, and the "general exception" that fixed messages without a
/// class of their own are raised with.
class ZEPHRA_API Exception : public std::exception {
 public:
  /// A failure that says message.
  explicit Exception(std::string message) : FMessage(std::move(message)) {}
  /// The message as raised.
  const std::string& Message() const noexcept { return FMessage; }
  /// The message, as Message() gives it.
  const char* what() const noexcept override { return FMessage.c_str(); }

 private:
  std::string FMessage;
};

/// Declares one exported exception class that adds nothing to its base but the base's
/// constructors. Undefined again after the list, so hosts never see it.
#define ZEPHRA_DECLARE_EXCEPTION(Name, Base) \
  class ZEPHRA_API Name : public Base {      \
   public:                                   \
    using Base::Base;                        \
  }

/// An invalid argument.
ZEPHRA_DECLARE_EXCEPTION(EArgumentException, Exception);
/// A missing (null) argument.
ZEPHRA_DECLARE_EXCEPTION(EArgumentNullException, EArgumentException);
/// An operation that the object's state does not allow.
ZEPHRA_DECLARE_EXCEPTION(EInvalidOpException, Exception);
/// A check on input data that failed, such as a binary record cut short.
ZEPHRA_DECLARE_EXCEPTION(EAssertionFailed, Exception);
/// Text that is not the number it should be; the message quotes the text.
ZEPHRA_DECLARE_EXCEPTION(EConvertError, Exception);
/// A file that can't be opened.
ZEPHRA_DECLARE_EXCEPTION(EFOpenError, Exception);
/// A file that can't be created, read or written.
ZEPHRA_DECLARE_EXCEPTION(EInOutError, Exception);
/// An index outside a list.
ZEPHRA_DECLARE_EXCEPTION(EListError, Exception);
/// A floating-point failure: division by zero, or a value with no integer form.
ZEPHRA_DECLARE_EXCEPTION(EMathError, Exception);
/// Declared for hosts that look up reference systems; the library itself never raises it, since
/// an unknown reference system is kept as text.
ZEPHRA_DECLARE_EXCEPTION(ERefSystemNotFound, Exception);
/// A raster data file that doesn't hold what its header says; also a polygon without an area to
/// calculate.
ZEPHRA_DECLARE_EXCEPTION(EImageFileError, Exception);
/// A vector layer or coordinate file that can't be loaded, saved or worked on.
ZEPHRA_DECLARE_EXCEPTION(EVectorFileError, Exception);
/// A palette index out of range.
ZEPHRA_DECLARE_EXCEPTION(EZephraPalette, Exception);

#undef ZEPHRA_DECLARE_EXCEPTION

/// A header that can't be written or converted: an unknown data type or unit name.
class ZEPHRA_API EImageHeaderError : public Exception {
 public:
  /// Raised with an empty message by callers that have no words of their own; the message then
  /// names the one failure that needs none, "Unknown Image Header DataType".
  explicit EImageHeaderError(const std::string& msg)
      : Exception(msg.empty() ? "Unknown Image Header DataType" : msg) {}
};

}  // namespace zephra
