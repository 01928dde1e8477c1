#ifndef ZEG_WS_CORE_WSUTILITY_H
#define ZEG_WS_CORE_WSUTILITY_H

#include <string>
#include <vector>

#include "ws/core/wsExport.h"

namespace ws {

// Character classes of UTF-16 code units, and the line-splitting helpers of
// the dictionary and model loaders. The classes are deliberately coarse
// (every unit above 0xFF is a hanzi, every unit above 0xFF00 a full-width
// letter or digit): the segmenter's rules are tuned to exactly these bounds.
// All functions are static and pure (showTimes writes to standard output);
// safe from any thread.
class WS_EXPORT Utility {
public:
    // True exactly for space, tab, carriage return and line feed.
    static bool isSpaceChar(unsigned short c) {
        return c == 0x20 || c == 0x09 || c == 0x0D || c == 0x0A;
    }
    // True exactly for the ideographic (full-width) space U+3000.
    static bool isQuanSpaceChar(unsigned short c) { return c == 0x3000; }
    // True for every unit above 0xFF.
    static bool isHanziChar(unsigned short c) { return c > 0xFF; }
    // True for every unit above 0xFF00.
    static bool isQuanAlphaNum(unsigned short c) { return c > 0xFF00; }

    // Replaces `out` with the maximal runs of `line` that contain no byte of
    // `delims`, in order. Never yields an empty field.
    static void splitLine(const std::string& line, const std::string& delims,
                          std::vector<std::string>& out);

    // Splits `line` like splitLine, then regroups the pieces along the
    // fields of `gran` (a coarser segmentation of the same text): for each
    // field of `gran`, pieces are taken while their summed length is below
    // the field's length, and the run of delimiters that separates two
    // fields of `gran` is emitted as an element of its own. Pieces left when
    // the last field of `gran` ends the line are all appended. When `gran`
    // holds no space, this is splitLine(line, delims, out).
    static void splitGran(const std::string& gran, const std::string& line,
                          const std::string& delims, std::vector<std::string>& out);

    // Splits a token "word/tag" (optionally "[word/tag]"): `word` is the text
    // before the first '/' (after a '[' that precedes the slash), `pos` the
    // text after it (up to a following ']'). An empty word becomes U+25C7
    // (UTF-8 E2 97 87). Without '/', `word` is the whole token and `pos` is
    // empty.
    static void extractWordPos(const std::string& token, std::string& word, std::string& pos);

    // Prints the user, system, children's user and children's system times
    // of the process in seconds to standard output (a diagnostic).
    static void showTimes();
};

}  // namespace ws

#endif
