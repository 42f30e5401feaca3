// A program of a user of the installed library: it checks that the library it loaded is the one
// its headers came with and prints the size of a raster header.

#include <cstdio>
#include <cstring>

#include <zephra/zephra.h>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: consumer FILE.doc\n");
    return 2;
  }
  if (std::strcmp(zephra::LibraryVersionString(), ZEPHRA_VERSION_STRING) != 0) {
    std::fprintf(stderr, "consumer: loaded %s, built against %s\n",
                 zephra::LibraryVersionString(), ZEPHRA_VERSION_STRING);
    return 1;
  }
  try {
    const auto header = zephra::TImageHeader::Open(argv[1]);
    std::printf("zephra %s: %d x %d\n", ZEPHRA_VERSION_STRING, header->Width, header->Height);
    return 0;
  } catch (const zephra::Exception& error) {
    std::fprintf(stderr, "consumer: %s\n", error.what());
    return 1;
  }
}
