#ifndef ZEG_WS_CORE_WSNEWWORDBUFFER_H
#define ZEG_WS_CORE_WSNEWWORDBUFFER_H

#include <vector>

namespace ws {

// The candidate words of one property (a WS_PROPERTY_* bit) that a recogniser
// found in the current text, one record per start position. The records only
// grow: after init(n), `words` holds at least n records and the first n are
// empty. Copying copies the records. Thread safety: none; the buffer belongs
// to one TextSegmentation.
struct NewWordBuffer {
    // A candidate starting at the record's position.
    struct Record {
        unsigned char len = 0;        // in UTF-16 code units; 0 = no candidate starts here
        std::vector<short> subWords;  // sub-word lengths in code units, as the recogniser splits it
        unsigned char flag = 0;       // set when the record holds a candidate
        unsigned short attr = 0;      // recogniser-specific attribute
    };

    // An empty buffer (capacity 0) collecting `prop` with acceptance `threshold`.
    NewWordBuffer(unsigned short prop, float threshold);

    // Prepares the buffer for a text of `n` code units: grows `words` to
    // exactly n records when it holds fewer (freeing the old ones first), then
    // empties the first n records (keeping their lists' memory) and sets
    // `count` to 0. Records beyond n keep their contents. False, with an
    // error logged, when memory runs out; `words` is then empty and
    // `capacity` unchanged.
    bool init(unsigned int n) {
        // Not written since its last init: already empty.
        if (count == 0 && n <= m_clean && words.size() >= n) return true;
        return _init(n);
    }

    unsigned int capacity = 0;   // records allocated by the last successful growth
    std::vector<Record> words;   // indexed by start position
    unsigned short prop;
    float threshold;             // the recogniser's acceptance threshold
    // Candidates found; 0 after init. Whoever writes a record must make it
    // non-zero: init clears only the records of a buffer written to since
    // the last init (and any not cleared before).
    unsigned int count = 0;

private:
    bool _init(unsigned int n);

    unsigned int m_clean = 0;  // records [0, m_clean) were empty at the last init
};

}  // namespace ws

#endif
