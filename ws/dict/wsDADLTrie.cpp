#include "ws/dict/wsDADLTrie.h"

#include "ws/core/wsBufferGrowth.h"

namespace ws {

namespace {

const char kMagic[] = "DADLTrie V1.0.0";
const int kFirstListed = 2;  // cell 0 is the list head, cell 1 the root

}  // namespace

DADLTrie::DADLTrie() = default;

DADLTrie::~DADLTrie() = default;

bool DADLTrie::init() {
    m_listValid = length() == 0;
    return DoubleArrayTrie::init();
}

void DADLTrie::clear() {
    DoubleArrayTrie::clear();
    m_listValid = false;
    std::vector<uint64_t>().swap(m_freeBits);
}

bool DADLTrie::load(std::FILE* fp) {
    m_listValid = false;
    return DoubleArrayTrie::load(fp);
}

char* DADLTrie::load(char* buffer, unsigned long size) {
    m_listValid = false;
    return DoubleArrayTrie::load(buffer, size);
}

const char* DADLTrie::toolsVersion() const { return kMagic; }

bool DADLTrie::checkMagic() const { return magicEquals(kMagic); }

void DADLTrie::setMagic() { putMagic(kMagic); }

void DADLTrie::link(int prev, int cell, int next) {
    cellAt(cell) = Cell{-prev, -next};
    cellAt(prev).check = -cell;
    cellAt(next).base = -cell;
    markFree(cell, true);
}

void DADLTrie::markFree(int cell, bool free) {
    const size_t word = static_cast<size_t>(cell) / 64;
    growTo(m_freeBits, word + 1);
    const uint64_t bit = uint64_t{1} << (cell % 64);
    m_freeBits[word] = free ? m_freeBits[word] | bit : m_freeBits[word] & ~bit;
}

// The highest listed free cell below `cell`, or 0 (the head).
int DADLTrie::freeCellBelow(int cell) const {
    int word = (cell - 1) / 64;
    if (word >= static_cast<int>(m_freeBits.size())) word = static_cast<int>(m_freeBits.size()) - 1;
    for (; word >= 0; --word) {
        uint64_t bits = m_freeBits[static_cast<size_t>(word)];
        if (word == (cell - 1) / 64) bits &= ~uint64_t{0} >> (63 - (cell - 1) % 64);
        if (bits != 0) {
            const int found = word * 64 + 63 - __builtin_clzll(bits);
            return found >= kFirstListed ? found : 0;
        }
    }
    return 0;
}

void DADLTrie::rebuildList() {
    makeWritable();
    m_freeBits.assign(static_cast<size_t>(length()) / 64 + 1, 0);
    cellAt(0) = Cell{0, 0};
    for (int c = kFirstListed; c < length(); ++c) {
        if (isFree(c)) link(prevFree(0), c, 0);
    }
    m_listValid = true;
}

void DADLTrie::ensureList() {
    if (!m_listValid && length() > 0) rebuildList();
}

void DADLTrie::extend() {
    ensureList();
    const int old = length();
    DoubleArrayTrie::extend();
    if (old == 0) {
        cellAt(0) = Cell{0, 0};
        m_freeBits.clear();
        m_listValid = true;
    }
    for (int c = old < kFirstListed ? kFirstListed : old; c < length(); ++c)
        link(prevFree(0), c, 0);
}

void DADLTrie::getState(int state) {
    ensureList();
    if (state < kFirstListed || !isFree(state)) return;
    const int prev = prevFree(state);
    const int next = nextFree(state);
    cellAt(prev).check = -next;
    cellAt(next).base = -prev;
    cellAt(state) = Cell{0, 0};
    markFree(state, false);
}

void DADLTrie::freeState(int state) {
    ensureList();
    if (state < kFirstListed) return;
    if (isFree(state)) return;  // already listed
    const int prev = freeCellBelow(state);
    link(prev, state, nextFree(prev));
}

int DADLTrie::getNewBase(const int* codes, int count, int minCode, int maxCode) {
    ensureList();
    int prev = 0;
    for (;;) {
        const int free = nextFree(prev);
        if (free == 0) {  // no free cell left above prev: the new cells follow it
            extend();
            continue;
        }
        const int b = free - minCode - 1;
        if (b >= 2) {
            while (b >= length() - (maxCode + 1)) extend();
            int i = 0;
            while (i < count && isFree(codes[i] + 1 + b)) ++i;
            if (i == count) return b;
        }
        prev = free;
    }
}

bool DADLTrie::check_list() const {
    if (length() == 0) return true;
    int expected = 0;
    for (int c = kFirstListed; c < length(); ++c) expected += isFree(c);
    int prev = 0;
    int seen = 0;
    for (int c = nextFree(0); c != 0; c = nextFree(c)) {
        if (c <= prev || c >= length() || !isFree(c) || prevFree(c) != prev || ++seen > expected)
            return false;
        prev = c;
    }
    return seen == expected && prevFree(0) == prev;
}

}  // namespace ws
