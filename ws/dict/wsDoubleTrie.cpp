#include "ws/dict/wsDoubleTrie.h"

#include <algorithm>
#include <cstring>

#include "ws/core/wsHot.h"
#include "ws/core/wsPrefault.h"

namespace ws {

namespace {

const char kMagic[] = "DoubleTrie V1.0.0";
const int kMaxKeyListed = 1023;

}  // namespace

void stateChange(void* trie, int oldState, int newState) {
    static_cast<DoubleTrie*>(trie)->moveUsers(oldState, newState);
}

DoubleTrie::DoubleTrie() = default;

DoubleTrie::~DoubleTrie() = default;

bool DoubleTrie::init() {
    clear();
    m_front.init();
    m_rear.init();
    m_storage.assign(kFirstEntry, Entry{0, 0});
    m_table = m_storage.data();
    m_owned = true;
    m_count = kFirstEntry;
    m_buildable = true;
    m_rear.setStateChangeCallback(stateChange, this);
    return true;
}

void DoubleTrie::clear() {
    m_front.clear();
    m_rear.clear();
    std::vector<Entry>().swap(m_storage);
    m_table = nullptr;
    m_owned = false;
    m_count = 0;
    m_rearUsers.clear();
    m_freeEntries.clear();
    m_buildable = false;
    std::vector<int32_t>().swap(m_pairStates);
    std::vector<uint64_t>().swap(m_pairBits);
}

const char* DoubleTrie::toolsVersion() const { return kMagic; }

void DoubleTrie::resetHeader() {
    clear();
}

bool DoubleTrie::failLoad(const std::string& message) {
    std::snprintf(m_err, sizeof m_err, "%s", message.c_str());
    resetHeader();
    return false;
}

void DoubleTrie::unpackHeader(const char* header) {
    std::memcpy(m_magic, header, kMagicSize);
    std::memcpy(&m_count, header + kMagicSize, 4);
}

const char* DoubleTrie::decodeHeader(const char* header, uint64_t available) {
    unpackHeader(header);
    if (std::strncmp(m_magic, kMagic, kMagicSize) != 0) return "Magic check failed";
    if (m_count < 0 || static_cast<uint64_t>(m_count) * sizeof(Entry) > available)
        return "File size too small";
    return nullptr;
}

bool DoubleTrie::load(std::FILE* fp) {
    clear();
    const int64_t remaining = TrieBase::remainingBytes(fp);
    char header[kHeaderSize];
    if (remaining < kHeaderSize || std::fread(header, 1, kHeaderSize, fp) != kHeaderSize)
        return failLoad("File size too small");
    if (const char* error = decodeHeader(header, static_cast<uint64_t>(remaining - kHeaderSize)))
        return failLoad(error);
    m_storage.resize(static_cast<size_t>(m_count));
    const size_t bytes = m_storage.size() * sizeof(Entry);
    if (bytes > 0 && std::fread(m_storage.data(), 1, bytes, fp) != bytes)
        return failLoad("read data error");
    if (!m_front.load(fp)) return failLoad(std::string("Left trie load failed: ") + m_front.get_err());
    // The rear failure reports the front trie's message.
    if (!m_rear.load(fp)) return failLoad(std::string("Rigth trie load failed: ") + m_front.get_err());
    m_table = m_storage.data();
    m_owned = true;
    buildPairStates();
    buildPairBits();
    return true;
}

char* DoubleTrie::load(char* buffer, unsigned long size) {
    clear();
    if (buffer == nullptr || size < static_cast<unsigned long>(kHeaderSize)) {
        failLoad("File size too small");
        return nullptr;
    }
    if (const char* error = decodeHeader(buffer, size - kHeaderSize)) {
        failLoad(error);
        return nullptr;
    }
    char* table = buffer + kHeaderSize;
    const size_t bytes = static_cast<size_t>(m_count) * sizeof(Entry);
    char* front = table + bytes;
    char* rear = m_front.load(front, size - (front - buffer));
    if (rear == nullptr) {
        failLoad(std::string("Left trie load failed: ") + m_front.get_err());
        return nullptr;
    }
    char* end = m_rear.load(rear, size - (rear - buffer));
    if (end == nullptr) {
        failLoad(std::string("Right trie load failed: ") + m_rear.get_err());
        return nullptr;
    }
    if (reinterpret_cast<uintptr_t>(table) % alignof(Entry) == 0) {
        m_table = reinterpret_cast<Entry*>(table);
        m_owned = false;
    } else {  // cannot be used in place: take a copy
        m_storage.resize(static_cast<size_t>(m_count));
        std::memcpy(m_storage.data(), table, bytes);
        m_table = m_storage.data();
        m_owned = true;
    }
    buildPairStates();
    buildPairBits();
    return end;
}

bool DoubleTrie::write(std::FILE* fp) {
    std::memset(m_magic, 0, kMagicSize);
    std::memcpy(m_magic, kMagic, sizeof kMagic);
    char header[kHeaderSize];
    std::memcpy(header, m_magic, kMagicSize);
    std::memcpy(header + kMagicSize, &m_count, 4);
    const size_t bytes = static_cast<size_t>(m_count) * sizeof(Entry);
    if (std::fwrite(header, 1, kHeaderSize, fp) != kHeaderSize) return false;
    if (bytes > 0 && std::fwrite(m_table, 1, bytes, fp) != bytes) return false;
    return m_front.write(fp) && m_rear.write(fp);
}

const char* DoubleTrie::dictVersion(std::FILE* fp) {
    char header[kHeaderSize];
    if (TrieBase::remainingBytes(fp) < kHeaderSize || std::fread(header, 1, kHeaderSize, fp) != kHeaderSize) {
        std::snprintf(m_err, sizeof m_err, "%s", "File size too small");
        return m_err;
    }
    unpackHeader(header);
    m_magic[kMagicSize - 1] = '\0';
    return m_magic;
}

int DoubleTrie::separatorEntry(int s) const {
    const int64_t base = m_front.cells()[s].base;
    if (base >= -1 || -base >= m_count) return 0;
    return static_cast<int>(-base);
}

int DoubleTrie::tailValue(int e, const unsigned char* tail, int len) const {
    const int rear = m_table[e].rear;
    if (!m_rear.isState(rear)) return 0;
    int matched = 0;
    const int end = m_rear.matchReverse(tail, len, rear, matched);
    return end == m_rear.root() && matched == len ? m_table[e].value : 0;
}

int DoubleTrie::match(const unsigned char* key, int len) const {
    if (m_front.length() <= m_front.root() || len < 0) return 0;
    int m = 0;
    const int s = m_front.matchLongest(key, len, m);
    if (isSeparator(s)) {
        const int e = separatorEntry(s);
        return e != 0 ? tailValue(e, key + m, len - m) : 0;
    }
    return m == len ? m_front.endValue(s) : 0;
}

WS_HOT void DoubleTrie::tailMatch(int s, int i, const unsigned char* key, int len, MatchInfo* out,
                                  int& count) const {
    const int e = separatorEntry(s);
    if (e == 0 || !m_rear.isState(m_table[e].rear)) return;
    int n = 0;
    const int end = m_rear.matchReverse(key + i + 1, len - i - 1, m_table[e].rear, n);
    if (end == m_rear.root()) out[count++] = MatchInfo{i + n, m_table[e].value};
}

bool DoubleTrie::matchesAfterOneByte(int s1) const {
    return isSeparator(s1) || m_front.next(s1, DoubleArrayTrie::kCodeEnd) != 0;
}

void DoubleTrie::buildPairStates() {
    std::vector<int32_t>().swap(m_pairStates);
    if (m_front.length() < kPairTableMinCells) return;
    std::vector<int32_t> states;
    assignPrefaulted(states, kPairCount, 0);
    const int root = m_front.root();
    for (int b0 = 0; b0 < 256; ++b0) {
        const int s1 = m_front.next(root, b0);
        if (s1 == 0) continue;
        if (matchesAfterOneByte(s1)) {
            for (int b1 = 0; b1 < 256; ++b1) states[b0 | b1 << 8] = kPairSlow;
            continue;
        }
        for (int b1 = 0; b1 < 256; ++b1) states[b0 | b1 << 8] = m_front.next(s1, b1);
    }
    m_pairStates.swap(states);
}

// Small tries: a scan of the cells finds every two-byte path (a parent
// whose own parent is the root), cheaper than probing all 65536 pairs.
void DoubleTrie::buildPairBits() {
    std::vector<uint64_t>().swap(m_pairBits);
    if (m_front.length() >= kPairTableMinCells || m_front.length() <= m_front.root()) return;
    std::vector<uint64_t> bits(kPairCount / 64, 0);
    const int root = m_front.root();
    for (int b0 = 0; b0 < 256; ++b0) {
        const int s1 = m_front.next(root, b0);
        if (s1 == 0 || !matchesAfterOneByte(s1)) continue;
        for (uint32_t b1 = 0; b1 < 256; ++b1) {
            const uint32_t pair = static_cast<uint32_t>(b0) | b1 << 8;
            bits[pair / 64] |= uint64_t{1} << (pair % 64);
        }
    }
    m_front.markBytePairs(bits);
    m_pairBits.swap(bits);
}

void DoubleTrie::markFirstPairs(uint8_t* table, uint8_t bit) const {
    if (!m_pairBits.empty()) {  // a small trie: few pairs
        for (size_t w = 0; w < m_pairBits.size(); ++w) {
            for (uint64_t b = m_pairBits[w]; b != 0; b &= b - 1)
                table[w * 64 + static_cast<size_t>(__builtin_ctzll(b))] |= bit;
        }
        return;
    }
    if (m_pairStates.empty()) {  // no filter: every pair
        for (int p = 0; p < kPairCount; ++p) table[p] |= bit;
        return;
    }
    // Eight entries a step, in a word: the byte table may alias anything,
    // so a byte loop would reload at every entry.
    const int32_t* states = m_pairStates.data();
    for (int p = 0; p < kPairCount; p += 8) {
        uint64_t marks = 0;
        for (int j = 0; j < 8; ++j)
            marks |= static_cast<uint64_t>(states[p + j] != 0 ? bit : 0) << (8 * j);
        uint64_t word;
        std::memcpy(&word, table + p, sizeof word);
        word |= marks;
        std::memcpy(table + p, &word, sizeof word);
    }
}

bool DoubleTrie::forEachKeyHead(
    int bytes, const std::function<void(const unsigned char*, int)>& visit) const {
    const int length = m_front.length();
    const int root = m_front.root();
    if (length >= kPairTableMinCells || !m_pairStates.empty()) return false;
    if (length <= root || bytes < 1) return true;
    const DoubleArrayTrie::Cell* const cells = m_front.cells();
    if (isSeparator(root)) return false;  // no sense to be made of it: keep every lookup
    // Child lists from one pass over the cells: each cell names its parent.
    std::vector<int> first(static_cast<size_t>(length), 0);
    std::vector<int> sibling(static_cast<size_t>(length), 0);
    for (int t = 1; t < length; ++t) {
        const int p = cells[t].check;
        if (t == root || p < 1 || p >= length || cells[p].base < -1) continue;
        const uint32_t code = DoubleArrayTrie::codeInto(cells, t, p);
        if (code > 255) continue;  // the end mark, read through next()
        sibling[t] = first[p];
        first[p] = t;
    }
    // Depth-first to `bytes` deep: each state has one parent, so each is
    // reached once at most and the walk ends.
    std::vector<unsigned char> head(static_cast<size_t>(bytes));
    struct Visit {
        int state;
        int depth;
    };
    std::vector<Visit> stack{{root, 0}};
    while (!stack.empty()) {
        const Visit v = stack.back();
        stack.pop_back();
        if (v.depth > 0)
            head[v.depth - 1] = static_cast<unsigned char>(
                DoubleArrayTrie::codeInto(cells, v.state, cells[v.state].check));
        if (isSeparator(v.state)) {
            visitTailHead(v.state, head.data(), v.depth, bytes, visit);
            continue;
        }
        if (v.depth == bytes || (v.depth > 0 && m_front.next(v.state, DoubleArrayTrie::kCodeEnd) != 0))
            visit(head.data(), v.depth);
        if (v.depth == bytes) continue;
        for (int c = first[v.state]; c != 0; c = sibling[c]) stack.push_back({c, v.depth + 1});
    }
    return true;
}

void DoubleTrie::visitTailHead(
    int s, unsigned char* head, int n, int bytes,
    const std::function<void(const unsigned char*, int)>& visit) const {
    const int e = separatorEntry(s);
    if (e == 0 || !m_rear.isState(m_table[e].rear) || m_rear.length() <= m_rear.root()) return;
    const DoubleArrayTrie::Cell* const cells = m_rear.cells();
    int r = m_table[e].rear;
    while (n < bytes && r != m_rear.root()) {
        const int parent = cells[r].check;
        if (!m_rear.isState(parent)) return;
        const uint32_t code = DoubleArrayTrie::codeInto(cells, r, parent);
        if (code > 255) return;
        head[n++] = static_cast<unsigned char>(code);
        r = parent;
    }
    visit(head, n);
}

WS_HOT int DoubleTrie::matchAll(const unsigned char* key, int len, MatchInfo* out, int max) const {
    if (m_front.length() <= m_front.root() || max < 1 || len < 1) return 0;
    // The cells in locals: writes to `out` could otherwise alias the
    // trie's members and force their reloads.
    const DoubleArrayTrie::Cell* const cells = m_front.cells();
    const uint32_t length = static_cast<uint32_t>(m_front.length());
    int count = 0;
    // Front state `s`, reached by key byte `i`: adds its match (end mark,
    // or the separator's tail); true when the walk ends there.
    auto arrive = [&](int s, int i) {
        const int32_t base = cells[s].base;
        if (base < -1) {
            tailMatch(s, i, key, len, out, count);
            return true;
        }
        const uint32_t end = static_cast<uint32_t>(base) + DoubleArrayTrie::kCodeEnd + 1;
        if (end != 0 && end < length && cells[end].check == s)
            out[count++] = MatchInfo{i, cells[end].base};
        return false;
    };
    if (!m_pairBits.empty() && !mayMatch(key, len)) return 0;
    int s = m_front.root();
    int i = 0;
    // The first two bytes in one step where the table says nothing can
    // match before them.
    if (len >= 2 && !m_pairStates.empty()) {
        const int t = m_pairStates[key[0] | key[1] << 8];
        // Segmenters walk from every character in turn: while this walk
        // waits on memory, start fetching the next walk's second step and
        // end mark (its first state was fetched by the walk before) and the
        // first state of the walk after it.
        if (len >= 6) {
            const int next = m_pairStates[key[2] | key[3] << 8];
            if (next > 0) {
                const uint32_t base = static_cast<uint32_t>(cells[next].base);
                const uint32_t step = base + key[4] + 1;
                const uint32_t end = base + DoubleArrayTrie::kCodeEnd + 1;
                if (step < length) __builtin_prefetch(&cells[step]);
                if (end < length) __builtin_prefetch(&cells[end]);
            }
            const int after = m_pairStates[key[4] | key[5] << 8];
            if (after > 0) __builtin_prefetch(&cells[after]);
        }
        if (t == 0) return 0;
        if (t != kPairSlow) {
            s = t;
            i = 1;
            if (arrive(s, i)) return count;
            ++i;
        }
    }
    for (; i < len && count < max; ++i) {
        const uint32_t t = static_cast<uint32_t>(cells[s].base) + key[i] + 1;
        if (t == 0 || t >= length || cells[t].check != s) break;
        s = static_cast<int>(t);
        if (arrive(s, i)) break;
    }
    return count;
}

void DoubleTrie::prepareForAdd() {
    std::vector<int32_t>().swap(m_pairStates);  // rebuilt by the next load only
    std::vector<uint64_t>().swap(m_pairBits);
    if (m_front.length() == 0) {
        init();
        return;
    }
    if (m_buildable) return;
    if (!m_owned) {
        m_storage.assign(m_table, m_table + m_count);
        m_table = m_storage.data();
        m_owned = true;
    }
    if (m_count < kFirstEntry) {
        m_storage.resize(kFirstEntry, Entry{0, 0});
        m_table = m_storage.data();
        m_count = kFirstEntry;
    }
    rebuildBookkeeping();
    m_rear.setStateChangeCallback(stateChange, this);
    m_buildable = true;
}

// Entries with rear state 0 are free; the others are in use.
void DoubleTrie::rebuildBookkeeping() {
    m_rearUsers.clear();
    m_freeEntries.clear();
    for (int e = m_count - 1; e >= kFirstEntry; --e) {
        if (m_table[e].rear == 0)
            m_freeEntries.push_back(e);
        else
            addUser(m_table[e].rear, e);
    }
}

void DoubleTrie::addUser(int rear, int entry) { m_rearUsers[rear].push_back(entry); }

void DoubleTrie::removeUser(int rear, int entry) {
    auto it = m_rearUsers.find(rear);
    if (it == m_rearUsers.end()) return;
    std::vector<int>& users = it->second;
    users.erase(std::remove(users.begin(), users.end(), entry), users.end());
    if (users.empty()) m_rearUsers.erase(it);
}

void DoubleTrie::moveUsers(int oldState, int newState) {
    auto it = m_rearUsers.find(oldState);
    if (it == m_rearUsers.end()) return;
    std::vector<int> users = std::move(it->second);
    m_rearUsers.erase(it);
    for (int e : users) m_table[e].rear = newState;
    std::vector<int>& target = m_rearUsers[newState];
    target.insert(target.end(), users.begin(), users.end());
}

int DoubleTrie::getNewSepState() {
    if (!m_freeEntries.empty()) {
        const int e = m_freeEntries.back();
        m_freeEntries.pop_back();
        return e;
    }
    m_storage.push_back(Entry{0, 0});
    m_table = m_storage.data();
    return m_count++;
}

int DoubleTrie::unlinkState(int state) {
    const int e = separatorEntry(state);
    m_front.setBase(state, -1);
    return e;
}

void DoubleTrie::readTail(int rear, std::string& tail) const {
    tail.clear();
    const DoubleArrayTrie::Cell* cells = m_rear.cells();
    // A damaged rear trie may hold a cycle; no tail is longer than the trie.
    for (int steps = 0; rear != m_rear.root() && m_rear.isState(rear) && steps < m_rear.length();
         ++steps) {
        const int parent = cells[rear].check;
        if (!m_rear.isState(parent)) break;
        tail.push_back(static_cast<char>(DoubleArrayTrie::codeInto(cells, rear, parent)));
        rear = parent;
    }
}

int DoubleTrie::rearAncestor(int rear, int steps) const {
    for (int i = 0; i < steps && rear != m_rear.root(); ++i) {
        const int parent = m_rear.cells()[rear].check;
        if (!m_rear.isState(parent)) break;
        rear = parent;
    }
    return rear;
}

int DoubleTrie::add(const unsigned char* key, int len, int value) {
    prepareForAdd();
    if (len < 0) len = 0;
    int s = m_front.root();
    int i = 0;
    while (i < len && !isSeparator(s)) {
        const int t = m_front.next(s, key[i]);
        if (t == 0) break;
        s = t;
        ++i;
    }
    if (isSeparator(s)) return splitSeparator(s, key + i, len - i, value);
    if (i == len) return m_front.add(key, len, value);
    return addSeparator(s, key[i], key + i + 1, len - i - 1, value);
}

// Hangs a new separator under `state` on `code`, its entry pointing at the
// rear state of `tail`.
int DoubleTrie::addSeparator(int& state, unsigned char code, const unsigned char* tail, int len,
                             int value) {
    const int e = getNewSepState();
    const int rear = m_rear.addPartialRev(tail, len);
    m_table[e] = Entry{rear, value};
    addUser(rear, e);
    return m_front.addNewChar(state, code, -e);
}

// The key reached separator `state` with `tail` left over. Equal tails
// overwrite; otherwise the common part of the two tails moves into the
// front trie and each key continues from where they differ.
int DoubleTrie::splitSeparator(int state, const unsigned char* tail, int len, int value) {
    const int e = separatorEntry(state);
    if (e == 0) return 0;  // damaged table: leave it alone
    const Entry old = m_table[e];
    std::string oldTail;
    readTail(old.rear, oldTail);
    const auto* oldBytes = reinterpret_cast<const unsigned char*>(oldTail.data());
    const int oldLen = static_cast<int>(oldTail.size());
    if (oldLen == len && std::memcmp(oldBytes, tail, static_cast<size_t>(len)) == 0) {
        m_table[e].value = value;
        return state;
    }
    int k = 0;
    while (k < len && k < oldLen && tail[k] == oldBytes[k]) ++k;

    unlinkState(state);
    int cur = state;
    for (int j = 0; j < k; ++j) cur = m_front.addNewChar(cur, tail[j], -1);

    removeUser(old.rear, e);
    if (k == oldLen) {
        m_table[e] = Entry{0, 0};
        m_freeEntries.push_back(e);
        m_front.addNewChar(cur, DoubleArrayTrie::kCodeEnd, old.value);
    } else {
        const int rear = rearAncestor(old.rear, k + 1);
        m_table[e].rear = rear;
        addUser(rear, e);
        m_front.addNewChar(cur, oldBytes[k], -e);
    }
    if (k == len) return m_front.addNewChar(cur, DoubleArrayTrie::kCodeEnd, value);
    return addSeparator(cur, tail[k], tail + k + 1, len - k - 1, value);
}

const char* DoubleTrie::stats() { return ""; }

bool DoubleTrie::isConsistent() { return true; }

void DoubleTrie::listAllEntries() {
    if (m_front.length() <= m_front.root()) return;
    std::string path;
    listFrom(path, m_front.root(), false);
}

void DoubleTrie::listAllEntriesUtf8() {
    if (m_front.length() <= m_front.root()) return;
    std::string path;
    listFrom(path, m_front.root(), true);
}

void DoubleTrie::printKey(const std::string& key, bool utf8) const {
    if (utf8)
        DoubleArrayTrie::putUtf16Line(key.data(), static_cast<int>(key.size()));
    else
        std::puts(key.c_str());
}

void DoubleTrie::listFrom(std::string& path, int state, bool utf8) {
    if (isSeparator(state)) {
        const int e = separatorEntry(state);
        if (e == 0) return;
        std::string tail;
        readTail(m_table[e].rear, tail);
        printKey(path + tail, utf8);
        return;
    }
    if (m_front.next(state, DoubleArrayTrie::kCodeEnd) != 0) printKey(path, utf8);
    if (static_cast<int>(path.size()) >= kMaxKeyListed) return;
    for (int code = 0; code < 256; ++code) {
        const int t = m_front.next(state, code);
        if (t == 0) continue;
        path.push_back(static_cast<char>(code));
        listFrom(path, t, utf8);
        path.pop_back();
    }
}

}  // namespace ws
