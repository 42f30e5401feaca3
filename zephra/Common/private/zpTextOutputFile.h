#pragma once
// A text file written through the library's one text writer (UTF-8, CR LF) onto the one checked
// output file.

#include <string>
#include <string_view>

#include <zephra/Common/private/zpOutputFile.h>
#include <zephra/Common/private/zpTextWriter.h>

namespace zephra {

class TTextOutputFile {
 public:
  // Raises EInOutError naming the file when it can't be created.
  TTextOutputFile(const std::string& FileName, TOutputFile::TMode Mode)
      : FFile(FileName, Mode), FWriter(FFile.Stream()) {}

  void Write(std::string_view Text) { FWriter.Write(Text); }
  void WriteLine(std::string_view Line) { FWriter.WriteLine(Line); }
  TTextWriter& Writer() { return FWriter; }

  // Hands the rest of the text on and commits the file; raises EInOutError when that fails.
  // Without it, a replacement leaves the target as it was, while a file written in place keeps
  // the text written up to then.
  void Commit() {
    FWriter.Flush();
    FFile.Commit();
  }

 private:
  TOutputFile FFile;
  TTextWriter FWriter;  // after FFile: it hands its buffer on before the file closes
};

}  // namespace zephra
