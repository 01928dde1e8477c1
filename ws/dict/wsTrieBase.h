#ifndef ZEG_WS_DICT_WSTRIEBASE_H
#define ZEG_WS_DICT_WSTRIEBASE_H

#include <cstdint>
#include <cstdio>

namespace ws {

// The interface of the segmenter's byte-keyed tries. A key is a run of bytes
// (often the little-endian bytes of UTF-16 text; byte 0 is allowed since
// lengths are explicit) and maps to one 32-bit value; a value of 0 reads as
// absent. Lengths are in bytes.
//
// Lookups (match, matchAll) never allocate and never fail: on an empty or
// failed trie they miss. A loaded trie is untrusted data: lookups stay
// inside the loaded section whatever its bytes.
//
// Thread safety: lookups only read and may run concurrently on a loaded
// trie; add, loading and stats need exclusive use.
class TrieBase {
public:
    // One prefix match: `pos` is the index of the prefix's last byte (the
    // prefix is pos + 1 bytes long), `value` its value.
    struct MatchInfo {
        int pos;
        int value;
    };

    // Called whenever relocation moves a state, with the user data given
    // when it was installed.
    typedef void (*StateChangeFn)(void* userData, int oldState, int newState);

    virtual ~TrieBase();

    // Prepares an empty trie for add().
    virtual bool init() = 0;
    // Frees everything; the trie is empty afterwards.
    virtual void clear() = 0;

    // Loads the trie section at the start of the file at `path`. False, with
    // a line on standard error, when the file cannot be opened.
    virtual bool load(const char* path);
    // Loads (copies) the section at the stream's position; on success the
    // stream is left just after it. False with get_err() set on failure.
    virtual bool load(std::FILE* fp) = 0;
    // Uses the section at `buffer` in place, without copying: the buffer must
    // outlive the trie. Returns the first byte after the section, or null
    // (get_err() set) on failure.
    virtual char* load(char* buffer, unsigned long size) = 0;

    // Writes the trie as one section to `path` / at the stream's position.
    virtual bool write(const char* path);
    virtual bool write(std::FILE* fp) = 0;

    // Reads the section header at the stream's position and returns the
    // magic text found there ("File size too small" when there is no room).
    virtual const char* dictVersion(std::FILE* fp) = 0;
    // The magic text this class writes.
    virtual const char* toolsVersion() const = 0;
    // The last error message ("" when none).
    virtual const char* get_err() const = 0;

    // The value of the whole key, 0 when absent.
    virtual int match(const unsigned char* key, int len) const = 0;
    // Stores in `out` (room for `max`) every prefix of the key that is a
    // key, shortest first; returns their number.
    virtual int matchAll(const unsigned char* key, int len, MatchInfo* out, int max) const = 0;
    // Inserts the key or overwrites its value; returns the key's end cell.
    virtual int add(const unsigned char* key, int len, int value) = 0;

    // A short text about the trie's size (owned by the trie).
    virtual const char* stats() = 0;
    // Print every key to standard output, one per line: as raw bytes, or,
    // for tries of UTF-16 keys, as UTF-8.
    virtual void listAllEntries() = 0;
    virtual void listAllEntriesUtf8() = 0;
    // True when every key recorded for checking still matches.
    virtual bool isConsistent() = 0;

    // Bytes from the stream's position to its end, or -1 when the stream
    // cannot tell (a pipe).
    static int64_t remainingBytes(std::FILE* fp);
};

}  // namespace ws

#endif
