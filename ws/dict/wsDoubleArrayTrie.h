#ifndef ZEG_WS_DICT_WSDOUBLEARRAYTRIE_H
#define ZEG_WS_DICT_WSDOUBLEARRAYTRIE_H

#include <cstdint>
#include <string>
#include <vector>

#include "ws/dict/wsTrieBase.h"

namespace ws {

// A plain double-array trie over bytes.
//
// States are cell indices; the root is state 1 and cell 0 is never a state.
// Each cell holds `base` and `check`. State s moves on code k (a key byte
// 0..255, or 257 for the end of a key) to cell t = base[s] + k + 1, which
// exists when 1 <= t < length and check[t] == s. A key's value sits in
// base[] of its end cell (code 257). A cell is free when check < 1.
//
// File section (little-endian): root (int32), length N (int32), magic
// (32 bytes, NUL-padded), then N cells of base (int32), check (int32).
//
// The cells are either owned (built or loaded by copy) or borrowed from a
// caller's buffer (loaded in place); any change first copies borrowed cells.
// Not copyable. Thread safety as TrieBase.
class DoubleArrayTrie : public TrieBase {
public:
    struct Cell {
        int32_t base;
        int32_t check;
    };

    static const int kGrowCells = 4096;
    static const int kCodeEnd = 257;    // end-of-key mark
    static const int kCodeCount = 259;  // codes scanned when moving a state
    static const int kMagicSize = 32;
    static const int kHeaderSize = 40;

    DoubleArrayTrie();
    ~DoubleArrayTrie() override;
    DoubleArrayTrie(const DoubleArrayTrie&) = delete;
    DoubleArrayTrie& operator=(const DoubleArrayTrie&) = delete;

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
    int add(const unsigned char* key, int len, int value) override;
    const char* stats() override;
    void listAllEntries() override;
    void listAllEntriesUtf8() override;
    bool isConsistent() override;

    virtual bool checkMagic() const;
    virtual void setMagic();
    // Lowest base >= 2 whose cells for every code in `codes` (and for
    // minCode) are free; grows the array as needed.
    virtual int getNewBase(const int* codes, int count, int minCode, int maxCode);
    // Grows the array by kGrowCells zeroed cells (copying borrowed cells).
    virtual void extend();
    // Claims free cell `state` for use (nothing to do for the plain array).
    virtual void getState(int state);
    // Returns cell `state` to the free cells.
    virtual void freeState(int state);

    // Follows the key from the root while transitions exist; `matched`
    // receives the bytes followed. Returns the state reached (0 for an
    // empty trie; the root for len <= 0).
    int matchLongest(const unsigned char* key, int len, int& matched) const;
    // Climbs from `state` towards the root, consuming key bytes in order
    // while each is the code by which the current state hangs under its
    // parent. Stops at the root, after `len` bytes or at a mismatch;
    // `matched` receives the bytes consumed. Returns the state reached.
    int matchReverse(const unsigned char* key, int len, int state, int& matched) const;

    // Adds the key's states (first byte first / last byte first) without an
    // end mark; returns the last state.
    int addPartial(const unsigned char* key, int len);
    int addPartialRev(const unsigned char* key, int len);
    // Adds the transition of `state` on `code`, giving the new cell `value`
    // unless it is 0. `state` is updated when making room moved it.
    // Returns the new cell.
    int addNewChar(int& state, int code, int value);

    // The key-string record, a list of keys kept for isConsistent().
    void appendKeyStr(const unsigned char* key, int len);
    void initKeyStr();
    void cleanKeyStr();

    // Debug dumps to standard output.
    void printLink(int state) const;
    void printTrie(int state, int depth) const;

    // Sets base[] of a valid state directly (the two-trie marks separators
    // with it). Copies borrowed cells first.
    void setBase(int state, int base);

    // Prints `len` bytes of UTF-16LE text as one UTF-8 line (the UTF-8
    // listing), or a complaint when the bytes cannot be such text.
    static void putUtf16Line(const char* bytes, int len);

    // Installs the relocation callback (null to remove).
    void setStateChangeCallback(StateChangeFn fn, void* userData);

    int root() const { return m_root; }
    int length() const { return m_length; }
    bool ownsCells() const { return m_owned; }
    const Cell* cells() const { return m_cells; }

    // The transition of `state` on `code`, or 0. REQUIRES: valid `state`.
    int next(int state, int code) const {
        const uint32_t t = static_cast<uint32_t>(m_cells[state].base) + code + 1;
        return t != 0 && t < static_cast<uint32_t>(m_length) && m_cells[t].check == state
                   ? static_cast<int>(t)
                   : 0;
    }
    // The code on which `parent` moves to `state`: the inverse of next().
    // Out-of-range values (above 255 or kCodeEnd) tell the end mark or damage.
    static uint32_t codeInto(const Cell* cells, int state, int parent) {
        return static_cast<uint32_t>(state) - static_cast<uint32_t>(cells[parent].base) - 1;
    }
    // True for 1 <= state < length.
    bool isState(int state) const { return state >= 1 && state < m_length; }
    // The value of the key ending at `state`, 0 when none.
    int endValue(int state) const {
        const int t = next(state, kCodeEnd);
        return t != 0 ? m_cells[t].base : 0;
    }
    // Sets bit b0 | b1 << 8 of `bits` (65536 bits) for each path of two key
    // bytes b0, b1 from the root, by one scan of the cells.
    void markBytePairs(std::vector<uint64_t>& bits) const;

protected:
    void setError(const char* message);
    // Resets to an empty, unusable trie after a failed load.
    void resetHeader();
    // Reads root, length and magic from the kHeaderSize bytes at `header`.
    void unpackHeader(const char* header);
    // Unpacks and checks the header of a section whose cells may take
    // `available` bytes; the one check both loaders share. False, with the
    // error set and the trie reset, when the header cannot be used.
    bool decodeHeader(const char* header, uint64_t available);
    // Copies borrowed cells so that they can be changed.
    void makeWritable();
    // Codes (ascending) of the children of `state`; returns their number.
    int childCodes(int state, int* codes) const;
    void relocate(int state, int newBase, const int* codes, int count);
    int getNewState(int& state, int code);
    void setState(int state, int code, int value);
    bool isFree(int cell) const { return m_cells[cell].check < 1; }
    // REQUIRES: owned cells (makeWritable) and a valid index.
    Cell& cellAt(int index) { return m_cells[index]; }
    void growStorage(int cells);
    bool magicEquals(const char* text) const;
    void putMagic(const char* text);

private:
    void listAll(char* buf, int depth, int state);
    void listAllUtf8(char* buf, int depth, int state);
    int lowestFreeCell();

    Cell* m_cells = nullptr;
    std::vector<Cell> m_storage;
    bool m_owned = false;
    int32_t m_root = 1;
    int32_t m_length = 0;
    char m_magic[kMagicSize] = {};
    std::string m_stats;
    std::vector<unsigned char> m_keyBytes;
    std::vector<int> m_keyLengths;
    char m_err[512] = {};
    StateChangeFn m_callback = nullptr;
    void* m_userData = nullptr;
    int m_freeHint = 2;  // no free cell below it
};

}  // namespace ws

#endif
