#pragma once
// The output file of the text exporters: created anew, written through the library's text
// writer (UTF-8, CR LF) and closed on every way out.

#include <fstream>
#include <string>
#include <string_view>

#include <zephra/Common/zpTextWriter.h>

namespace zephra {

class TExportTextFile {
 public:
  // Raises EInOutError naming the file when it can't be created.
  explicit TExportTextFile(const std::string& FileName);

  void WriteLine(std::string_view Line) { FWriter.WriteLine(Line); }
  void Write(std::string_view Text) { FWriter.Write(Text); }
  // Hands everything to the disk; raises EInOutError when that fails.
  void Close();

 private:
  std::ofstream FStream;
  TTextWriter FWriter;
};

}  // namespace zephra
