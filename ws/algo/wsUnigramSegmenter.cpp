#include "ws/algo/wsUnigramSegmenter.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "ws/core/wsBufferGrowth.h"
#include "ws/core/wsHot.h"
#include "ws/core/wsLogger.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/dict/wsDATDict.h"
#include "ws/dict/wsDictSet.h"

namespace ws {

namespace {

const char kSource[] = "wsUnigramSegmenter";
const unsigned char kBaseAndUserDicts = 5;
const unsigned char kAlnumDict = 2;
// Words this long or longer do not fit the results' 8-bit lengths as the
// callers expect them, so they are left out of the results.
const unsigned int kLongWord = 65;
const unsigned short kSpace = 32;
const unsigned short kNumericProps =
    WS_PROPERTY_LETNUM | WS_PROPERTY_LET | WS_PROPERTY_NUM | WS_PROPERTY_CHINESE_NUM;

// The log-frequency of a character that starts no dictionary word.
const double UNKNOWN_CHAR_LOGPROB = std::log(0.5);

const NewWordBuffer* bufferOf(const TextSegmentation& seg, unsigned short prop) {
    const unsigned int idx = seg.getPropIdx(prop);
    return idx < seg.newWordBuffers.size() ? &seg.newWordBuffers[idx] : nullptr;
}

// Length of the candidate that `buffer` holds at `pos`; 0 for none.
unsigned int candidateAt(const NewWordBuffer* buffer, unsigned int pos) {
    if (buffer == nullptr || pos >= buffer->words.size()) return 0;
    return buffer->words[pos].len;
}

}  // namespace

struct UnigramSegmenter::RunBuffers {
    const NewWordBuffer* let;
    const NewWordBuffer* num;
    const NewWordBuffer* letnum;
};

UnigramSegmenter::UnigramSegmenter(WsDictSet* dicts) : m_dicts(dicts), m_logTotal(0.0) {
    const double total = dicts != nullptr ? dicts->getTotalFreq() : 0.0;
    if (total > 0) m_logTotal = std::log(total);
    m_capacity = 0;
    _prepare(kInitialCapacity);
}

UnigramSegmenter::~UnigramSegmenter() = default;

bool UnigramSegmenter::init(const WsConfig&) { return true; }

WS_HOT int UnigramSegmenter::doSegment(TextSegmentation& seg, int, int mode) {
    if (mode == 1)
        _unigramSegmentByDict(seg);
    else if (mode == 2)
        _combineSegResult(seg);
    else
        _unigramSegment(seg);
    return 1;
}

bool UnigramSegmenter::_prepare(unsigned int nodes) {
    if (nodes > static_cast<unsigned int>(m_capacity)) {
        const bool grown = allocateOr(
            [&] {
                renewArray(m_wordId, nodes);
                renewArray(m_prop, nodes);
                renewArray(m_value, nodes);
                renewArray(m_attr, nodes);
                renewArray(m_subWords, nodes);
                renewArray(m_partNum, nodes);
            },
            [] { Logger::getLogger()->errorPos(kSource, __LINE__, "Out of Memory"); });
        if (grown) m_capacity = static_cast<int>(nodes);
    }
    // After a failed growth the arrays may be shorter than the capacity.
    if (m_wordId.size() < nodes || m_prop.size() < nodes || m_value.size() < nodes ||
        m_attr.size() < nodes || m_subWords.size() < nodes || m_partNum.size() < nodes)
        return false;
    for (unsigned int k = 0; k < nodes; ++k) {
        m_wordId[k] = -1;
        m_prop[k] = WS_PROPERTY_WORD;
        m_value[k] = nullptr;
        m_attr[k] = 0;
        m_subWords[k] = nullptr;
        m_partNum[k] = 0;
    }
    return true;
}

// A failed growth of the segmentation or of the work arrays leaves them
// shorter than the text; the pass is then skipped rather than run off them.
WS_HOT bool UnigramSegmenter::_fits(const TextSegmentation& seg) const {
    const size_t nodes = static_cast<size_t>(seg.textLen) + 1;
    return seg.text != nullptr && seg.resultByDict.scores.size() >= nodes &&
           seg.resultByDict.prev.size() >= nodes && m_wordId.size() >= nodes &&
           m_prop.size() >= nodes && m_value.size() >= nodes && m_attr.size() >= nodes &&
           m_subWords.size() >= nodes && m_partNum.size() >= nodes;
}

WS_HOT bool UnigramSegmenter::_relax(TextSegmentation& seg, unsigned int s, unsigned int e,
                                     double score) {
    double* scores = seg.resultByDict.scores.data();
    const double candidate = scores[s] + score;
    if (!(candidate > scores[e])) return false;
    scores[e] = candidate;
    seg.resultByDict.prev[e] = s;
    return true;
}

WS_HOT void UnigramSegmenter::_dictEdges(TextSegmentation& seg, unsigned int i, bool full) {
    const unsigned int n = seg.textLen;
    const int MAX_WORD_LEN = 32;
    TrieBase::MatchInfo matches[MAX_WORD_LEN];
    const char* records[MAX_WORD_LEN];
    const int found =
        m_dicts == nullptr ? 0
                           : m_dicts->matchAll(reinterpret_cast<const char*>(seg.text + i),
                                               (n - i) * 2, matches, records, MAX_WORD_LEN,
                                               kBaseAndUserDicts);
    unsigned int e = i + 1;
    for (int m = 0; m < found; ++m) {
        unsigned char* value = DATDict::recordValue(records[m]);
        const float weight = DATDict::recordWeight(records[m]);
        e = i + static_cast<unsigned int>(matches[m].pos + 1) / 2;
        if (e <= i || e > n) continue;  // a match outside the key would be a broken trie
        if (!_relax(seg, i, e, static_cast<double>(weight) - m_logTotal)) continue;
        m_wordId[e] = matches[m].value;
        m_value[e] = value;
        if (!full) continue;
        m_prop[e] = WS_PROPERTY_WORD;
        m_attr[e] = 0;
        m_subWords[e] = nullptr;
        m_partNum[e] = 0;
    }
    if (found > 0) return;
    e = i + 1;
    if (!_relax(seg, i, e, UNKNOWN_CHAR_LOGPROB - m_logTotal)) return;
    m_wordId[e] = -1;
    m_value[e] = nullptr;
    if (!full) return;
    m_prop[e] = WS_PROPERTY_WORD;
    m_attr[e] = 0;
    m_subWords[e] = nullptr;
    m_partNum[e] = 0;
}

void UnigramSegmenter::_unigramSegmentByDict(TextSegmentation& seg) {
    const unsigned int n = seg.textLen;
    if (n == 0) return;
    if (!_prepare(n + 2) || !_fits(seg) || seg.resultByDict.positions.size() < n) return;
    for (unsigned int i = 0; i < n; ++i) _dictEdges(seg, i, false);
    _backtraceByDict(seg);
    seg.resultByDict.valid = 1;
}

void UnigramSegmenter::_backtraceByDict(TextSegmentation& seg) const {
    SegmentResultByDict& lattice = seg.resultByDict;
    unsigned int e = seg.textLen;
    while (e != 0) {
        unsigned int s = lattice.prev[e];
        if (s >= e) s = e - 1;  // a back-pointer must lead back, or the walk never ends
        if (e - s < kLongWord) {
            lattice.positions[s].len = static_cast<unsigned char>(e - s);
            lattice.positions[s].value = m_value[e];
        }
        e = s;
    }
}

void UnigramSegmenter::_unigramSegment(TextSegmentation& seg) {
    const unsigned int n = seg.textLen;
    if (n == 0) return;
    if (!_prepare(n + 2)) return;
    _fullLattice(seg);
}

void UnigramSegmenter::_combineSegResult(TextSegmentation& seg) {
    if (seg.textLen == 0) return;
    _fullLattice(seg);
}

WS_HOT void UnigramSegmenter::_fullLattice(TextSegmentation& seg) {
    const unsigned int n = seg.textLen;
    if (!_fits(seg) || seg.result.cells.size() < n) return;
    const RunBuffers runs = {bufferOf(seg, WS_PROPERTY_LET), bufferOf(seg, WS_PROPERTY_NUM),
                             bufferOf(seg, WS_PROPERTY_LETNUM)};
    // The buffers with candidates, in their order; most hold none.
    m_active.clear();
    for (const NewWordBuffer& buffer : seg.newWordBuffers)
        if ((buffer.count & 0xFF) != 0) m_active.push_back(&buffer);
    const bool marked = !m_active.empty() && _markCandidates(n);
    for (unsigned int i = 0; i < n; ++i) {
        _dictEdges(seg, i, true);
        if (!m_active.empty() && (!marked || m_startsCandidate[i] != 0))
            _newWordEdges(seg, i, runs);
    }
    _backtrace(seg);
}

WS_HOT bool UnigramSegmenter::_markCandidates(unsigned int n) {
    if (m_startsCandidate.size() < n &&
        !allocateOr([&] { m_startsCandidate.resize(n); }, [] {}))
        return false;
    std::fill(m_startsCandidate.begin(), m_startsCandidate.begin() + n, 0);
    for (const NewWordBuffer* buffer : m_active) {
        const size_t end = std::min<size_t>(n, buffer->words.size());
        for (size_t p = 0; p < end; ++p) m_startsCandidate[p] |= buffer->words[p].len != 0;
    }
    return true;
}

WS_HOT void UnigramSegmenter::_newWordEdges(TextSegmentation& seg, unsigned int i,
                                            const RunBuffers& runs) {
    const unsigned int n = seg.textLen;
    for (const NewWordBuffer* active : m_active) {
        const NewWordBuffer& buffer = *active;
        const unsigned int len = candidateAt(&buffer, i);
        if (len == 0) continue;
        const unsigned int e = i + len;
        if (e > n) continue;  // a record running past the text is stale
        if ((buffer.prop & kNumericProps) != 0 && m_dicts != nullptr) {
            int id = -1;
            unsigned int cover = 0;
            unsigned short type = 0;
            if (_coveringMatch(seg, i, runs, id, cover, type)) {
                // The runs are exactly an alnum word: take the word, keep the type.
                unsigned char* value = nullptr;
                float weight = 0;
                m_dicts->getValue(id, &value, weight);
                const unsigned int ce = i + cover;
                unsigned int* prev = seg.resultByDict.prev.data();
                double* scores = seg.resultByDict.scores.data();
                const double candidate = scores[i] + static_cast<double>(weight) - m_logTotal;
                if (candidate > scores[ce] && prev[ce] > i) {
                    prev[ce] = i;
                    scores[ce] = candidate;
                    m_value[ce] = value;
                    m_prop[ce] = type;
                    m_wordId[ce] = id;
                    m_attr[ce] = 0;
                    m_partNum[ce] = 0;
                    m_subWords[ce] = nullptr;
                } else if (prev[ce] == i) {
                    m_prop[ce] = type;
                }
                continue;
            }
            if (_spanned(seg, i, len)) continue;
        }
        const NewWordBuffer::Record& record = buffer.words[i];
        const double score = static_cast<double>(buffer.threshold) - m_logTotal;
        const double candidate = seg.resultByDict.scores[i] + score;
        if (candidate > seg.resultByDict.scores[e] && len > 1) {
            seg.resultByDict.scores[e] = candidate;
            seg.resultByDict.prev[e] = i;
            m_wordId[e] = -1;
            m_prop[e] = buffer.prop;
            m_value[e] = nullptr;
            m_attr[e] = record.attr;
            m_partNum[e] = record.flag;
            m_subWords[e] = &record.subWords;
        } else if (seg.resultByDict.prev[e] == i) {
            m_prop[e] = buffer.prop;
        }
    }
}

bool UnigramSegmenter::_coveringMatch(const TextSegmentation& seg, unsigned int i,
                                      const RunBuffers& runs, int& id, unsigned int& len,
                                      unsigned short& type) const {
    const unsigned int n = seg.textLen;
    const int MAX_WORD_LEN = 32;
    TrieBase::MatchInfo matches[MAX_WORD_LEN];
    const int found = m_dicts->matchAll(reinterpret_cast<const char*>(seg.text + i), (n - i) * 2,
                                        matches, MAX_WORD_LEN, kAlnumDict);
    // The walk over the runs carries on from one match to the next longer one.
    unsigned int k = 0;
    unsigned short bits = 0;
    bool covered = false;
    for (int m = 0; m < found; ++m) {
        const unsigned int wordLen = static_cast<unsigned int>(matches[m].pos + 1) / 2;
        if (wordLen == 0 || i + wordLen > n) continue;
        while (k < wordLen) {
            unsigned int l;
            if ((l = candidateAt(runs.let, i + k)) != 0) {
                bits |= WS_PROPERTY_LET;
            } else if ((l = candidateAt(runs.num, i + k)) != 0) {
                bits |= WS_PROPERTY_NUM;
            } else if ((l = candidateAt(runs.letnum, i + k)) != 0) {
                bits |= WS_PROPERTY_LETNUM;
            } else {
                l = 1;
            }
            k += l;
        }
        while (k > 0 && seg.text[i + k - 1] == kSpace) --k;
        if (k == wordLen) {
            covered = true;
            id = matches[m].value;
            len = wordLen;
        }
    }
    const unsigned short both = WS_PROPERTY_NUM | WS_PROPERTY_LET;
    type = (bits & both) == both ? WS_PROPERTY_LETNUM : bits;
    return covered;
}

bool UnigramSegmenter::_spanned(const TextSegmentation& seg, unsigned int i, unsigned int len) {
    const unsigned int n = seg.textLen;
    const unsigned int* prev = seg.resultByDict.prev.data();
    // Unreached nodes still point at their left neighbour, which for node
    // i + 1 is i itself: hence the separate test of a single character.
    if (len == 1 && prev[i + 1] < i) return true;
    for (unsigned int k = len == 1 ? i + 2 : i + len; k <= n; ++k) {
        if (prev[k] <= i) return true;
    }
    return false;
}

WS_HOT void UnigramSegmenter::_backtrace(TextSegmentation& seg) const {
    const unsigned int* prev = seg.resultByDict.prev.data();
    unsigned int e = seg.textLen;
    while (e != 0) {
        unsigned int s = prev[e];
        if (s >= e) s = e - 1;  // a back-pointer must lead back, or the walk never ends
        if (e - s < kLongWord) {
            SegmentResult::Cell& cell = seg.result.cells[s];
            cell.len = static_cast<unsigned char>(e - s);
            cell.prop = m_prop[e];
            cell.attr = m_attr[e];
            cell.value = m_value[e];
            cell.wordId = m_wordId[e];
            cell.partNum = m_partNum[e];
            if (m_subWords[e] != nullptr) cell.subWords = *m_subWords[e];
        }
        e = s;
    }
}

}  // namespace ws
