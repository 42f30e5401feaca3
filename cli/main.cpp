// zephra: the command-line tool. Everything but the process itself is in the commands library.

#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "App.h"

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv + 1, argv + argc);
  return zephra::cli::RunZephra(args, std::cout, std::cerr, isatty(STDERR_FILENO) == 1);
}
