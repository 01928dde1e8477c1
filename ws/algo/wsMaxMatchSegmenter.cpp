#include "ws/algo/wsMaxMatchSegmenter.h"

#include <new>

#include "ws/algo/wsNumberRecognizer.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsWsConfig.h"
#include "ws/core/wsWsLogger.h"
#include "ws/dict/wsDictSet.h"

namespace ws {

namespace {

const char kSource[] = "wsMaxMatchSegmenter";
const int MAX_WORD_LEN = 32;
const unsigned char kBaseAndUserDicts = 5;

}  // namespace

MaxMatchSegmenter::MaxMatchSegmenter(WsDictSet* dicts) : m_dicts(dicts) {}

MaxMatchSegmenter::~MaxMatchSegmenter() = default;

bool MaxMatchSegmenter::init(const WsConfig& config) {
    m_numbers.reset();
    m_numbers.reset(new (std::nothrow) NumberRecognizer());
    if (!m_numbers) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "new NumberRecognizer fail!\n");
        return false;
    }
    const std::string path = config.getString("NUMERIC_RULE_FILE", "");
    if (m_numbers->init(path.c_str(), -1, -1, -1, -1) != 0) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "load number-rule-file : %s fail!\n",
                                          path.c_str());
        return false;
    }
    WsLogger::getWsLogger()->debugPos(kSource, __LINE__, "load number-rule-file success!\n");
    return true;
}

int MaxMatchSegmenter::init(const char*, const char*) { return 0; }

int MaxMatchSegmenter::doSegment(TextSegmentation& seg, int, int) {
    const unsigned int n = seg.textLen;
    TrieBase::MatchInfo matches[MAX_WORD_LEN];
    unsigned int p = 0;
    while (p < n) {
        SegmentResult::Cell& cell = seg.result.cells[p];
        const int found = m_dicts->matchAll(reinterpret_cast<const char*>(seg.text + p),
                                            (n - p) * 2, matches, MAX_WORD_LEN, kBaseAndUserDicts);
        unsigned int len;
        if (found > 0) {
            const TrieBase::MatchInfo& longest = matches[found - 1];
            unsigned char* value = nullptr;
            float weight = 0;
            m_dicts->getValue(longest.value, &value, weight);
            len = static_cast<unsigned int>(longest.pos + 1) / 2;
            cell.wordId = longest.value;
            cell.value = value;
            cell.prop = WS_PROPERTY_WORD;
        } else {
            unsigned short type = WS_PROPERTY_WORD;
            len = m_numbers ? static_cast<unsigned int>(m_numbers->doMaxMatch(seg, p, type)) : 1;
            cell.wordId = -1;
            cell.value = nullptr;
            cell.prop = type;
        }
        if (len == 0) len = 1;  // a zero-length answer would never advance
        if (len > n - p) len = n - p;
        cell.len = static_cast<unsigned char>(len);
        cell.attr = 0;
        cell.partNum = 0;
        p += len;
    }
    return 0;
}

}  // namespace ws
