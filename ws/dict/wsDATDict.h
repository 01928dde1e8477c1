#ifndef ZEG_WS_DICT_WSDATDICT_H
#define ZEG_WS_DICT_WSDATDICT_H

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "ws/dict/wsDoubleTrie.h"
#include "ws/dict/wsMMap.h"

namespace ws {

// The segmenter's dictionary file: words (keys: the little-endian bytes of
// their UTF-16 text) in a DoubleTrie, each mapped to a value record in one
// flat byte area. A key's trie value is the byte offset of its record, and
// that offset is the word's id; offset 0 is never a record, so id 0 means
// "no word".
//
// Record at offset id, unaligned: weight (float32), L (uint32), L extra
// bytes whose layout belongs to the dictionary kind.
//
// File (little-endian):
//   0   32  magic text, NUL-terminated ("DATDict_v_1_0")
//   32  4   dataMax D: size of the area (bytes)
//   36  4   used: the next free offset (starts at 1)
//   40  4   longest key (bytes)
//   44  4   padding
//   48  8   total frequency (float64)
//   56  D   the area, unused tail included
//   56+D    the key trie (a DoubleTrie section); other kinds append more.
//
// A dictionary is built by add() and written, or loaded: copied from a
// stream, used in place from a caller's buffer, or mapped read-only from a
// file (shared through MMap; adds then return 0). Loaded bytes are not
// trusted: loads check every count against the bytes there are, and a
// lookup whose id or record would leave the area finds nothing.
//
// Error codes (WsErrorCode): -1 open / too small in memory, -2 too small in
// a stream, -3 wrong magic, -4 read error, -5 trie section error (stream) or
// record too large, -6 area too large, -7 write error, -9 word over 64
// UTF-16 units, -10 not convertible to UTF-16, -11 key exists, and
// kNotFound (-100) for a word that is not in the dictionary.
//
// Not copyable (owns its area, trie and mapping). Thread safety: loaded
// dictionaries only read and may be shared by threads; adding and loading
// need exclusive use.
class DATDict {
public:
    static constexpr int kNotFound = -100;
    static constexpr unsigned kMagicSize = 32;
    static constexpr unsigned kHeaderSize = 24;      // the header after the magic
    static constexpr unsigned kSectionStart = 56;    // magic + header
    static constexpr unsigned kAreaStep = 1024;      // growth of the area
    static constexpr unsigned kMaxKeyUnits = 64;     // longest word of the UTF-8 add
    static constexpr unsigned kRecordHead = 8;       // weight + L

    DATDict();
    virtual ~DATDict();
    DATDict(const DATDict&) = delete;
    DATDict& operator=(const DATDict&) = delete;

    // Maps `path` read-only and uses it in place; the dictionary becomes
    // read-only (even when the load fails). 0 or an error code; -1 when the
    // file cannot be mapped.
    virtual int loadDict(const char* path);
    // Copies the dictionary at the stream's position. 0 or an error code.
    virtual int loadDict(std::FILE* fp);
    // Uses the `size` bytes at `buffer` in place: the buffer must outlive
    // the dictionary and stay unchanged. 0 or an error code.
    // Any failed load leaves the dictionary empty.
    virtual int loadDict(const char* buffer, unsigned size);

    // Writes the dictionary; 0, -1 (cannot open `path`) or -7.
    virtual int writeDict(const char* path);
    virtual int writeDict(std::FILE* fp);

    // The record of `key` (raw bytes, `len` bytes), or null.
    virtual const char* match(const char* key, unsigned len) const;
    // Every prefix of `key` that is a word, shortest first, into `out`
    // (room for `max`); {pos: index of the prefix's last byte, value: id}.
    // Returns their number.
    virtual int matchAll(const char* key, unsigned len, TrieBase::MatchInfo* out,
                         unsigned max) const;
    // The same, with each match's record (never null) in `records` (room
    // for `max`, or null).
    int matchRecords(const char* key, unsigned len, TrieBase::MatchInfo* out,
                     const char** records, unsigned max) const;
    // False when matchRecords(key, len, ...) certainly finds nothing (see
    // DoubleTrie::mayMatch).
    bool mayMatch(const char* key, unsigned len) const {
        return m_trie->mayMatch(reinterpret_cast<const unsigned char*>(key),
                                len > 2 ? 2 : static_cast<int>(len));
    }
    // Marks the first two key bytes mayMatch lets through (DoubleTrie::markFirstPairs).
    void markFirstPairs(uint8_t* table, uint8_t bit) const { m_trie->markFirstPairs(table, bit); }
    // The heads of the keys of a small dictionary (DoubleTrie::forEachKeyHead).
    bool forEachKeyHead(int bytes,
                        const std::function<void(const unsigned char*, int)>& visit) const {
        return m_trie->forEachKeyHead(bytes, visit);
    }

    // Adds a word given as UTF-8 (`len` bytes) with its record: a null
    // `weight` means 1.0; `extra` holds extraLen bytes (may be null only
    // when extraLen is 0). Returns the new id, 0 when read-only, or -9,
    // -10, -11, -5 (a record that the area cannot take in one step).
    virtual int add(const char* utf8, unsigned len, float* weight, unsigned char* extra,
                    unsigned extraLen);
    // As above for UTF-16 text of `len` units (no length limit).
    virtual int add(unsigned short* key, unsigned len, float* weight, unsigned char* extra,
                    unsigned extraLen);

    // The record at `id`; null when id is 0, not below used, or the record
    // does not lie inside the area. Points into the area (read-only).
    virtual const char* operator[](unsigned id) const;
    // match(key, strlen(key)).
    virtual const char* operator[](const char* key) const;

    // The key trie's magic ("DoubleTrie V1.0.0").
    virtual const char* toolsVersion() const;
    // This dictionary's magic when it is loaded or when the file at `path`
    // starts with it; null (with a log line) otherwise.
    virtual const char* dictVersion(const char* path);
    // The key trie's last error text.
    virtual const char* getTrieErr() const;

    // The id of a word (UTF-8, `len` bytes / UTF-16, `len` units), or
    // kNotFound; -10 when the UTF-8 text does not convert.
    virtual int getWordId(const char* utf8, unsigned len) const;
    virtual int getWordId(const unsigned short* key, unsigned len) const;

    // The record at `id`: sets `weight` and *extra (null when L is 0, or
    // when there is no such record) and returns L; 0 for a negative or
    // unknown id. The extra bytes are read-only (they may lie in a
    // read-only mapping) and live as long as the dictionary's data.
    virtual int getValue(int id, unsigned char** extra, float& weight) const;

    // Prints every word to standard output as UTF-8, one per line.
    virtual void listAllEntries();
    // Empties the dictionary (frees or releases its data). Keeps read-only.
    virtual void clearData();

    double getTotalFreq() const { return m_header.totalFreq; }
    void setTotalFreq(double freq) { m_header.totalFreq = freq; }
    unsigned getDataMax() const { return m_header.dataMax; }

    int used() const { return m_header.used; }
    unsigned maxKeyBytes() const { return m_header.maxKeyLen; }
    bool isLoaded() const { return m_loaded; }
    bool isReadOnly() const { return m_readOnly; }
    bool ownsArea() const { return m_owned; }
    const char* magic() const { return m_magic; }

    // Record fields, read unaligned. REQUIRES: a record from operator[].
    static float recordWeight(const char* record) {
        float w;
        std::memcpy(&w, record, sizeof w);
        return w;
    }
    static uint32_t recordLength(const char* record) {
        uint32_t n;
        std::memcpy(&n, record + 4, sizeof n);
        return n;
    }
    // The extra bytes of `record` as getValue gives them: null when empty.
    static unsigned char* recordValue(const char* record) {
        // The bytes may lie in a read-only mapping; callers only read them.
        return recordLength(record) > 0
                   ? reinterpret_cast<unsigned char*>(const_cast<char*>(record + kRecordHead))
                   : nullptr;
    }

protected:
    // The header as stored, one 24-byte block.
    struct Header {
        uint32_t dataMax = 0;
        int32_t used = 1;
        uint32_t maxKeyLen = 0;
        uint32_t padding = 0;
        double totalFreq = 0.0;
    };
    static_assert(sizeof(Header) == kHeaderSize, "the header is stored as one block");

    // For kinds with another magic (at most 31 characters).
    explicit DATDict(const char* magic);

    // Adds `key` (byteLen bytes) with its record; id or error code.
    virtual int _add(const char* key, unsigned byteLen, float* weight, unsigned char* extra,
                     unsigned extraLen);

    // Bytes of the area for `dataMax` (entries of 4 bytes for BaseDict).
    virtual uint64_t areaBytes(uint64_t dataMax) const { return dataMax; }

    // Makes the area hold `dataMax` units, owned (a borrowed area is
    // copied), keeping its contents.
    void growArea(uint32_t dataMax);
    char* writableArea() { return m_storage.data(); }
    const char* area() const { return m_area; }
    Header& header() { return m_header; }
    const Header& header() const { return m_header; }
    DoubleTrie& trie() { return *m_trie; }
    const DoubleTrie& trie() const { return *m_trie; }
    // Where this section ended in the last buffer or mapping loaded (null
    // after a stream load): kinds with more sections go on from there.
    const char* sectionEnd() const { return m_end; }

private:
    // Checks the magic field and the header read from a section of
    // `available` bytes (counted as the caller's quirk requires); `badSize`
    // is the code for counts that do not fit.
    int checkHeader(const char* magicField, const Header& h, uint64_t available,
                    int badSize) const;
    int loadMapped(const char* buffer, unsigned size, std::unique_ptr<MMap> map);
    void commit(const Header& h, const char* area, std::vector<char> storage,
                std::unique_ptr<DoubleTrie> trie, std::unique_ptr<MMap> map);
    int failLoad(int code);
    bool recordFits(unsigned id) const;

    Header m_header;
    const char* m_area = nullptr;
    std::vector<char> m_storage;  // the area when owned
    std::unique_ptr<DoubleTrie> m_trie;
    bool m_owned = false;
    bool m_readOnly = false;
    char m_magic[kMagicSize] = {};
    std::unique_ptr<MMap> m_map;
    bool m_loaded = false;
    const char* m_end = nullptr;
};

}  // namespace ws

#endif
