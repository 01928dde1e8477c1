#ifndef ZEG_NORMALIZE_IMPLEMENT_H
#define ZEG_NORMALIZE_IMPLEMENT_H

#include <string>
#include <vector>

#include "norm_utility/AlgoIconv.h"
#include "normalize/SynonymFilter.h"
#include "normalize/nmSegment.h"

namespace normalize {

// Mode bits of the pipeline besides those of Translate (TranslateMode).
enum PipelineMode {
    kSynonyms = 64,         // the whole query, then each word, by its synonym
    kCanonicalOrder = 128,  // segment, sort the words, drop "的", remove spaces
};

// The normaliser proper: wires the settings, the word lists, the segmenter
// and two converters together, and turns one query into its normalised
// form. Not copyable. Thread safety: one query at a time per object (the
// segmenter and the converters keep state); objects on different threads
// run in parallel. The word lists and settings it reads are process-wide
// and must not be reloaded while a query runs.
class Implement {
public:
    Implement();
    ~Implement();
    Implement(const Implement&) = delete;
    Implement& operator=(const Implement&) = delete;

    // Loads the settings from `configPath`, the stop-word and synonym lists
    // (adding to what is loaded), the segmenter, and opens the converters.
    // False at the first failure, with a message on standard error.
    bool init(const std::string& configPath);

    // The part of init that is per object: the segmenter (from the settings
    // init loaded, its dictionaries mapped once per process) and the two
    // converters. Lets another thread get an Implement of its own over the
    // process-wide settings and word lists, which it does not reload.
    // REQUIRES: a successful init of some Implement. False, with a message
    // on standard error, when a part cannot be set up.
    bool initWorker();

    // Normalises `query` as `mode` asks (TranslateMode and PipelineMode
    // bits). `inputIsGbk` / `outputIsGbk` choose GBK instead of UTF-8 for
    // `query` / `out`. `words` receives the words found, in GBK and in text
    // order, after synonym replacement. Returns 0 on success: also for an empty query (out ""), a
    // query that is blank after translation (out ""), and a query longer in
    // GBK than MAX_INPUT_LENGTH (out is the query itself, in the output
    // encoding). Returns -1 with `out` empty for a mode of 0 or below, for
    // settings that are not loaded, and when segmentation fails; each
    // failure and the over-long case write one line to standard error.
    int doNormalize(const std::string& query, int mode, std::string& out,
                    std::vector<std::string>& words, bool inputIsGbk, bool outputIsGbk);
    // The same, the words kept in the object (for callers that do not want
    // them: no list to allocate per query).
    int doNormalize(const std::string& query, int mode, std::string& out, bool inputIsGbk,
                    bool outputIsGbk) {
        return doNormalize(query, mode, out, m_words, inputIsGbk, outputIsGbk);
    }

private:
    // The replacement of `word` in the synonym map, or `word` itself (a
    // reference valid until the next call). REQUIRES: m_synonyms refreshed
    // for this query.
    const std::string& _getSynonymsWord(const std::string& word, int mode);
    // Appends to `words` every piece of `text` (spaces collapsed) between spaces.
    void _split(std::vector<std::string>& words, const std::string& text);

    // Converts `text` into `out` (which must not be `text`).
    void convert(norm_utility::AlgoIconv& converter, const std::string& text, std::string& out);
    // Joins `words` into `joined` as the mode says.
    void joinWords(const std::vector<std::string>& words, int mode, std::string& joined);

    nmSegment m_segment;
    norm_utility::AlgoIconv m_gbkToUtf8;
    norm_utility::AlgoIconv m_utf8ToGbk;
    // Work space kept from query to query, so that a warm worker does not
    // allocate for the usual query.
    std::vector<char> m_buffer;
    std::string m_gbk;
    std::string m_text;
    std::string m_key;
    SynonymFilter m_synonyms;
    std::string m_joined;
    std::vector<std::string> m_words;
    std::vector<std::pair<unsigned int, const std::string*>> m_order;  // first hash, word
};

}  // namespace normalize

#endif
