#ifndef ZEG_TOOLS_WORDTAGGER_H
#define ZEG_TOOLS_WORDTAGGER_H

#include <memory>
#include <string>
#include <vector>

#include "ws/core/wsTextSegmentation.h"
#include "ws/dict/wsDictSet.h"
#include "ws/pos/wsTrigramPosTagger.h"

namespace zeg_tools {

// Tags a segmentation made elsewhere: the dictionary set and the trigram
// tagger of a segmenter configuration, run over words given one by one.
// Output is the segmenter's text form with tags: "word/tag " per word.
// Not copyable. Thread safety: one line at a time.
class WordTagger {
public:
    WordTagger();
    ~WordTagger();
    WordTagger(const WordTagger&) = delete;
    WordTagger& operator=(const WordTagger&) = delete;

    // Loads the dictionaries and the tagger the configuration names. False
    // with `error` set when one cannot be loaded.
    bool init(const char* configPath, std::string& error);

    // Tags the blank-separated words of a UTF-8 line.
    const std::string& tagLine(const std::string& line);

private:
    // Appends one UTF-8 word to m_text and m_spans.
    void addWord(const std::string& utf8);

    struct Span {
        unsigned start;
        unsigned len;
    };
    ws::WsDictSet m_dicts;
    std::unique_ptr<ws::TrigramPosTagger> m_tagger;
    ws::TextSegmentation m_seg;
    std::vector<unsigned short> m_text;
    std::vector<unsigned short> m_work1, m_work2;
    std::vector<Span> m_spans;
    std::vector<std::string> m_words;
    std::string m_out;
};

}  // namespace zeg_tools

#endif
