#ifndef ZEG_WS_ALGO_WSMEPERSONNAMETAGGER_H
#define ZEG_WS_ALGO_WSMEPERSONNAMETAGGER_H

#include <vector>

namespace ws {

class MaxentDict;
struct TextSegmentation;

// Tags every character of a text with one of four labels by a
// maximum-entropy model (MaxentDict) and reports the names it finds as
// candidates in a new-word buffer.
//
// Labels: 0 the name's first character (the family name of a Chinese
// name), 1 a character inside it, 2 its last character, 3 not in a name.
// A name is 0, any number of 1s, then 2: both of its ends are labelled,
// so that a name does not run on into the next character. Single-character
// names are not tagged.
//
// Features of position i, c(k) being the character at k (kBoundary outside
// the text), one key per template:
//   0 c(i)  1 c(i-2)  2 c(i-1)  3 c(i+1)  4 c(i+2)
//   5 c(i-1)c(i)  6 c(i)c(i+1)  7 c(i-2)c(i-1)  8 c(i+1)c(i+2)
//   9 c(i+2)c(i+3)  10 c(i-3)c(i-2)  11 c(i-1)c(i+1)
// The trainer builds its events with contextKeys, so both sides agree.
//
// Decoding: per position the label probabilities come from the model's
// code sums (each record is looked up once per text position); Viterbi
// over their logarithms finds the best label sequence of the name shape
// above.
//
// Not copyable. Thread safety: keeps per-call buffers; one text at a time.
class MEPersonNameTagger {
public:
    static constexpr int kLabels = 4;
    static constexpr int kTemplates = 12;
    static constexpr unsigned short kBoundary = 0x0001;
    static constexpr unsigned kMaxNameLength = 10;

    // One feature key: 1 or 2 UTF-16 units.
    struct Key {
        unsigned short units[2];
        unsigned char len;
    };

    MEPersonNameTagger() = default;
    MEPersonNameTagger(const MEPersonNameTagger&) = delete;
    MEPersonNameTagger& operator=(const MEPersonNameTagger&) = delete;

    // Uses `model` (not owned, must outlive the tagger and keep its coding)
    // and writes into the new-word buffer with index `bufferIndex`. False
    // for a null model.
    bool init(const MaxentDict* model, int bufferIndex);

    // Adds `bias` to the log-probability of the three name labels: above 0
    // more names are found, fewer of them right. 0 until set.
    void setNameBias(double bias) { m_nameBias = bias; }

    // Tags seg.text and records each name (2 .. kMaxNameLength characters)
    // at its start in the buffer (length, flag 1); the mode is not used. Returns the number
    // of names. Allocates only when the text is longer than any before.
    int tag(TextSegmentation& seg, int mode);

    // The twelve keys of position i of text[0, n) (REQUIRES: i < n).
    static void contextKeys(const unsigned short* text, unsigned n, unsigned i,
                            Key keys[kTemplates]);
    // True when label `next` may follow label `prev`.
    static bool allowed(int prev, int next);

private:
    // Positions before and after the text that templates reach.
    static constexpr int kMargin = 3;

    const unsigned char* _record(unsigned short a, unsigned short b, unsigned len) const;
    // Fills the three record tables for text[0, n).
    void _lookUp(const unsigned short* text, unsigned n);
    // Fills m_score with the log-probabilities of every label at every position.
    void _score(const unsigned short* text, unsigned n);
    void _viterbi(unsigned n);
    int _record(TextSegmentation& seg, unsigned n) const;

    const MaxentDict* m_model = nullptr;
    int m_bufferIndex = -1;
    double m_nameBias = 0;
    std::vector<double> m_logCodeSum;    // ln of the model's code sums
    std::vector<double> m_score;         // n x kLabels
    std::vector<unsigned char> m_back;   // n x kLabels
    std::vector<unsigned char> m_labels; // n
    // Model records by position k + kMargin: of c(k), of c(k) c(k + 1) and
    // of c(k - 1) c(k + 1).
    std::vector<const unsigned char*> m_single, m_pair, m_around;
};

}  // namespace ws

#endif
