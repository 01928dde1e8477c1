#include "tools/GBKCodePage.h"

namespace zeg_tools {

namespace {

constexpr const char* kGBK = "GBK";
constexpr const char* kUTF32 = "UTF-32LE";

}  // namespace

bool GBKCodePage::open() {
    return m_toUnicode.open(kGBK, kUTF32) == 0 && m_toGBK.open(kUTF32, kGBK) == 0;
}

bool GBKCodePage::decode(unsigned char b1, unsigned char b2, char32_t& codePoint) {
    const char in[2] = {static_cast<char>(b1), static_cast<char>(b2)};
    if (m_toUnicode.conv(in, 2, m_buffer) != 4) return false;
    char32_t cp = 0;
    for (int k = 3; k >= 0; --k) cp = (cp << 8) | static_cast<unsigned char>(m_buffer[k]);
    unsigned back = 0;
    if (cp < 0x80 || !encode(cp, back) || back != (b1 * 256u + b2)) return false;
    codePoint = cp;
    return true;
}

bool GBKCodePage::encode(char32_t codePoint, unsigned& code) {
    char in[4];
    for (int k = 0; k < 4; ++k) in[k] = static_cast<char>((codePoint >> (8 * k)) & 0xFF);
    if (m_toGBK.conv(in, 4, m_buffer) != 2) return false;
    const auto b1 = static_cast<unsigned char>(m_buffer[0]);
    const auto b2 = static_cast<unsigned char>(m_buffer[1]);
    if (b1 < 0x81) return false;  // not a double-byte code
    code = b1 * 256u + b2;
    return true;
}

}  // namespace zeg_tools
