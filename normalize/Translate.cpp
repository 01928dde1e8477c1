#include "normalize/Translate.h"

#include <bitset>

#include "normalize/GBKTable.h"
#include "normalize/WordLists.h"

namespace normalize {

namespace {

// One translated character: the bytes it puts out (one or two) and the
// query bytes it stands for (one or two).
struct Piece {
    char bytes[2];
    std::size_t length;
    std::size_t consumed;
};

Piece single(unsigned char b, std::size_t consumed) {
    return Piece{{static_cast<char>(b), 0}, 1, consumed};
}

Piece pair(unsigned char b1, unsigned char b2) {
    return Piece{{static_cast<char>(b1), static_cast<char>(b2)}, 2, 2};
}

// Only ASCII letters change: the query's other bytes are GBK, not Latin-1.
unsigned char foldCase(unsigned char b, int mode) {
    if (mode & kToLower) return (b >= 'A' && b <= 'Z') ? static_cast<unsigned char>(b + 32) : b;
    if (mode & kToUpper) return (b >= 'a' && b <= 'z') ? static_cast<unsigned char>(b - 32) : b;
    return b;
}

// A double-byte character through its table cell. A zero-led cell holds an
// ASCII equivalent, which only full-to-half folding may use.
Piece translatePair(unsigned char b1, unsigned char b2, int mode) {
    const unsigned char* cell = tbGBK_T2GBK_S + GBKTableOffset(b1, b2);
    if (cell[0] == 0) return (mode & kFullToHalf) ? single(cell[1], 2) : pair(b1, b2);
    return (mode & kTradToSimp) ? pair(cell[0], cell[1]) : pair(b1, b2);
}

// The character starting at b[0]; b[1] may be the terminating zero.
Piece translateOne(const unsigned char* b, int mode) {
    if (mode & kFullToHalf) {
        if (isChineseCharacter(b[0], b[1])) return single(foldCase(b[1] & 0x7F, mode), 2);
        if (isChineseSpace(b[0], b[1])) return single(' ', 2);
    }
    if (isGBK1(b[0]) && isGBK2(b[1])) return translatePair(b[0], b[1], mode);
    return single(foldCase(b[0], mode), 1);
}

// Membership of the one- and two-byte members of gStopWords, taken once for
// a call that looks up many pieces: a bit test instead of a tree walk.
class StopPieceIndex {
public:
    explicit StopPieceIndex(const std::set<std::string>& words) {
        for (const std::string& word : words) {
            const std::size_t at = word.empty() ? kNoSlot : slot(word.data(), word.size());
            if (at != kNoSlot) m_bits[at] = true;
        }
    }

    bool contains(const Piece& piece) const { return m_bits[slot(piece.bytes, piece.length)]; }

private:
    // A single byte, or a pair in the table's range: no other two bytes can
    // make a piece. kNoSlot stands for every other string and is never set.
    static constexpr std::size_t kNoSlot = 256 + kGBKTableBytes / 2;

    static std::size_t slot(const char* bytes, std::size_t length) {
        const auto b1 = static_cast<unsigned char>(bytes[0]);
        if (length == 1) return b1;
        const auto b2 = static_cast<unsigned char>(bytes[1]);
        if (length > 2 || b1 < 0x81 || b1 > 0xFE || b2 < 0x40 || b2 > 0xFE) return kNoSlot;
        return 256 + static_cast<std::size_t>(GBKTableOffset(b1, b2)) / 2;
    }

    std::bitset<kNoSlot + 1> m_bits;
};

// Walking the whole set costs about as much as a few lookups; beyond this
// many words per query byte the pieces are looked up one by one instead.
constexpr std::size_t kWordsPerByteToIndex = 4;

// Writes the pieces of the zero-terminated `b` to `out`, a space for each
// piece isStop accepts. Returns the bytes written, never more than read.
template <typename IsStop>
std::size_t translateInto(const unsigned char* b, int mode, char* out, IsStop isStop) {
    std::size_t i = 0, n = 0;
    while (b[i] != 0) {
        const Piece piece = translateOne(b + i, mode);
        if (isStop(piece)) {
            out[n++] = ' ';
        } else {
            out[n++] = piece.bytes[0];
            if (piece.length == 2) out[n++] = piece.bytes[1];
        }
        i += piece.consumed;
    }
    return n;
}

std::size_t translateWithStops(const unsigned char* b, std::size_t size, int mode, char* out) {
    if (gStopWords.size() > kWordsPerByteToIndex * size) {
        return translateInto(b, mode, out, [](const Piece& piece) {
            // At most two bytes: the key stays in the string's own buffer.
            return gStopWords.count(std::string(piece.bytes, piece.length)) != 0;
        });
    }
    const StopPieceIndex index(gStopWords);
    return translateInto(b, mode, out,
                         [&index](const Piece& piece) { return index.contains(piece); });
}

}  // namespace

std::string Translate(const std::string& query, int mode) {
    std::string result;
    Translate(query, mode, result);
    return result;
}

void Translate(const std::string& query, int mode, std::string& result) {
    // No piece is longer than the bytes it stands for, so the result fits in
    // the query's length; it is written in place, then cut to size.
    result.assign(query.size(), '\0');
    const auto* b = reinterpret_cast<const unsigned char*>(query.c_str());
    std::size_t n = 0;
    if ((mode & kStopToSpace) && !gStopWords.empty())
        n = translateWithStops(b, query.size(), mode, &result[0]);
    else
        n = translateInto(b, mode, &result[0], [](const Piece&) { return false; });
    result.resize(n);
}

}  // namespace normalize
