#include "normalize/Translate.h"

#include <bitset>

#include "normalize/GBKTable.h"
#include "normalize/WordLists.h"
#include "ws/core/wsHot.h"

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

// The one- and two-byte members of gStopWords by their bytes: a piece is
// looked up by one bit test. Built once per thread and list version
// (wordListsGeneration and the set's size), as walking the set costs more
// than translating a query.
class StopPieceIndex {
public:
    bool contains(const Piece& piece) const { return m_bits[slot(piece.bytes, piece.length)]; }

    // The calling thread's index of the current gStopWords.
    static const StopPieceIndex& current() {
        thread_local StopPieceIndex index;
        index.refresh();
        return index;
    }

private:
    static constexpr std::size_t kSlots = 256 + 65536;

    static std::size_t slot(const char* bytes, std::size_t length) {
        const auto b1 = static_cast<unsigned char>(bytes[0]);
        if (length == 1) return b1;
        return 256 + (static_cast<std::size_t>(b1) << 8 | static_cast<unsigned char>(bytes[1]));
    }

    void refresh() {
        const unsigned generation = wordListsGeneration();
        if (m_built && m_generation == generation && m_size == gStopWords.size()) return;
        m_bits.reset();
        for (const std::string& word : gStopWords)
            if (word.size() == 1 || word.size() == 2) m_bits[slot(word.data(), word.size())] = true;
        m_generation = generation;
        m_size = gStopWords.size();
        m_built = true;
    }

    std::bitset<kSlots> m_bits;
    unsigned m_generation = 0;
    std::size_t m_size = 0;
    bool m_built = false;
};

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

std::size_t translateWithStops(const unsigned char* b, int mode, char* out) {
    const StopPieceIndex& index = StopPieceIndex::current();
    return translateInto(b, mode, out,
                         [&index](const Piece& piece) { return index.contains(piece); });
}

}  // namespace

std::string Translate(const std::string& query, int mode) {
    std::string result;
    Translate(query, mode, result);
    return result;
}

WS_HOT void Translate(const std::string& query, int mode, std::string& result) {
    // No piece is longer than the bytes it stands for, so the result fits in
    // the query's length; it is written in place, then cut to size.
    result.assign(query.size(), '\0');
    const auto* b = reinterpret_cast<const unsigned char*>(query.c_str());
    std::size_t n = 0;
    if ((mode & kStopToSpace) && !gStopWords.empty())
        n = translateWithStops(b, mode, &result[0]);
    else
        n = translateInto(b, mode, &result[0], [](const Piece&) { return false; });
    result.resize(n);
}

}  // namespace normalize
