// zephra: the command-line tool. For now it prints the report of a raster header.

#include <cstdio>
#include <exception>
#include <string>

#include <zephra/zephra.h>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr,
                 "usage: zephra FILE\n  prints the report of the raster header beside FILE\n");
    return 2;
  }
  try {
    const auto header = zephra::TImageHeader::Open(argv[1]);
    std::fputs(header->Text().c_str(), stdout);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "zephra: %s\n", error.what());
    return 1;
  }
}
