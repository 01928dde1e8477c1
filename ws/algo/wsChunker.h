#ifndef ZEG_WS_ALGO_WSCHUNKER_H
#define ZEG_WS_ALGO_WSCHUNKER_H

#include <string>
#include <vector>

#include "ws/core/wsChunk.h"

namespace ws {

// Cuts a long UTF-16 text into chunks that are segmented one by one. A chunk
// ends just after a delimiter, or, failing one, when it reaches the chunk
// size; the last chunk may be one code unit longer than the size. The
// delimiters are the members of "delimiterlist=" ... "end#" in a UTF-8
// definition file (see RuleText). Lengths count UTF-16 code units.
// Copying copies the definition and the table. Thread safety: once loaded
// it is only read, so threads may share it, each with its own vector of
// chunks; loadText and setChunkSize need exclusive use.
class Chunker {
public:
    // No delimiters, and no chunk size: until setChunkSize, a text is cut
    // only after its delimiters.
    Chunker();

    // Reads the delimiter definition at `path` and builds the table. False
    // when the file cannot be read or has no "delimiterlist=" with its end
    // mark (nothing changes then), or when the table cannot be built (then
    // no character is a delimiter).
    bool loadText(const std::string& path);

    // Chunks end after at most `size` code units. A size of 0 would make
    // empty chunks without end: it is refused, logged, and the old size kept.
    void setChunkSize(unsigned int size);
    unsigned int getChunkSize() const { return m_chunkSize; }

    // True when `c` is a delimiter.
    bool checkWord(unsigned int c) const { return c < m_table.size() && m_table[c] == kDelimiter; }

    // Replaces `chunks` with the chunks of text[0, n), each pointing into
    // `text`; returns their number (0 for an empty text). Allocates nothing
    // once `chunks` has held as many chunks. Out of memory: logged, `chunks`
    // emptied, 0 returned.
    unsigned int getChunks(const unsigned short* text, unsigned int n,
                           std::vector<CHUNK_T>& chunks) const;

private:
    static constexpr unsigned char kDelimiter = 1;

    // Rebuilds the table from m_text; false, with no delimiter left, when
    // memory runs out or the definition converts to nothing.
    bool _doInit();
    void _cut(const unsigned short* text, unsigned int n, std::vector<CHUNK_T>& chunks) const;

    std::string m_text;                  // the members of the delimiter list, UTF-8
    std::vector<unsigned char> m_table;  // one entry per code unit once built
    unsigned int m_chunkSize;
};

}  // namespace ws

#endif
