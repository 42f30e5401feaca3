#include <zephra/Common/private/zpTextReader.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include <zephra/Common/private/zpStreamBytes.h>
#include <zephra/Common/zpExceptions.h>

namespace zephra {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

void AppendUtf8(std::string& out, uint32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

std::string DecodeUtf16(std::string_view bytes, bool bigEndian) {
  std::string out;
  out.reserve(bytes.size());
  const auto unit = [&](size_t i) -> uint32_t {
    const auto b0 = static_cast<uint8_t>(bytes[i]);
    const auto b1 = static_cast<uint8_t>(bytes[i + 1]);
    return bigEndian ? (b0 << 8 | b1) : (b1 << 8 | b0);
  };
  size_t i = 0;
  for (; i + 1 < bytes.size(); i += 2) {
    const uint32_t u = unit(i);
    if (u >= 0xD800 && u <= 0xDBFF && i + 3 < bytes.size()) {
      const uint32_t low = unit(i + 2);
      if (low >= 0xDC00 && low <= 0xDFFF) {
        AppendUtf8(out, 0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00));
        i += 2;
        continue;
      }
    }
    if (u >= 0xD800 && u <= 0xDFFF) {
      out += kReplacement;
    } else {
      AppendUtf8(out, u);
    }
  }
  if (i < bytes.size()) {
    out += kReplacement;  // an odd trailing byte is half a code unit
  }
  return out;
}

// Length of the valid UTF-8 sequence at the start of s, or 0 if it is not one.
size_t ValidSequenceLength(std::string_view s) {
  const auto b0 = static_cast<uint8_t>(s[0]);
  size_t length = 0;
  uint32_t cp = 0;
  if (b0 >= 0xC2 && b0 <= 0xDF) {
    length = 2;
    cp = b0 & 0x1F;
  } else if (b0 >= 0xE0 && b0 <= 0xEF) {
    length = 3;
    cp = b0 & 0x0F;
  } else if (b0 >= 0xF0 && b0 <= 0xF4) {
    length = 4;
    cp = b0 & 0x07;
  } else {
    return 0;
  }
  if (s.size() < length) {
    return 0;
  }
  for (size_t k = 1; k < length; ++k) {
    const auto b = static_cast<uint8_t>(s[k]);
    if ((b & 0xC0) != 0x80) {
      return 0;
    }
    cp = (cp << 6) | (b & 0x3F);
  }
  const bool overlong = (length == 3 && cp < 0x800) || (length == 4 && cp < 0x10000);
  const bool surrogate = cp >= 0xD800 && cp <= 0xDFFF;
  return (overlong || surrogate || cp > 0x10FFFF) ? 0 : length;
}

// The length of the ASCII run at the start, eight bytes at a time: numeric files are all ASCII.
size_t AsciiPrefix(std::string_view s) {
  size_t i = 0;
  for (; i + 8 <= s.size(); i += 8) {
    uint64_t word = 0;
    std::memcpy(&word, s.data() + i, 8);
    if ((word & 0x8080808080808080u) != 0) {
      break;
    }
  }
  while (i < s.size() && static_cast<uint8_t>(s[i]) < 0x80) {
    ++i;
  }
  return i;
}

// True when the text is valid UTF-8 and nothing in it would change on decoding.
bool IsPlainUtf8(std::string_view s) {
  if (s.starts_with("\xEF\xBB\xBF") || s.starts_with("\xFF\xFE") || s.starts_with("\xFE\xFF")) {
    return false;
  }
  for (size_t i = AsciiPrefix(s); i < s.size(); i += AsciiPrefix(s.substr(i))) {
    const size_t length = ValidSequenceLength(s.substr(i));
    if (length == 0) {
      return false;
    }
    i += length;
  }
  return true;
}

std::string SanitiseUtf8(std::string bytes) {
  const size_t firstBad = AsciiPrefix(bytes);
  if (firstBad == bytes.size()) {
    return bytes;  // plain ASCII, the common case of numeric files
  }
  std::string out(bytes, 0, firstBad);
  out.reserve(bytes.size());
  std::string_view rest(bytes);
  rest.remove_prefix(firstBad);
  while (!rest.empty()) {
    if (static_cast<uint8_t>(rest[0]) < 0x80) {
      out += rest[0];
      rest.remove_prefix(1);
      continue;
    }
    const size_t length = ValidSequenceLength(rest);
    if (length == 0) {
      out += kReplacement;
      rest.remove_prefix(1);
    } else {
      out.append(rest.substr(0, length));
      rest.remove_prefix(length);
    }
  }
  return out;
}

bool StartsWith(const std::string& s, std::string_view prefix) {
  return s.compare(0, prefix.size(), prefix) == 0;
}

}  // namespace

std::string DecodeText(std::string bytes) {
  if (StartsWith(bytes, "\xEF\xBB\xBF")) {
    bytes.erase(0, 3);
    return SanitiseUtf8(std::move(bytes));
  }
  if (StartsWith(bytes, "\xFF\xFE")) {
    return DecodeUtf16(std::string_view(bytes).substr(2), false);
  }
  if (StartsWith(bytes, "\xFE\xFF")) {
    return DecodeUtf16(std::string_view(bytes).substr(2), true);
  }
  return SanitiseUtf8(std::move(bytes));
}

TTextReader::TTextReader(std::istream& Stream) : FDecoded(DecodeText(ReadStreamToEnd(Stream))) {}

TTextReader TTextReader::FromFile(const std::string& FileName) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(FileName.c_str(), "rb"),
                                                             &std::fclose);
  if (!file) {
    throw EFOpenError("Cannot open file \"" + FileName + "\"");
  }
  long size = 0;
  if (std::fseek(file.get(), 0, SEEK_END) == 0) {
    size = std::max(std::ftell(file.get()), 0L);
    std::rewind(file.get());
  }
  // calloc rather than a string: large blocks come fresh from the system, already zero, so the
  // bytes are written once, by the read. One byte more keeps the block valid for an empty file.
  TRawBytes bytes(static_cast<char*>(std::calloc(static_cast<size_t>(size) + 1, 1)));
  if (!bytes) {
    throw std::bad_alloc();
  }
  const size_t read = std::fread(bytes.get(), 1, static_cast<size_t>(size), file.get());
  if (std::ferror(file.get())) {
    throw EInOutError("Cannot read file \"" + FileName + "\"");
  }
  return TTextReader(std::move(bytes), read);
}

TTextReader::TTextReader(TRawBytes raw, size_t size) {
  if (IsPlainUtf8(std::string_view(raw.get(), size))) {
    FRaw = std::move(raw);
    FRawSize = size;
  } else {
    FDecoded = DecodeText(std::string(raw.get(), size));
  }
}

bool TTextReader::ReadLine(std::string_view& Line) {
  if (EndOfStream()) {
    return false;
  }
  const std::string_view text = Text();
  const size_t end = text.find_first_of("\r\n", FPos);
  if (end == std::string_view::npos) {
    Line = text.substr(FPos);
    FPos = text.size();
    return true;
  }
  Line = text.substr(FPos, end - FPos);
  FPos = end + ((text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n') ? 2 : 1);
  return true;
}

bool TTextReader::ReadLine(std::string& Line) {
  std::string_view view;
  if (!ReadLine(view)) {
    return false;
  }
  Line.assign(view);
  return true;
}

}  // namespace zephra
