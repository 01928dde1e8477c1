#include "tools/StandardStreams.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/FdLineReader.h"

namespace zeg_tools {

int finishStandardStreams(const char* tool, const FdLineReader& input) {
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        std::fprintf(stderr, "%s: cannot write to standard output: %s\n", tool, std::strerror(errno));
        return 1;
    }
    if (input.failed()) {
        std::fprintf(stderr, "%s: cannot read standard input: %s\n", tool, std::strerror(errno));
        return 1;
    }
    return 0;
}

}  // namespace zeg_tools
