#include "ws/algo/wsPhraseCorrecter.h"

#include "ws/core/wsHot.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/dict/wsCorrectPhraseDict.h"
#include "ws/dict/wsDictSet.h"

namespace ws {

namespace {

const unsigned char kAllDicts = WsDictSet::kBase | WsDictSet::kAlnum | WsDictSet::kUser;

unsigned step(const SegmentResult::Cell& cell) { return cell.len == 0 ? 1 : cell.len; }

}  // namespace

PhraseCorrecter::PhraseCorrecter(WsDictSet* dicts, CorrectPhraseDict* phrases)
    : m_dicts(dicts), m_phrases(phrases) {}

WS_HOT int PhraseCorrecter::doRevise(TextSegmentation& seg) {
    const unsigned n = seg.textLen;
    if (m_phrases == nullptr || seg.text == nullptr || seg.result.cells.size() < n) return 0;
    SegmentResult::Cell* cells = seg.result.cells.data();
    const char* table = m_phrases->getBuffer();
    unsigned p = 0;
    while (p < n) {
        const int at = m_phrases->matchPosition(seg.text + p, n - p, cells + p);
        const int k = at < 0 ? 0 : static_cast<signed char>(table[at]);
        if (k <= 0) {
            p += step(cells[p]);
            continue;
        }
        // matchPosition vouches for the record: k positive lengths that
        // sum to the phrase, which lies inside the text.
        for (int w = 1; w <= k; ++w) {
            const unsigned len = static_cast<unsigned char>(table[at + w]);
            if (cells[p].len != len || len == 1) _rewrite(cells[p], seg.text + p, len);
            p += len;
        }
    }
    return 0;
}

void PhraseCorrecter::_rewrite(SegmentResult::Cell& cell, const unsigned short* word,
                               unsigned len) const {
    cell.len = static_cast<unsigned char>(len);
    cell.subWords.clear();
    cell.partNum = 0;
    cell.tag = 0;
    cell.value = nullptr;
    cell.attr = 0;
    cell.prop = WS_PROPERTY_WORD;
    cell.wordId = -1;
    if (m_dicts == nullptr) return;
    const int id = m_dicts->getWordId(word, len, kAllDicts);
    if (id < 0) return;
    float weight = 0;
    unsigned char* value = nullptr;
    m_dicts->getValue(id, &value, weight);
    cell.wordId = id;
    cell.value = value;
}

}  // namespace ws
