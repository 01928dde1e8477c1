#ifndef ZEG_TOOLS_PIECESEGMENTER_H
#define ZEG_TOOLS_PIECESEGMENTER_H

#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "ws/algo/wsChunker.h"

namespace zeg_tools {

// Segments one long input line in pieces and writes each piece's output as
// soon as it is made, so that a line of any length costs memory bounded by
// the window, not by the line.
//
// Where pieces end: the segmenter already cuts texts longer than
// WsSegmenterImp::kChunkSize code units after every chunk delimiter, and
// after kChunkSize units when no delimiter comes. A piece ends at the last
// such place the segmenter would cut anyway: after the last delimiter in the
// window, or else at the last multiple of kChunkSize units since the piece
// began (a piece always begins where a chunk of the whole line begins).
// Lines up to the window are given whole, as before.
//
// NUL bytes: the segmenter's text output is a C string, so each NUL is given
// to the segmenter as a private-use character that the line does not hold
// (one character no dictionary or rule knows, as a NUL is) and turned back
// into a NUL in the output.
//
// Not copyable (holds the chunker's table). Thread safety: one object per
// thread.
class PieceSegmenter {
public:
    // Segments `len` bytes of UTF-8 text; the output text (words and
    // blanks, no NUL), or null when the text cannot be segmented.
    typedef std::function<const char*(const char* text, std::size_t len)> Segment;

    // `window`: bytes gathered before a piece is cut off a line.
    PieceSegmenter(Segment segment, std::size_t window);
    PieceSegmenter(const PieceSegmenter&) = delete;
    PieceSegmenter& operator=(const PieceSegmenter&) = delete;

    // Loads the chunk delimiters (the segmenter's SPACE_DEFINE_FILE). False
    // when the file cannot be read; pieces are then cut at multiples of the
    // chunk size only.
    bool loadDelimiters(const std::string& path);

    // Adds the next bytes of the current line; `more`: the line goes on.
    // Writes to `out` every piece that is complete. False when a piece could
    // not be segmented (its output is left out) or writing failed; the line
    // is still consumed to its end.
    bool add(const std::string& bytes, bool more, std::FILE* out);

    // Appends the output of a whole line of at most the window's length to
    // `out` (without a line feed). False when it could not be segmented.
    bool segmentLine(const std::string& line, std::string& out);

    // True when the last write to `out` failed.
    bool writeFailed() const { return m_writeFailed; }

private:
    bool emit(const char* text, std::size_t len, std::FILE* out);
    // Segments `text` and hands the output to write(bytes, n), which
    // returns false when writing failed.
    template <class Write>
    bool emitWith(const char* text, std::size_t len, const Write& write);
    std::size_t cutPoint() const;
    bool pickStandIn(const char* text, std::size_t len);

    Segment m_segment;
    std::size_t m_window;
    ws::Chunker m_chunker;
    bool m_haveDelimiters = false;
    std::string m_pending;
    std::string m_text;                // a piece with its NULs replaced
    std::vector<bool> m_usedStandIns;  // private-use characters the piece holds
    std::string m_standIn;             // UTF-8 of the one in use
    bool m_writeFailed = false;
};

}  // namespace zeg_tools

#endif
