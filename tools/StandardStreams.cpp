#include "tools/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/FdLineReader.h"

namespace zeg_tools {

namespace {

bool isClosed(int fd) { return fcntl(fd, F_GETFD) == -1 && errno == EBADF; }

}  // namespace

bool guardStandardStreams(const char* tool, bool readsInput) {
    bool closed[3];
    for (int fd = 0; fd < 3; ++fd) closed[fd] = isClosed(fd);
    for (int fd = 0; fd < 3; ++fd) {
        // open() takes the lowest free descriptor, which is `fd` itself here.
        if (closed[fd] && open("/dev/null", fd == 0 ? O_RDONLY : O_WRONLY) != fd) return false;
    }
    bool usable = true;
    if (closed[0] && readsInput) {
        std::fprintf(stderr, "%s: standard input is closed\n", tool);
        usable = false;
    }
    if (closed[1]) {
        std::fprintf(stderr, "%s: standard output is closed\n", tool);
        usable = false;
    }
    return usable;
}

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
