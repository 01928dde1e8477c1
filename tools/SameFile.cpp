#include "tools/SameFile.h"

#include <sys/stat.h>

#include "tools/ArgParser.h"

namespace zeg_tools {

bool sameFile(const std::string& a, const std::string& b) {
    struct stat sa, sb;
    return stat(a.c_str(), &sa) == 0 && stat(b.c_str(), &sb) == 0 && sa.st_dev == sb.st_dev &&
           sa.st_ino == sb.st_ino;
}

std::string outputClash(const ArgParser& parser, const std::vector<std::string>& names) {
    for (const char* output : {"output", "out", "patch-output"}) {
        if (!parser.has(output)) continue;
        for (const std::string& other : names) {
            if (other != output && parser.has(other) &&
                sameFile(parser.get(output), parser.get(other)))
                return std::string("--") + output + " names the same file as --" + other + " (" +
                       parser.get(other) + ")";
        }
    }
    return "";
}

}  // namespace zeg_tools
