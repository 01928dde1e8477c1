#include "ws/core/wsStringUtil.h"

namespace ws {

namespace {
const char* const kBlanks = " \t";
}

int stripSpace(const std::string& in, std::string& out) {
    std::string::size_type first = in.find_first_not_of(kBlanks);
    if (first == std::string::npos) first = in.size();
    out = in.substr(first);
    return static_cast<int>(first);
}

int rstripSpace(const std::string& in, std::string& out) {
    const std::string::size_type last = in.find_last_not_of(kBlanks);
    if (last == std::string::npos) {
        out.clear();
        return -1;
    }
    out = in.substr(0, last + 1);
    return static_cast<int>(last);
}

std::string::size_type match(const std::string& pattern, const std::string& text) {
    if (pattern.empty()) return std::string::npos;
    if (pattern[0] == '^') {
        const std::string::size_type len = pattern.size() - 1;
        return text.compare(0, len, pattern, 1, len) == 0 ? 0 : std::string::npos;
    }
    if (pattern.back() == '$') {
        const std::string rest = pattern.substr(0, pattern.size() - 1);
        const std::string::size_type at = text.find(rest);
        return at != std::string::npos && at + rest.size() == text.size() ? at
                                                                           : std::string::npos;
    }
    return text.find(pattern);
}

bool startwith(const std::string& prefix, const std::string& text) {
    return match("^" + prefix, text) != std::string::npos;
}

bool endwith(const std::string& suffix, const std::string& text) {
    return match(suffix + "$", text) != std::string::npos;
}

}  // namespace ws
