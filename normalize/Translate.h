#ifndef ZEG_NORMALIZE_TRANSLATE_H
#define ZEG_NORMALIZE_TRANSLATE_H

#include <string>

namespace normalize {

// Mode bits of Translate; other bits are ignored.
enum TranslateMode {
    kToUpper = 2,       // ASCII letters to upper case
    kToLower = 4,       // ASCII letters to lower case; wins over kToUpper
    kFullToHalf = 8,    // full-width forms and the ideographic space to ASCII
    kTradToSimp = 16,   // traditional Chinese characters to simplified ones
    kStopToSpace = 32,  // every character that is in gStopWords to one space
};

// Rewrites a GBK query character by character as `mode` asks (TranslateMode
// bits). Reading stops at the first zero byte. A lead byte not followed by a
// trail byte, and the lead byte 0xFE, are taken as single bytes. Case bits
// change single ASCII bytes and full-width letters turned to ASCII, never a
// double-byte character. Mode 0 returns the query unchanged.
// Allocates only the result (reserved to the query's length). Reads
// gStopWords when kStopToSpace is set, through an index each thread keeps
// (see wordListsGeneration), so it must not run while a loader fills that
// set.
std::string Translate(const std::string& query, int mode);
// The same into `result` (not `query`), reusing its memory.
void Translate(const std::string& query, int mode, std::string& result);

// First byte of a double-byte GBK character. 0xFE is deliberately refused,
// although the table has its row.
constexpr bool isGBK1(unsigned char b) { return b >= 0x81 && b <= 0xFD; }

// Second byte of a double-byte GBK character.
constexpr bool isGBK2(unsigned char b) { return b >= 0x40 && b <= 0xFE && b != 0x7F; }

// True only for GBK's full-width ASCII row, 0xA3A1-0xA3FE.
constexpr bool isChineseCharacter(unsigned char b1, unsigned char b2) {
    return b1 == 0xA3 && b2 >= 0xA1 && b2 <= 0xFE;
}

// True for the ideographic space 0xA1A1.
constexpr bool isChineseSpace(unsigned char b1, unsigned char b2) {
    return b1 == 0xA1 && b2 == 0xA1;
}

}  // namespace normalize

#endif
