#ifndef ZEG_WS_CORE_WSRESULTTEXT_H
#define ZEG_WS_CORE_WSRESULTTEXT_H

#include <string>
#include <vector>

#include "ws/core/wsWordRecord.h"

namespace ws {

class PosTagger;
class PropertyDict;

// Renders UTF-16 result words as UTF-8 text, each word followed by one
// blank. The text grows to the longest result seen and is reused.
// Thread safety: one rendering at a time per object.
class ResultText {
public:
    // The plain form: the word, then "/" and its tag name when `tagger` is
    // set and the word is not one space character. Words are read from
    // `orgWord` when `original` is set (where spaces were removed, the
    // caller's text), else from `word`. Returns the number of words skipped
    // because they had no UTF-8 form.
    int renderPlain(const std::vector<WORD_T>& words, bool original, PosTagger* tagger);

    // The weighted form: a word with no types, no name or organisation
    // property and no sub-words is followed by a blank; any other by
    // "[|", "/name@weight " per type, "/NR " for a person name, "/NT " for an
    // organisation, "#sub-word " per semantic item, and "|] ". Returns the
    // number of words skipped.
    int renderWeighted(const std::vector<WORD_T>& words, const PropertyDict& types);

    // The last rendering, NUL-terminated; valid until the next one.
    const char* c_str() const { return m_text.c_str(); }
    size_t size() const { return m_text.size(); }

private:
    // Longest word whose UTF-8 form (3 bytes a unit at most) fits the run
    // conversion's signed 32-bit size.
    static constexpr unsigned int kDirectUnits = 0x7FFFFFFF / 3;

    // renderPlain without a tagger.
    int _renderUntagged(const std::vector<WORD_T>& words, bool original);
    // Appends the UTF-8 form of `units` code units; false when it yields nothing.
    bool _append(const unsigned short* text, unsigned int units);

    std::string m_text;
};

}  // namespace ws

#endif
