#ifndef ZEG_TOOLS_OPENCCCHARACTERS_H
#define ZEG_TOOLS_OPENCCCHARACTERS_H

#include <istream>
#include <map>
#include <string>

namespace zeg_tools {

// Traditional character -> the simplified form chosen for it, as Unicode
// code points.
using T2SMap = std::map<char32_t, char32_t>;

// Reads OpenCC's traditional-to-simplified character table as
// `opencc_dict -f ocd2 -t text` dumps it: one line per traditional character,
// "T<TAB>S1 S2 ...", every field UTF-8. Where several simplified forms are
// listed the first is kept, as OpenCC converts to it, unless it is the
// character itself (瞭 瞭 了): a query is translated character by character,
// without the phrases that make OpenCC keep such a character, and 瞭解
// must meet 了解; then the next form is taken. Empty
// lines are skipped. Returns false with `error` naming the first malformed
// line (1-based); `map` is then left untouched.
bool readOpenCCCharacters(std::istream& in, T2SMap& map, std::string& error);

// The code point of `text` when it is exactly one well-formed UTF-8
// sequence (no overlong forms, no surrogates, at most U+10FFFF).
bool decodeOneUtf8(const std::string& text, char32_t& codePoint);

}  // namespace zeg_tools

#endif
