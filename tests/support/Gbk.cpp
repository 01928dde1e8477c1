#include "support/Gbk.h"

#include <vector>

#include "norm_utility/AlgoIconv.h"

namespace zeg_test {

namespace {

std::string convert(const char* from, const char* to, const std::string& text) {
    norm_utility::AlgoIconv cd;
    std::vector<char> out;
    if (cd.open(from, to) != 0) return std::string();
    const int n = cd.conv(text.data(), static_cast<int>(text.size()), out);
    return std::string(out.data(), static_cast<std::size_t>(n));
}

}  // namespace

std::string gbk(const std::string& utf8) { return convert("utf-8", "gbk", utf8); }

std::string utf8(const std::string& gbk) { return convert("gbk", "utf-8", gbk); }

}  // namespace zeg_test
