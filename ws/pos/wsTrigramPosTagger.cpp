#include "ws/pos/wsTrigramPosTagger.h"

#include <new>

#include "ws/core/wsBufferGrowth.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsWsConfig.h"
#include "ws/core/wsWsLogger.h"

namespace ws {

namespace {

const double kNoScore = -1e30;
const size_t kNodeStep = 1024;

}  // namespace

TrigramPosTagger::TrigramPosTagger(WsDictSet* dicts)
    : m_dicts(dicts),
      m_record(nullptr, 0, nullptr, 0, WS_PROPERTY_WORD, 0, -1, nullptr, 0, 0, -1) {}

TrigramPosTagger::~TrigramPosTagger() = default;

bool TrigramPosTagger::init(const WsConfig& config) {
    const std::string dict = config.getString("TRIGRAM_POS_DICT", "");
    const std::string patch = config.getString("TRIGRAM_POS_PATCH_DICT", "");
    const std::string typeMap = config.getString("TRIGRAM_POS_TYPEID2TAG", "");
    return init(dict.c_str(), typeMap.c_str(), patch.c_str());
}

bool TrigramPosTagger::init(const char* dictPath, const char* typeId2TagPath,
                            const char* patchPath) {
    WsLogger* log = WsLogger::getWsLogger();
    std::unique_ptr<TrigramPosDict> dict(new (std::nothrow) TrigramPosDict(m_dicts));
    if (!dict) {
        log->errorPos("wsTrigramPosTagger", 44, "new TrigramPosDict fail!\n");
        return false;
    }
    int rc = dict->loadDict(dictPath);
    if (rc != 0) {
        log->printErr(dictPath, rc, "wsTrigramPosTagger", 50, dict->getTrieErr());
        return false;
    }
    log->debug("load POS-dict : %s success!\n", dictPath);
    rc = dict->loadPatchDict(patchPath);
    if (rc != 0) {
        log->printErr(patchPath, rc, "wsTrigramPosTagger", 61, dict->getPatchTrieErr());
        return false;
    }
    log->debug("load POS-Patch-dict : %s success!\n", patchPath != nullptr ? patchPath : "");
    if (dict->loadTypeId2TagNameFile(typeId2TagPath) != 0) {
        log->errorPos("wsTrigramPosTagger", 72, "Load TypeId2TagNameFile failed!");
        return false;
    }
    log->debug("load TypeId2TagNameFile : %s success!\n", typeId2TagPath);
    m_dict = std::move(dict);
    const TagInfo& info = m_dict->getTagInfo();
    m_init = info.getInitTagProbVector();
    m_bigram = info.getBigramTagTransProbMatrix();
    m_trigram = info.getSmoothedTrigramTagTransProbMatrix();
    m_numTags = info.getNumTags();
    if (m_numTags != m_tableTags) sizeTables(m_numTags);
    return true;
}

void TrigramPosTagger::sizeTables(int numTags) {
    const size_t pairs = static_cast<size_t>(numTags) * static_cast<size_t>(numTags);
    for (int p = 0; p < 2; ++p) {
        m_score[p].assign(pairs, kNoScore);
        m_node[p].assign(pairs, -1);
    }
    m_first.assign(pairs, kNoScore);
    m_firstNode.assign(pairs, -1);
    m_madeAt.assign(pairs, -1);
    m_madeNode.assign(pairs, -1);
    m_tableTags = numTags;
}

const char* TrigramPosTagger::getTagName(int id) {
    return m_dict ? m_dict->getTagName(id) : nullptr;
}

int TrigramPosTagger::getTagId(const char* name) const {
    return m_dict ? m_dict->getTagId(name) : -1;
}

int TrigramPosTagger::collectWords(const TextSegmentation& seg) {
    m_wordStart.clear();
    const std::vector<SegmentResult::Cell>& cells = seg.result.cells;
    for (unsigned pos = 0; pos < seg.textLen && pos < cells.size();) {
        m_wordStart.push_back(pos);
        pos += cells[pos].len > 0 ? cells[pos].len : 1;
    }
    return static_cast<int>(m_wordStart.size());
}

const char* TrigramPosTagger::listOf(const TextSegmentation& seg, int k) {
    const unsigned start = m_wordStart[static_cast<size_t>(k)];
    const SegmentResult::Cell& cell = seg.result.cells[start];
    unsigned len = cell.len > 0 ? cell.len : 1;
    if (start + len > seg.textLen) len = seg.textLen - start;
    m_record.word = seg.text + start;
    m_record.wordLen = len;
    m_record.prop = cell.prop;
    m_record.wordId = cell.wordId;
    return m_dict->getWordInfoBuf(seg.text + start, static_cast<int>(len), &m_record);
}

int32_t TrigramPosTagger::appendNode(int32_t pair, int32_t prev) {
    if (m_nodeCount == m_nodes.size()) m_nodes.resize(m_nodes.size() + kNodeStep);
    m_nodes[m_nodeCount] = Node{pair, prev};
    return static_cast<int32_t>(m_nodeCount++);
}

int TrigramPosTagger::annotate(TextSegmentation& seg) {
    if (!m_dict || seg.text == nullptr) return 0;
    const int n = collectWords(seg);
    if (n == 0) return 0;
    growTo(m_nodes, 6 * static_cast<size_t>(n));
    m_nodeCount = 0;
    growTo(m_tags, static_cast<size_t>(n));
    decode(seg, n);
    for (int k = 0; k < n; ++k)
        seg.result.cells[m_wordStart[static_cast<size_t>(k)]].tag = m_tags[static_cast<size_t>(k)];
    return 0;
}

void TrigramPosTagger::decode(const TextSegmentation& seg, int n) {
    const char* l0 = listOf(seg, 0);
    for (int i = 0; i < TrigramPosDict::getNumTags(l0); ++i) {
        const int a = TrigramPosDict::getTagIdAt(l0, i) - 1;
        m_first[a] = m_init[a] + TrigramPosDict::getProbAt(l0, i);
    }
    if (n == 1) {
        double best = kNoScore;
        int bestTag = 0;
        for (int i = 0; i < TrigramPosDict::getNumTags(l0); ++i) {
            const int a = TrigramPosDict::getTagIdAt(l0, i) - 1;
            if (m_first[a] > best) {
                best = m_first[a];
                bestTag = a + 1;
            }
        }
        m_tags[0] = static_cast<unsigned char>(bestTag);
        return;
    }
    const char* l1 = listOf(seg, 1);
    decodeFirstTwo(l0, l1);
    for (int k = 2; k < n; ++k) {
        const char* l2 = listOf(seg, k);
        decodeStep(k, l0, l1, l2);
        l0 = l1;
        l1 = l2;
    }
    backTrace(n, l0, l1);
}

void TrigramPosTagger::decodeFirstTwo(const char* l0, const char* l1) {
    const int t = m_numTags;
    double* score = m_score[1].data();
    int32_t* node = m_node[1].data();
    for (int i = 0; i < TrigramPosDict::getNumTags(l0); ++i) {
        const int a = TrigramPosDict::getTagIdAt(l0, i) - 1;
        for (int j = 0; j < TrigramPosDict::getNumTags(l1); ++j) {
            const int b = TrigramPosDict::getTagIdAt(l1, j) - 1;
            score[a * t + b] = m_bigram[a * t + b] + m_first[a] + TrigramPosDict::getProbAt(l1, j);
            node[a * t + b] = -1;
        }
    }
}

void TrigramPosTagger::decodeStep(int k, const char* l0, const char* l1, const char* l2) {
    const int t = m_numTags;
    const double* prevScore = m_score[(k - 1) & 1].data();
    const int32_t* prevNode = m_node[(k - 1) & 1].data();
    double* score = m_score[k & 1].data();
    int32_t* node = m_node[k & 1].data();
    const int n0 = TrigramPosDict::getNumTags(l0);
    ++m_step;
    for (int j = 0; j < TrigramPosDict::getNumTags(l1); ++j) {
        const int b = TrigramPosDict::getTagIdAt(l1, j) - 1;
        for (int m = 0; m < TrigramPosDict::getNumTags(l2); ++m) {
            const int c = TrigramPosDict::getTagIdAt(l2, m) - 1;
            const double emit = TrigramPosDict::getProbAt(l2, m);
            double best = kNoScore;
            int bestA = -1;
            for (int i = 0; i < n0; ++i) {
                const int a = TrigramPosDict::getTagIdAt(l0, i) - 1;
                const double s = m_trigram[(a * t + b) * t + c] + prevScore[a * t + b] + emit;
                if (s > best) {
                    best = s;
                    bestA = a;
                }
            }
            // Every candidate may be -inf (a tag never seen): keep the first.
            if (bestA < 0) bestA = TrigramPosDict::getTagIdAt(l0, 0) - 1;
            const int ab = bestA * t + b;
            if (m_madeAt[ab] != m_step) {
                m_madeAt[ab] = m_step;
                m_madeNode[ab] = appendNode(ab, prevNode[ab]);
            }
            score[b * t + c] = best;
            node[b * t + c] = m_madeNode[ab];
        }
    }
}

void TrigramPosTagger::backTrace(int n, const char* l0, const char* l1) {
    const int t = m_numTags;
    const double* score = m_score[(n - 1) & 1].data();
    const int32_t* node = m_node[(n - 1) & 1].data();
    double best = kNoScore;
    int pair = (TrigramPosDict::getTagIdAt(l0, 0) - 1) * t + TrigramPosDict::getTagIdAt(l1, 0) - 1;
    for (int i = 0; i < TrigramPosDict::getNumTags(l0); ++i) {
        const int b = TrigramPosDict::getTagIdAt(l0, i) - 1;
        for (int j = 0; j < TrigramPosDict::getNumTags(l1); ++j) {
            const int c = TrigramPosDict::getTagIdAt(l1, j) - 1;
            if (score[b * t + c] > best) {
                best = score[b * t + c];
                pair = b * t + c;
            }
        }
    }
    int32_t at = node[pair];
    for (int k = n - 1; k >= 2; --k) {
        m_tags[static_cast<size_t>(k)] = static_cast<unsigned char>(pair % t + 1);
        pair = m_nodes[static_cast<size_t>(at)].pair;
        at = m_nodes[static_cast<size_t>(at)].prev;
    }
    m_tags[1] = static_cast<unsigned char>(pair % t + 1);
    m_tags[0] = static_cast<unsigned char>(pair / t + 1);
}

}  // namespace ws
