// zeg-dict: the dictionary compiler. See tools/ZegDict.h and tools/README.md.
#include <iostream>
#include <string>
#include <vector>

#include "tools/ZegDict.h"

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    return zeg_tools::ZegDict(std::cout, std::cerr).run(args);
}
