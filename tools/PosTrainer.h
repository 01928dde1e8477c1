#ifndef ZEG_TOOLS_POSTRAINER_H
#define ZEG_TOOLS_POSTRAINER_H

#include <map>
#include <string>
#include <vector>

namespace zeg_tools {

// Counts what the trigram tagger is built from in a tagged corpus: one
// paragraph a line, tokens "word/tag" separated by blanks, the first token
// the paragraph's id (skipped). A bracketed compound "[w1/t1 w2/t2]tag"
// counts as its inner words with their own tags (the outer tag names the
// span, which is not a word of the segmentation). Three one-off typos of
// the corpus are read as the tags meant: vvn as vn, na as n, Yg as y.
//
// writeFiles writes, into one folder, the six text files the word-tag
// dictionary is built from (names in kFileNames): the tag names in byte
// order; "COUNT TAG" tag frequencies; "COUNT TAG" first tags of
// paragraphs; "COUNT A B" bigrams; "COUNT A B C" trigrams; and
// "WORD TAG/COUNT ..." word tags, words in byte order.
// Not thread-safe.
class PosTrainer {
public:
    static const char* const kFileNames[6];

    // Adds one corpus file. False with `error` ("PATH: reason") when it
    // cannot be read; malformed tokens are counted in skipped().
    bool addFile(const std::string& path, std::string& error);
    // Adds one paragraph's tokens (id token included).
    void addLine(const std::string& line);
    bool writeFiles(const std::string& dir, std::string& error) const;

    long long tokens() const { return m_tokens; }
    long long skipped() const { return m_skipped; }
    size_t words() const { return m_wordTags.size(); }

    // "word/tag" (with brackets stripped) into word and tag; false when
    // the token has no usable tag. Maps the typos.
    static bool splitToken(const std::string& token, std::string& word, std::string& tag);

private:
    bool writeCounts(const std::string& path, const std::map<std::string, long long>& counts,
                     std::string& error) const;

    std::map<std::string, long long> m_tagFreq;
    std::map<std::string, long long> m_initTags;
    std::map<std::string, long long> m_bigrams;   // "A B"
    std::map<std::string, long long> m_trigrams;  // "A B C"
    std::map<std::string, std::map<std::string, long long>> m_wordTags;
    long long m_tokens = 0;
    long long m_skipped = 0;
};

}  // namespace zeg_tools

#endif
