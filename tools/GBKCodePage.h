#ifndef ZEG_TOOLS_GBKCODEPAGE_H
#define ZEG_TOOLS_GBKCODEPAGE_H

#include <vector>

#include "norm_utility/AlgoIconv.h"

namespace zeg_tools {

// iconv's GBK code page, asked one double-byte character at a time.
// A pair counts as a character only when iconv decodes it to exactly one
// non-ASCII code point and encodes that code point back to the same pair, so
// iconv's skipping of bad bytes can never pass for a character.
// Not copyable (owns two converters); one object per thread.
class GBKCodePage {
public:
    // Opens both converters. False when iconv lacks GBK or UTF-32LE.
    bool open();

    // The code point of the pair (b1, b2), or false when it is no character.
    // REQUIRES: open() succeeded.
    bool decode(unsigned char b1, unsigned char b2, char32_t& codePoint);

    // The double-byte GBK code of `codePoint` as b1 * 256 + b2, or false when
    // GBK has no double-byte character for it. REQUIRES: open() succeeded.
    bool encode(char32_t codePoint, unsigned& code);

private:
    norm_utility::AlgoIconv m_toUnicode;
    norm_utility::AlgoIconv m_toGBK;
    std::vector<char> m_buffer;
};

}  // namespace zeg_tools

#endif
