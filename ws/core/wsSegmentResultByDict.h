#ifndef ZEG_WS_CORE_WSSEGMENTRESULTBYDICT_H
#define ZEG_WS_CORE_WSSEGMENTRESULTBYDICT_H

#include <vector>

namespace ws {

// One start position of the best dictionary-only path.
struct BasicWordPosition {
    unsigned char len = 1;           // length of the dictionary word starting here, in code units
    unsigned char* value = nullptr;  // the word's dictionary value record; not owned
};

// The dictionary-only segmentation of one text: a lattice over the nodes
// 0..n (node k is the boundary before code unit k) with the best-path score
// and back-pointer of each node, and the best path as positions. The arrays
// only grow: after init(n), `positions` holds at least n entries and
// `scores`/`prev` at least n + 2. Copying copies the arrays; `value` pointers
// are shared. Thread safety: none; the result belongs to one TextSegmentation.
struct SegmentResultByDict {
    // Score of a node no path has reached yet: -1e300, not -infinity, so
    // that adding an edge score to it stays finite.
    static constexpr double kUnreached = -1e300;

    // Prepares the lattice for a text of `n` code units: grows the arrays to
    // exactly n (positions) and n + 2 (scores, prev) when they hold fewer,
    // freeing the old ones first; then node 0 gets score 0 and prev 0, each
    // node k in 1..n score kUnreached and prev k - 1; the first n positions
    // become single characters without a value; `valid` becomes 0. Node n + 1
    // and entries beyond keep their contents. False, with an error logged,
    // when memory runs out; the arrays are then empty and `capacity`
    // unchanged.
    bool init(unsigned int n);

    unsigned int capacity = 0;                // positions allocated by the last successful growth
    std::vector<BasicWordPosition> positions; // indexed by start position
    unsigned int valid = 0;                   // 1 once a segmenter has filled `positions`
    std::vector<double> scores;               // best path score of each node
    std::vector<unsigned int> prev;           // start node of the best word ending at each node

private:
    bool _grow(unsigned int n);
    void _release();
};

}  // namespace ws

#endif
