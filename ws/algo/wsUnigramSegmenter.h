#ifndef ZEG_WS_ALGO_WSUNIGRAMSEGMENTER_H
#define ZEG_WS_ALGO_WSUNIGRAMSEGMENTER_H

#include <vector>

#include "ws/core/wsSegmenter.h"

namespace ws {

class WsDictSet;
struct NewWordBuffer;

// The statistical segmenter: of all cuts of the text into dictionary words
// (base and user dictionaries), recognised new words and single characters
// it keeps the one with the highest sum of word log-probabilities, found by
// dynamic programming over a lattice of nodes 0..n (node k is the boundary
// before code unit k).
//
// Word scores, all minus ln(total frequency of the dictionary set):
//   a dictionary word     its record weight (ln frequency);
//   a character that starts no dictionary word   ln(0.5);
//   a new word            the threshold of its new-word buffer.
// An edge replaces a node's best word only when it scores strictly better,
// so on ties the edge found first (earlier start, then shorter word) stays.
//
// The node scores and back-pointers live in seg.resultByDict, which
// TextSegmentation::init must have prepared for the text; this segmenter
// never resets them. Words of 65 code units or more are never written to a
// result. All lengths count UTF-16 code units.
//
// Not copyable. Thread safety: the work arrays belong to the object, so one
// segmenter serves one text at a time.
class UnigramSegmenter : public Segmenter {
public:
    // Nodes the work arrays hold from the start.
    static constexpr int kInitialCapacity = 2048;

    // `dicts` is not owned and must outlive the segmenter; it may be null
    // (every character is then unknown and recognised runs are not checked
    // against the alnum dictionary).
    explicit UnigramSegmenter(WsDictSet* dicts);
    ~UnigramSegmenter() override;

    // Nothing to read. Returns true.
    bool init(const WsConfig& config) override;

    // mode 1: dictionary words only, into seg.resultByDict.positions (then
    //         `valid` is 1);
    // mode 2: the full lattice again over the scores, back-pointers and work
    //         arrays as the previous pass left them (combines a mode 1 pass
    //         with the recognisers' new words);
    // other:  the full lattice with the new-word buffers, into seg.result.
    // The second argument is not used. Returns 1.
    int doSegment(TextSegmentation& seg, int, int mode) override;

    // Capacity of the work arrays, in nodes.
    int capacity() const { return m_capacity; }

private:
    // Buffers of the letter, number and letter-digit runs (null: none).
    struct RunBuffers;

    void _unigramSegmentByDict(TextSegmentation& seg);
    void _unigramSegment(TextSegmentation& seg);
    void _combineSegResult(TextSegmentation& seg);

    // Grows the work arrays to `nodes` entries when they hold fewer and
    // resets the first `nodes`; false when they cannot hold them.
    bool _prepare(unsigned int nodes);
    // True when seg's lattice, cells and the work arrays hold the text.
    bool _fits(const TextSegmentation& seg) const;
    // Relaxes s -> e by `score`; true when the edge was taken.
    static bool _relax(TextSegmentation& seg, unsigned int s, unsigned int e, double score);
    // Dictionary edges from i (or the unknown-character edge); `full` also
    // resets the taken nodes' new-word fields.
    void _dictEdges(TextSegmentation& seg, unsigned int i, bool full);
    // Edges of the new words starting at i, from the buffers in m_active.
    void _newWordEdges(TextSegmentation& seg, unsigned int i, const RunBuffers& runs);
    // Marks in m_startsCandidate the positions of [0, n) where a buffer in
    // m_active holds a candidate: only there can _newWordEdges add an edge.
    // False when memory ran out (then every position is to be tried).
    bool _markCandidates(unsigned int n);
    // The alnum-dictionary word that the recognised runs at i cover exactly;
    // false when none does. `type` gets the runs' property.
    bool _coveringMatch(const TextSegmentation& seg, unsigned int i, const RunBuffers& runs,
                        int& id, unsigned int& len, unsigned short& type) const;
    // True when a word from a node at or before i already reaches past i + len.
    static bool _spanned(const TextSegmentation& seg, unsigned int i, unsigned int len);
    // Steps 2 to 4 of the full pass: the lattice and the backtrace.
    void _fullLattice(TextSegmentation& seg);
    void _backtraceByDict(TextSegmentation& seg) const;
    void _backtrace(TextSegmentation& seg) const;

    WsDictSet* m_dicts;
    double m_logTotal;
    int m_capacity = kInitialCapacity;
    // The best word ending at each node.
    std::vector<int> m_wordId;
    std::vector<unsigned short> m_prop;
    std::vector<unsigned char*> m_value;
    std::vector<unsigned short> m_attr;
    std::vector<const std::vector<short>*> m_subWords;  // a new-word record's list; not owned
    std::vector<unsigned char> m_partNum;
    // The text's new-word buffers that hold candidates (kept for its memory).
    std::vector<const NewWordBuffer*> m_active;
    std::vector<unsigned char> m_startsCandidate;
};

}  // namespace ws

#endif
