#ifndef ZEG_WS_CORE_WSSEGMENTRESULT_H
#define ZEG_WS_CORE_WSSEGMENTRESULT_H

#include <vector>

#include "ws/core/wsWordRecord.h"

namespace ws {

// The final cut of one text into words, as cells indexed by start position
// (UTF-16 code units). A word occupies the cell at its start; the cells inside
// it are not read. The cells only grow: after init(n), `cells` holds at least
// n cells and the first n are single ordinary characters. Copying copies the
// cells; `value` pointers are shared. Thread safety: none; the result belongs
// to one TextSegmentation.
struct SegmentResult {
    struct Cell {
        unsigned char len = 1;          // word length in code units
        std::vector<short> subWords;    // sub-word lengths in code units
        unsigned char partNum = 0;      // dictionary pieces making up the word; 0 = one piece
        unsigned short attr = 0;        // secondary attribute of the stage that wrote the cell
        unsigned short prop = WS_PROPERTY_WORD;  // WS_PROPERTY_* bits
        unsigned char tag = 0;          // part-of-speech tag id
        int wordId = -1;                // dictionary word id; -1 = not a dictionary word
        unsigned char* value = nullptr; // the word's dictionary value record; not owned
    };

    // Prepares the result for a text of `n` code units: grows `cells` to
    // exactly n when it holds fewer (freeing the old ones first), then resets
    // the first n cells to their initial values, emptying their sub-word
    // lists but keeping the lists' memory. Cells beyond n keep their
    // contents. False, with an error logged, when memory runs out; `cells`
    // is then empty and `capacity` unchanged.
    bool init(unsigned int n);

    unsigned int capacity = 0;  // cells allocated by the last successful growth
    std::vector<Cell> cells;
};

}  // namespace ws

#endif
