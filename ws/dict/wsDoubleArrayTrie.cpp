#include "ws/dict/wsDoubleArrayTrie.h"

#include <algorithm>
#include <cstring>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsHot.h"

namespace ws {

namespace {

const char kMagic[] = "DATRIE V1.0.0";
const int kMaxListDepth = 1023;  // the listing's path buffer is 1024 bytes

bool readAll(std::FILE* fp, void* to, size_t size) {
    char* p = static_cast<char*>(to);
    while (size > 0) {
        const size_t n = std::fread(p, 1, size, fp);
        if (n == 0) return false;
        p += n;
        size -= n;
    }
    return true;
}

bool writeAll(std::FILE* fp, const void* from, size_t size) {
    const char* p = static_cast<const char*>(from);
    while (size > 0) {
        const size_t n = std::fwrite(p, 1, size, fp);
        if (n == 0) return false;
        p += n;
        size -= n;
    }
    return true;
}

}  // namespace

DoubleArrayTrie::DoubleArrayTrie() = default;

DoubleArrayTrie::~DoubleArrayTrie() { DoubleArrayTrie::clear(); }

bool DoubleArrayTrie::init() {
    extend();
    return true;
}

void DoubleArrayTrie::clear() {
    std::vector<Cell>().swap(m_storage);
    m_cells = nullptr;
    m_owned = false;
    m_root = 1;
    m_length = 0;
    cleanKeyStr();
    std::string().swap(m_stats);
    m_callback = nullptr;
    m_userData = nullptr;
    m_freeHint = 2;
}

void DoubleArrayTrie::setError(const char* message) {
    std::snprintf(m_err, sizeof m_err, "%s", message);
}

void DoubleArrayTrie::resetHeader() {
    m_root = 1;
    m_length = 0;
}

bool DoubleArrayTrie::magicEquals(const char* text) const {
    return std::strncmp(m_magic, text, kMagicSize) == 0;
}

void DoubleArrayTrie::putMagic(const char* text) {
    std::memset(m_magic, 0, kMagicSize);
    std::memcpy(m_magic, text, std::min(std::strlen(text), static_cast<size_t>(kMagicSize)));
}

bool DoubleArrayTrie::checkMagic() const { return magicEquals(kMagic); }

void DoubleArrayTrie::setMagic() { putMagic(kMagic); }

const char* DoubleArrayTrie::toolsVersion() const { return kMagic; }

void DoubleArrayTrie::unpackHeader(const char* header) {
    std::memcpy(&m_root, header, 4);
    std::memcpy(&m_length, header + 4, 4);
    std::memcpy(m_magic, header + 8, kMagicSize);
}

bool DoubleArrayTrie::decodeHeader(const char* header, uint64_t available) {
    unpackHeader(header);
    if (!checkMagic()) {
        setError("Magic check failed");
        resetHeader();
        return false;
    }
    if (m_length < 0 || static_cast<uint64_t>(m_length) * sizeof(Cell) > available) {
        setError("File size too small");
        resetHeader();
        return false;
    }
    // Every lookup starts at the root; a root outside the cells would send
    // it outside the section.
    if (m_length > 0 && (m_root < 1 || m_root >= m_length)) {
        setError("Root state out of range");
        resetHeader();
        return false;
    }
    if (m_length == 0) m_root = 1;
    return true;
}

bool DoubleArrayTrie::load(std::FILE* fp) {
    const int64_t remaining = TrieBase::remainingBytes(fp);
    char header[kHeaderSize];
    if (remaining < kHeaderSize || !readAll(fp, header, sizeof header)) {
        setError("File size too small");
        resetHeader();
        return false;
    }
    if (!decodeHeader(header, static_cast<uint64_t>(remaining - kHeaderSize))) return false;
    std::vector<Cell> cells(static_cast<size_t>(m_length));
    if (!readAll(fp, cells.data(), cells.size() * sizeof(Cell))) {
        setError("read data error");
        resetHeader();
        return false;
    }
    m_storage.swap(cells);
    m_cells = m_length > 0 ? m_storage.data() : nullptr;
    m_owned = m_length > 0;
    m_freeHint = 2;
    return true;
}

char* DoubleArrayTrie::load(char* buffer, unsigned long size) {
    if (buffer == nullptr || size < static_cast<unsigned long>(kHeaderSize)) {
        setError("File size too small");
        resetHeader();
        return nullptr;
    }
    if (!decodeHeader(buffer, size - kHeaderSize)) return nullptr;
    if (m_length < 1) {
        resetHeader();
        return nullptr;
    }
    char* cells = buffer + kHeaderSize;
    const size_t bytes = static_cast<size_t>(m_length) * sizeof(Cell);
    std::vector<Cell>().swap(m_storage);
    if (reinterpret_cast<uintptr_t>(cells) % alignof(Cell) == 0) {
        m_cells = reinterpret_cast<Cell*>(cells);
        m_owned = false;
    } else {  // cannot be used in place: take a copy
        m_storage.resize(static_cast<size_t>(m_length));
        std::memcpy(m_storage.data(), cells, bytes);
        m_cells = m_storage.data();
        m_owned = true;
    }
    m_freeHint = 2;
    return cells + bytes;
}

bool DoubleArrayTrie::write(std::FILE* fp) {
    setMagic();
    char header[kHeaderSize];
    std::memcpy(header, &m_root, 4);
    std::memcpy(header + 4, &m_length, 4);
    std::memcpy(header + 8, m_magic, kMagicSize);
    if (!writeAll(fp, header, sizeof header)) return false;
    return writeAll(fp, m_cells, static_cast<size_t>(m_length) * sizeof(Cell));
}

const char* DoubleArrayTrie::dictVersion(std::FILE* fp) {
    char header[kHeaderSize];
    if (TrieBase::remainingBytes(fp) < kHeaderSize || !readAll(fp, header, sizeof header)) {
        setError("File size too small");
        return m_err;
    }
    unpackHeader(header);
    m_magic[kMagicSize - 1] = '\0';
    return m_magic;
}

int DoubleArrayTrie::match(const unsigned char* key, int len) const {
    if (m_length <= m_root) return 0;
    int s = m_root;
    for (int i = 0; i < len; ++i) {
        s = next(s, key[i]);
        if (s == 0) return 0;
    }
    return endValue(s);
}

void DoubleArrayTrie::markBytePairs(std::vector<uint64_t>& bits) const {
    if (m_length <= m_root) return;
    const uint32_t rootBase = static_cast<uint32_t>(m_cells[m_root].base);
    for (int t = 1; t < m_length; ++t) {
        const int p = m_cells[t].check;  // a parent whose own parent is the root
        if (p < 1 || p >= m_length || p == m_root || m_cells[p].check != m_root) continue;
        const uint32_t b0 = static_cast<uint32_t>(p) - rootBase - 1;
        const uint32_t b1 = codeInto(m_cells, t, p);
        if (b0 > 255 || b1 > 255) continue;
        const uint32_t pair = b0 | b1 << 8;
        bits[pair / 64] |= uint64_t{1} << (pair % 64);
    }
}

WS_HOT int DoubleArrayTrie::matchAll(const unsigned char* key, int len, MatchInfo* out,
                                     int max) const {
    if (m_length <= m_root || max < 1 || len < 1) return 0;
    int count = 0;
    int s = m_root;
    for (int i = 0; i < len && count < max; ++i) {
        s = next(s, key[i]);
        if (s == 0) break;
        const int t = next(s, kCodeEnd);
        if (t != 0) out[count++] = MatchInfo{i, m_cells[t].base};
    }
    return count;
}

int DoubleArrayTrie::matchLongest(const unsigned char* key, int len, int& matched) const {
    matched = 0;
    if (m_length <= m_root) return 0;
    int s = m_root;
    for (int i = 0; i < len; ++i) {
        const int t = next(s, key[i]);
        if (t == 0) break;
        s = t;
        matched = i + 1;
    }
    return s;
}

WS_HOT int DoubleArrayTrie::matchReverse(const unsigned char* key, int len, int state,
                                         int& matched) const {
    matched = 0;
    if (m_length <= m_root || !isState(state)) return state;
    int i = 0;
    while (state != m_root && i < len) {
        const int parent = m_cells[state].check;
        if (!isState(parent) || next(parent, key[i]) != state) break;
        state = parent;
        ++i;
    }
    matched = i;
    return state;
}

int DoubleArrayTrie::add(const unsigned char* key, int len, int value) {
    int s = addPartial(key, len);
    const int t = next(s, kCodeEnd);
    if (t != 0) {
        m_cells[t].base = value;
        return t;
    }
    return addNewChar(s, kCodeEnd, value);
}

int DoubleArrayTrie::addPartial(const unsigned char* key, int len) {
    makeWritable();
    if (m_length <= m_root) extend();
    if (len <= 0) return m_root;
    int s = m_root;
    int i = 0;
    for (; i < len && m_cells[s].base >= 1; ++i) {
        if (static_cast<int64_t>(m_cells[s].base) + key[i] + 1 >= m_length) extend();
        const int t = next(s, key[i]);
        if (t == 0) break;
        s = t;
    }
    for (; i < len; ++i) s = addNewChar(s, key[i], -1);
    return s;
}

int DoubleArrayTrie::addPartialRev(const unsigned char* key, int len) {
    std::vector<unsigned char> reversed(key, key + std::max(len, 0));
    std::reverse(reversed.begin(), reversed.end());
    return addPartial(reversed.data(), len);
}

int DoubleArrayTrie::addNewChar(int& state, int code, int value) {
    makeWritable();
    if (next(state, code) != 0) listAllEntries();  // should never happen: dump for diagnosis
    getNewState(state, code);
    setState(state, code, value);
    return m_cells[state].base + code + 1;
}

void DoubleArrayTrie::setState(int state, int code, int value) {
    const int t = m_cells[state].base + code + 1;
    getState(t);
    m_cells[t].check = state;
    if (value != 0) m_cells[t].base = value;
}

int DoubleArrayTrie::childCodes(int state, int* codes) const {
    int count = 0;
    for (int k = 0; k < kCodeCount; ++k) {
        if (next(state, k) != 0) codes[count++] = k;
    }
    return count;
}

int DoubleArrayTrie::getNewState(int& state, int code) {
    const int64_t base = m_cells[state].base;
    int64_t t = base + code + 1;
    if (base > 0) {
        if (t >= m_length && t < static_cast<int64_t>(m_length) + kGrowCells) {
            extend();
            return static_cast<int>(t);
        }
        if (t < m_length && isFree(static_cast<int>(t))) return static_cast<int>(t);
    }
    int codes[kCodeCount + 1];
    const int count = childCodes(state, codes);
    if (base > 0 && t < m_length) {
        const int other = m_cells[t].check;
        int otherCodes[kCodeCount];
        const int otherCount = other != state && isState(other) ? childCodes(other, otherCodes) : 0;
        if (otherCount >= 1 && otherCount < count + 1) {
            const int64_t movedCode = static_cast<int64_t>(state) - m_cells[other].base - 1;
            const bool stateMoves = movedCode >= 0 && movedCode < kCodeCount &&
                                    next(other, static_cast<int>(movedCode)) == state;
            const int b = getNewBase(otherCodes, otherCount, otherCodes[0], otherCodes[otherCount - 1]);
            relocate(other, b, otherCodes, otherCount);
            if (stateMoves) state = b + static_cast<int>(movedCode) + 1;
            return m_cells[state].base + code + 1;
        }
    }
    const int minCode = count > 0 ? std::min(codes[0], code) : code;
    const int maxCode = count > 0 ? std::max(codes[count - 1], code) : code;
    codes[count] = code;
    const int b = getNewBase(codes, count + 1, minCode, maxCode);
    relocate(state, b, codes, count);
    return m_cells[state].base + code + 1;
}

int DoubleArrayTrie::lowestFreeCell() {
    while (m_freeHint < m_length && !isFree(m_freeHint)) ++m_freeHint;
    return m_freeHint;
}

int DoubleArrayTrie::getNewBase(const int* codes, int count, int minCode, int maxCode) {
    // No base below the one that puts minCode on the lowest free cell fits.
    int b = std::max(2, lowestFreeCell() - minCode - 1);
    for (;; ++b) {
        while (b >= m_length - (maxCode + 1)) extend();
        if (!isFree(minCode + 1 + b)) continue;
        int i = 0;
        while (i < count && isFree(codes[i] + 1 + b)) ++i;
        if (i == count) break;
    }
    return b;
}

void DoubleArrayTrie::relocate(int state, int newBase, const int* codes, int count) {
    for (int i = 0; i < count; ++i) {
        const int from = m_cells[state].base + codes[i] + 1;
        const int to = newBase + codes[i] + 1;
        getState(to);
        m_cells[to].check = state;
        m_cells[to].base = m_cells[from].base;
        if (m_callback != nullptr) m_callback(m_userData, from, to);
        for (int k = 0; k < kCodeCount; ++k) {
            const int child = next(from, k);
            if (child != 0) m_cells[child].check = to;
        }
        freeState(from);
    }
    m_cells[state].base = newBase;
}

void DoubleArrayTrie::makeWritable() {
    if (m_owned || m_cells == nullptr) return;
    std::vector<Cell> copy(m_cells, m_cells + m_length);
    m_storage.swap(copy);
    m_cells = m_storage.data();
    m_owned = true;
}

void DoubleArrayTrie::growStorage(int cells) {
    makeWritable();
    m_storage.resize(static_cast<size_t>(m_length) + static_cast<size_t>(cells), Cell{0, 0});
    m_cells = m_storage.data();
    m_length += cells;
}

void DoubleArrayTrie::extend() {
    const int old = m_length;
    growStorage(kGrowCells);
    if (old == 0) m_cells[1].base = 1;
}

void DoubleArrayTrie::getState(int) {}

void DoubleArrayTrie::freeState(int state) {
    m_cells[state] = Cell{0, 0};
    if (state < m_freeHint) m_freeHint = state;
}

void DoubleArrayTrie::setBase(int state, int base) {
    makeWritable();
    m_cells[state].base = base;
}

void DoubleArrayTrie::setStateChangeCallback(StateChangeFn fn, void* userData) {
    m_callback = fn;
    m_userData = userData;
}

const char* DoubleArrayTrie::stats() {
    int states = 0;
    for (int i = 0; i < m_length; ++i) states += m_cells[i].check > 0;
    char buf[1024];
    std::snprintf(buf, sizeof buf,
                  "Trie Stats:\nTrie DA Length: %d\nbase(%d) = %d\nNumber of States: %d\n",
                  m_length, m_root, isState(m_root) ? m_cells[m_root].base : 0, states);
    m_stats = buf;
    return m_stats.c_str();
}

void DoubleArrayTrie::listAllEntries() {
    if (m_length <= m_root) return;
    char buf[1024];
    listAll(buf, 0, m_root);
}

void DoubleArrayTrie::listAll(char* buf, int depth, int state) {
    if (next(state, kCodeEnd) != 0) {
        buf[depth] = '\0';
        std::puts(buf);
    }
    if (depth >= kMaxListDepth) return;
    // The bound counts from the state number, not its base.
    for (int code = 0; code <= 256 && state + code + 1 < m_length; ++code) {
        const int t = next(state, code);
        if (t == 0) continue;
        buf[depth] = static_cast<char>(code);
        listAll(buf, depth + 1, t);
    }
}

void DoubleArrayTrie::listAllEntriesUtf8() {
    if (m_length <= m_root) return;
    char buf[1024];
    listAllUtf8(buf, 0, m_root);
}

void DoubleArrayTrie::listAllUtf8(char* buf, int depth, int state) {
    if (next(state, kCodeEnd) != 0) putUtf16Line(buf, depth);
    if (depth >= kMaxListDepth) return;
    for (int code = 0; code <= 256 && state + code + 1 < m_length; ++code) {
        const int t = next(state, code);
        if (t == 0) continue;
        buf[depth] = static_cast<char>(code);
        listAllUtf8(buf, depth + 1, t);
    }
}

void DoubleArrayTrie::putUtf16Line(const char* bytes, int len) {
    if (len % 2 != 0) {
        std::puts("Something fishy here");
        return;
    }
    unsigned short units[512] = {};
    const int n = std::min(len / 2, 512);
    std::memcpy(units, bytes, static_cast<size_t>(n) * 2);
    unsigned char utf8[1024];
    const int written = EncodeConverter::utf16ToUtf8(units, static_cast<unsigned long>(n), utf8,
                                                     sizeof utf8);
    if (written < 1) {
        std::puts("Something is completely wrong");
        return;
    }
    utf8[std::min(written, static_cast<int>(sizeof utf8) - 1)] = '\0';
    std::puts(reinterpret_cast<const char*>(utf8));
}

void DoubleArrayTrie::appendKeyStr(const unsigned char* key, int len) {
    if (len < 0) len = 0;
    m_keyLengths.push_back(len);
    m_keyBytes.insert(m_keyBytes.end(), key, key + len);
}

void DoubleArrayTrie::initKeyStr() {
    m_keyBytes.clear();
    m_keyLengths.clear();
}

void DoubleArrayTrie::cleanKeyStr() {
    std::vector<unsigned char>().swap(m_keyBytes);
    std::vector<int>().swap(m_keyLengths);
}

bool DoubleArrayTrie::isConsistent() {
    size_t offset = 0;
    for (int len : m_keyLengths) {
        if (match(m_keyBytes.data() + offset, len) == 0) return false;
        offset += static_cast<size_t>(len);
    }
    return true;
}

void DoubleArrayTrie::printLink(int state) const {
    if (!isState(state)) return;
    std::printf("state %d: base %d check %d\n", state, m_cells[state].base, m_cells[state].check);
    for (int k = 0; k < kCodeCount; ++k) {
        const int t = next(state, k);
        if (t != 0) std::printf("  code %d -> %d\n", k, t);
    }
}

void DoubleArrayTrie::printTrie(int state, int depth) const {
    if (!isState(state) || depth > kMaxListDepth) return;
    std::printf("%*s", depth * 2, "");
    printLink(state);
    for (int k = 0; k < kCodeEnd; ++k) {
        const int t = next(state, k);
        if (t != 0) printTrie(t, depth + 1);
    }
}

}  // namespace ws
