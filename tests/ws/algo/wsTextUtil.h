#ifndef ZEG_TESTS_WS_ALGO_WSTEXTUTIL_H
#define ZEG_TESTS_WS_ALGO_WSTEXTUTIL_H

#include <string>
#include <vector>

#include "ws/core/wsEncodeConverter.h"

namespace zeg_test {

inline std::vector<unsigned short> units(const std::u16string& s) {
    return std::vector<unsigned short>(s.begin(), s.end());
}

inline std::string utf8(const unsigned short* text, std::size_t n) {
    if (n == 0) return "";
    const EncodeConverter::Utf8String bytes =
        EncodeConverter::utf16ToUtf8(EncodeConverter::Utf16String(text, n));
    return std::string(bytes.begin(), bytes.end());
}

}  // namespace zeg_test

#endif
