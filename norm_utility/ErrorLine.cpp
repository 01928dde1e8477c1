#include "norm_utility/ErrorLine.h"

#include <cstdio>

namespace norm_utility {

void writeErrorLine(const std::string& line) {
    std::string out;
    out.reserve(line.size() + 1);
    out.append(line).push_back('\n');
    std::fwrite(out.data(), 1, out.size(), stderr);
    std::fflush(stderr);
}

}  // namespace norm_utility
