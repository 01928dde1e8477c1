#include "ws/algo/wsNormalizer.h"

#include "ws/core/wsTextSegmentation.h"

namespace ws {

namespace {

unsigned short toHalfWidth(unsigned short u) {
    if (u > 0xFF00) return static_cast<unsigned short>(u + 288);
    return u == 0x3000 ? 0x20 : u;
}

unsigned short toUpper(unsigned short u) {
    return u >= 0x61 && u <= 0x7A ? static_cast<unsigned short>(u - 32) : u;
}

unsigned short toLower(unsigned short u) {
    return u >= 0x41 && u <= 0x5A ? static_cast<unsigned short>(u + 32) : u;
}

unsigned short fold(int mode, unsigned short u) {
    switch (mode) {
        case 1: return toUpper(u);
        case 2: return toLower(u);
        case 3: return toHalfWidth(u);
        case 4: return toUpper(toHalfWidth(u));
        case 5: return toLower(toHalfWidth(u));
        default: return u;
    }
}

}  // namespace

int Normalizer::normalize(TextSegmentation& seg) const {
    const unsigned int n = seg.textLen;
    for (unsigned int i = 0; i < n; ++i) seg.normalizedText[i] = fold(seg.normalizeMode, seg.text[i]);
    seg.text = seg.normalizedText;
    seg.normalizedLen = n;
    return 0;
}

int Normalizer::denormalize(TextSegmentation& seg) const {
    seg.text = seg.denormalizeToSpaceFree != 0 ? seg.spaceFreeText : seg.orgText;
    return 0;
}

}  // namespace ws
