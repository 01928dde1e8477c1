#ifndef ZEG_WS_ALGO_WSPHRASECORRECTER_H
#define ZEG_WS_ALGO_WSPHRASECORRECTER_H

#include "ws/core/wsReviser.h"
#include "ws/core/wsSegmentResult.h"

namespace ws {

class CorrectPhraseDict;
class WsDictSet;

// A reviser that re-cuts known phrases as a correction table says.
//
// It walks the words of seg.result from the start. Where a phrase of the
// table begins at a word and ends on a word boundary (the longest such
// phrase; see PhraseDict::matchPosition), the phrase's words are written
// over the cells in the table's order and the walk goes on after it;
// elsewhere it steps to the next word. A written word is looked up again
// in the dictionary set (every kind): it gets that id and value record, or
// -1 and null. Its cell becomes an ordinary word (prop 1, no sub-words,
// tag 0), except that a cell of the right length over 1 is kept as it is:
// a recogniser's number or name there survives, a single character never
// keeps its marks.
//
// Not copyable. Thread safety: reads the dictionaries only; one call
// writes one segmentation, so calls on different segmentations may run
// concurrently. Allocates nothing.
class PhraseCorrecter : public Reviser {
public:
    // Neither is owned; both must outlive the correcter. With a null
    // dictionary the correcter changes nothing; with a null set every
    // written word gets id -1.
    PhraseCorrecter(WsDictSet* dicts, CorrectPhraseDict* phrases);

    // Corrects seg.result over seg.text[0, seg.textLen). Always 0.
    int doRevise(TextSegmentation& seg) override;

private:
    void _rewrite(SegmentResult::Cell& cell, const unsigned short* word, unsigned len) const;

    WsDictSet* m_dicts;
    CorrectPhraseDict* m_phrases;
};

}  // namespace ws

#endif
