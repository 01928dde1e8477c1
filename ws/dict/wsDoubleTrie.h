#ifndef ZEG_WS_DICT_WSDOUBLETRIE_H
#define ZEG_WS_DICT_WSDOUBLETRIE_H

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "ws/dict/wsDADLTrie.h"

namespace ws {

// The key store of every dictionary file: a two-trie.
//
// The front trie holds the prefixes that keys share. Where a key's path
// becomes unique, the byte that makes it so leads to a separator state
// whose base is -e (e >= 2), the number of an entry (rear state, value) in
// the separator table. The key's remaining bytes, its tail, hang in the
// rear trie, inserted last byte first: climbing from the entry's rear state
// to the rear root reads the tail in forward order, and tails that end
// alike share their rear states. A key that ends before its path becomes
// unique has an ordinary end mark in the front trie.
//
//   keys "abc" = 1, "abd" = 2, "x" = 3:
//
//     front:  root -a-> s1 -b-> s2 -c-> [sep 2]      table: 2: (rear root, 1)
//                                  -d-> [sep 3]             3: (rear root, 2)
//                  -x-> [sep 4]                             4: (rear root, 3)
//
//   adding "abcde" = 4 splits separator 2: its old tail "" and the new
//   tail "de" differ at once, so s2 -c-> s3 gets the end mark of "abc"
//   and s3 -d-> [sep 2] now holds (r, 4) where rear root -e-> r.
//
// Building keeps a map from rear states to the entries that point at them,
// so that entries follow rear states that relocation moves. A loaded trie
// can be extended: the map and the free entries are rebuilt first.
//
// File section (little-endian): magic "DoubleTrie V1.0.0" (32 bytes), N
// (int32), N entries of (rear state, value), the front trie section, the
// rear trie section.
//
// Not copyable. Thread safety as TrieBase.
class DoubleTrie final : public TrieBase {
public:
    struct Entry {
        int32_t rear;
        int32_t value;
    };

    static const int kMagicSize = 32;
    static const int kHeaderSize = 36;
    static const int kFirstEntry = 2;

    DoubleTrie();
    ~DoubleTrie() override;
    DoubleTrie(const DoubleTrie&) = delete;
    DoubleTrie& operator=(const DoubleTrie&) = delete;

    using TrieBase::load;
    using TrieBase::write;

    bool init() override;
    void clear() override;
    bool load(std::FILE* fp) override;
    char* load(char* buffer, unsigned long size) override;
    bool write(std::FILE* fp) override;
    const char* dictVersion(std::FILE* fp) override;
    const char* toolsVersion() const override;
    const char* get_err() const override { return m_err; }
    int match(const unsigned char* key, int len) const override;
    int matchAll(const unsigned char* key, int len, MatchInfo* out, int max) const override;
    // False when matchAll(key, len, ...) certainly finds nothing, judged by
    // the first two bytes alone (a loaded trie's filter); inline, so that a
    // caller asking several dictionaries skips the calls.
    bool mayMatch(const unsigned char* key, int len) const {
        if (len < 2) return true;
        const unsigned pair = key[0] | key[1] << 8;
        if (!m_pairBits.empty()) return (m_pairBits[pair / 64] >> (pair % 64) & 1) != 0;
        return m_pairStates.empty() || m_pairStates[pair] != 0;
    }
    // ORs `bit` into table[p] (kPairCount entries) for each first two
    // bytes p with which mayMatch lets a key through.
    void markFirstPairs(uint8_t* table, uint8_t bit) const;
    // Calls visit(head, n) with the first n = min(bytes, length) bytes of
    // every key (at least; a damaged trie may add heads no lookup can
    // match), each head once or more. Only a small trie is read so, cheap
    // enough for a load: false, with no call, for one with a pair table.
    bool forEachKeyHead(int bytes,
                        const std::function<void(const unsigned char*, int)>& visit) const;
    int add(const unsigned char* key, int len, int value) override;
    const char* stats() override;
    void listAllEntries() override;
    void listAllEntriesUtf8() override;
    bool isConsistent() override;

    // A free separator entry number (reused or appended).
    int getNewSepState();
    // Turns separator `state` into an ordinary childless front state and
    // returns its entry number (still holding its rear state and value).
    int unlinkState(int state);

    int entryCount() const { return m_count; }
    const DADLTrie& front() const { return m_front; }
    const DADLTrie& rear() const { return m_rear; }

private:
    friend void stateChange(void* trie, int oldState, int newState);

    // The entry of front state `s` when it is a separator with a valid
    // entry; 0 otherwise.
    int separatorEntry(int s) const;
    bool isSeparator(int s) const { return m_front.cells()[s].base < -1; }
    // The value of `key` when it continues separator entry `e`; 0 otherwise.
    int tailValue(int e, const unsigned char* tail, int len) const;

    // Adds the match of separator `s`'s tail when the key continues it.
    void tailMatch(int s, int i, const unsigned char* key, int len, MatchInfo* out,
                   int& count) const;
    // True when a walk through root child `s1` can match after its first
    // byte (a key ends there, or a separator's tail starts): the pair
    // filters must then let every second byte through.
    bool matchesAfterOneByte(int s1) const;
    // Reads up to `bytes` - n more key bytes into head[n..] from separator
    // `s`'s tail and visits the head; nothing when the tail is broken.
    void visitTailHead(int s, unsigned char* head, int n, int bytes,
                       const std::function<void(const unsigned char*, int)>& visit) const;
    // Fills m_pairStates for a loaded trie big enough to gain from it.
    void buildPairStates();
    // Fills m_pairBits for a loaded trie too small for m_pairStates.
    void buildPairBits();
    void resetHeader();
    bool failLoad(const std::string& message);
    // Reads magic and entry count from the kHeaderSize bytes at `header`.
    void unpackHeader(const char* header);
    // Unpacks and checks the header of a section with `available` bytes
    // after it, for both loaders; the failure message, or null when usable.
    const char* decodeHeader(const char* header, uint64_t available);
    void prepareForAdd();
    void rebuildBookkeeping();
    void addUser(int rear, int entry);
    void removeUser(int rear, int entry);
    void moveUsers(int oldState, int newState);
    void readTail(int rear, std::string& tail) const;
    int rearAncestor(int rear, int steps) const;
    int addSeparator(int& state, unsigned char code, const unsigned char* tail, int len,
                     int value);
    int splitSeparator(int state, const unsigned char* tail, int len, int value);
    void listFrom(std::string& path, int state, bool utf8);
    void printKey(const std::string& key, bool utf8) const;

    char m_magic[kMagicSize] = {};
    int32_t m_count = 0;
    DADLTrie m_front;
    DADLTrie m_rear;
    std::unordered_map<int, std::vector<int>> m_rearUsers;
    std::vector<int> m_freeEntries;
    bool m_buildable = false;  // bookkeeping matches the table
    Entry* m_table = nullptr;
    std::vector<Entry> m_storage;
    bool m_owned = false;
    char m_err[512] = {};
    // The front state after each two-byte prefix (first byte low), so that
    // matchAll skips the two walks from the root, whose cells most lookups
    // would otherwise fetch: 0 when no key starts so, kPairSlow when a key
    // ends or a tail starts after the first byte. Built at load, for big
    // tries only; empty while the trie is being built.
    static const int kPairCount = 65536;
    static const int kPairSlow = -1;
    static const int kPairTableMinCells = 1 << 16;
    std::vector<int32_t> m_pairStates;
    // For the other tries, one bit a two-byte prefix: clear when matchAll
    // can find nothing after it (the same rule as a 0 above).
    std::vector<uint64_t> m_pairBits;
};

// Relocation callback installed on the rear trie: entries follow the state.
void stateChange(void* trie, int oldState, int newState);

}  // namespace ws

#endif
