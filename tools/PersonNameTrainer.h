#ifndef ZEG_TOOLS_PERSONNAMETRAINER_H
#define ZEG_TOOLS_PERSONNAMETRAINER_H

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

namespace zeg_tools {

// Settings of one training run; every result depends on these alone.
struct PersonTrainOptions {
    std::string pfr;          // People's Daily, segmented and tagged (may be empty)
    std::string msra;         // MSRA named entities (may be empty)
    long msraHoldout = 0;     // the last lines of the MSRA file, kept out of training
    int iterations = 100;     // GIS iterations
    int cutoff = 2;           // contexts seen fewer times with every label get no weights
    double sigma2 = 1.0;      // variance of the Gaussian prior on the weights
    double keepPlain = 1.0;   // share of sentences without a name that are kept
    unsigned seed = 1;        // draws which of them
    std::string outDir;       // where the files go
};

// Learns the person-name model and the name lists from the two corpora:
//   person_alpha.txt   "<id> <alpha>": one weight per (context, label); the
//                      last id is the default alpha 1 (an unseen context)
//   person_freq.txt    "<id> <count> <label> <key> <template>" per weight
//   family_names.txt   "<name>\t<count>": family names of People's Daily,
//                      where family and given name are separate tokens
//   given_name_chars.txt      "<char>\t<count>": characters of given names
//   foreign_name_chars.txt    "<char>\t<count>": characters that mostly
//                      occur in transliterated names
//   name_left_context.txt, name_right_context.txt   "<word>\t<count>":
//                      People's Daily words often right before / after a name
// Labels and templates are MEPersonNameTagger's: a name is labelled
// 0, 1, ..., 1, 2; one-character names count as no name.
// A context is kept when it was seen at least `cutoff` times with one label
// (a pair of characters only when that label is a name's); each kept
// context gets a weight for every label. Training is GIS (constant 12,
// the contexts per event) with a Gaussian prior, from all weights 1, so a
// run is deterministic. Not thread-safe.
class PersonNameTrainer {
public:
    PersonNameTrainer(const PersonTrainOptions& options, std::ostream& log);

    // Reads, trains and writes; 0 on success, 1 with a message on failure.
    int run();

    // One training sentence: UTF-16 text and a label per character.
    struct Sentence {
        std::u16string text;
        std::string labels;
    };
    // Parses one line of either corpus; false for a line with no text.
    // Name spans are reported to the counters.
    bool parsePfrLine(const std::string& line, Sentence& out);
    bool parseMsraLine(const std::string& line, Sentence& out);

    const std::map<std::u16string, long>& familyNames() const { return m_family; }

private:
    struct Event {
        int32_t preds[12];
        unsigned char label;
    };

    bool readCorpora();
    bool readFile(const std::string& path, bool pfr, long skipTail);
    void addSentence(const Sentence& s);
    void labelName(Sentence& s, size_t start, size_t len);
    void noteForeign(const std::u16string& name);
    // Family, given name and context counts of the name words[i, j).
    void noteName(const std::vector<std::pair<std::u16string, std::string>>& words, size_t i,
                  size_t j);
    // The context words worth listing among those counted in `next`.
    std::map<std::u16string, long> contextWords(const std::map<std::u16string, long>& next) const;
    void buildEvents();
    void train();
    double iterate(std::vector<double>& expected);
    // The change of weight k (log scale) in one iteration.
    double gisStep(size_t k, double expected) const;
    bool writeModel() const;
    bool writeLists() const;
    bool fail(const std::string& message);

    PersonTrainOptions m_opt;
    std::ostream& m_log;
    std::vector<Sentence> m_sentences;
    std::map<std::u16string, long> m_family;
    std::map<char16_t, long> m_given;
    std::map<char16_t, long> m_foreign;
    std::unordered_map<char16_t, long> m_charCount;
    std::map<std::u16string, long> m_wordCount;  // People's Daily words, punctuation aside
    std::map<std::u16string, long> m_leftContext;
    std::map<std::u16string, long> m_rightContext;
    std::unordered_map<uint64_t, int32_t> m_predIds;
    std::vector<uint64_t> m_predKeys;
    std::vector<double> m_empirical;  // per predicate x label
    std::vector<double> m_lambda;
    std::vector<Event> m_events;
};

}  // namespace zeg_tools

#endif
