// zeg-dict: the dictionary compiler. See tools/ZegDict.h and tools/README.md.
#include <cerrno>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "tools/StandardStreams.h"
#include "tools/ZegDict.h"

int main(int argc, char** argv) {
    if (!zeg_tools::guardStandardStreams("zeg-dict", false)) return 2;
    std::vector<std::string> args(argv + 1, argv + argc);
    const int code = zeg_tools::ZegDict(std::cout, std::cerr).run(args);
    if (!std::cout.flush()) {
        std::cerr << "zeg-dict: cannot write to standard output: " << std::strerror(errno) << '\n';
        return 1;
    }
    return code;
}
