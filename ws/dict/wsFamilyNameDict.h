#ifndef ZEG_WS_DICT_WSFAMILYNAMEDICT_H
#define ZEG_WS_DICT_WSFAMILYNAMEDICT_H

#include <cstdio>
#include <vector>

#include "ws/core/wsNewWordBuffer.h"

namespace ws {

// Which UTF-16 code units can begin a Chinese personal name as a
// single-character family name: one bit per code unit (bit c & 7 of byte
// c >> 3). Until a list is loaded every bit is set, so every character
// passes; a load clears them all first.
//
// List file (UTF-8), one name a line: the name, then optionally a tab and
// its frequency (a decimal float). Only the name's first character counts,
// so a compound name such as 欧阳 marks its first character. Lines are read
// in pieces of at most 1024 bytes.
//
// Copyable (8 KiB of bits). Thread safety: lookups
// only read and may run concurrently once loading is over.
class FamilyNameDict {
public:
    static constexpr unsigned kBitBytes = 65536 / 8;
    static constexpr unsigned kLineBuffer = 1025;

    FamilyNameDict();
    virtual ~FamilyNameDict() = default;

    // Clears every bit, then sets the bit of each line's first character
    // whose frequency (`defaultFreq` when the line has none) is at least
    // `threshold`; lines below it are skipped. Returns false at the first
    // line that is empty, has more than two fields, or whose name does not
    // convert; the bits set before it stay set. Unusable lines are logged
    // as NAME:LINE: reason, NAME being the path or "<stream>". The stream
    // is read to its end or to the failing line and is not closed.
    bool loadText(std::FILE* f, float defaultFreq, float threshold);
    bool loadText(std::FILE* f, float defaultFreq) { return loadText(f, defaultFreq, 1.0f); }
    // As above for the file at `path`; false, logged, when it cannot be
    // opened. The file is closed again.
    bool loadText(const char* path, float defaultFreq, float threshold);
    bool loadText(const char* path, float defaultFreq) {
        return loadText(path, defaultFreq, 1.0f);
    }

    void setFamilyName(unsigned short c) { m_bits[c >> 3] |= static_cast<unsigned char>(1u << (c & 7)); }
    bool isChineseFamilyName(unsigned short c) const { return (m_bits[c >> 3] >> (c & 7)) & 1; }

    // Withdraws (length 0) every candidate in `buf` at positions 0 .. n - 1
    // that is longer than one character and whose first character text[i]
    // is not a family name. REQUIRES: text and buf.words hold n entries.
    void checkFamilyName(const unsigned short* text, NewWordBuffer& buf, unsigned n) const;

private:
    bool _load(std::FILE* f, const char* name, float defaultFreq, float threshold);

    std::vector<unsigned char> m_bits;
};

}  // namespace ws

#endif
