#include "ws/algo/wsPersonRecognizer.h"

#include <new>
#include <string>

#include "ws/algo/wsMEPersonNameTagger.h"
#include "ws/algo/wsRulePersonNameTagger.h"
#include "ws/core/wsSegmenter.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsWordRecord.h"
#include "ws/core/wsWsConfig.h"
#include "ws/core/wsWsLogger.h"
#include "ws/dict/wsDictSet.h"
#include "ws/dict/wsFamilyNameDict.h"
#include "ws/dict/wsMaxentDict.h"

#define PR_ERROR(...) WsLogger::getWsLogger()->errorPos("wsPersonRecognizer.cpp", __LINE__, __VA_ARGS__)

namespace ws {

namespace {

// The fixed frequency of a family name listed without one.
const float kDefaultFamilyFreq = 10.0f;
const unsigned char kBaseAndUser = 5;  // not the alnum dictionary

}  // namespace

PersonRecognizer::PersonRecognizer() = default;

PersonRecognizer::PersonRecognizer(Segmenter* segmenter, CharFreqDict* charFreq, WsDictSet* dicts)
    : m_segmenter(segmenter), m_charFreq(charFreq), m_dicts(dicts) {}

PersonRecognizer::~PersonRecognizer() = default;

bool PersonRecognizer::_initMaxent(const WsConfig& config, int meIdx) {
    m_model.reset(new (std::nothrow) MaxentDict());
    if (!m_model) {
        PR_ERROR("new MaxentDict fail!\n");
        return false;
    }
    const std::string path = config.getString("MAXENT_PERSON_NAME_DICT", "");
    const int rc = m_model->loadDict(path.c_str());
    if (rc < 0) {
        WsLogger::getWsLogger()->printErr(path.c_str(), rc, "wsPersonRecognizer.cpp", __LINE__,
                                          m_model->getTrieErr());
        return false;
    }
    m_meTagger.reset(new (std::nothrow) MEPersonNameTagger());
    if (!m_meTagger) {
        PR_ERROR("new MEPersonNameTagger fail!\n");
        return false;
    }
    m_meTagger->init(m_model.get(), meIdx);
    m_meTagger->setNameBias(config.getDouble("MAXENT_NAME_BIAS", 0.0));
    m_maxentOn = true;
    m_meIdx = meIdx;
    if (meIdx < 0) {
        PR_ERROR("please add result                             vector before constuct this module");
        return false;
    }
    return true;
}

bool PersonRecognizer::_initFamilyNames(const WsConfig& config) {
    m_familyNames.reset(new (std::nothrow) FamilyNameDict());
    if (!m_familyNames) {
        PR_ERROR("new FamilyNameDict fail!\n");
        return false;
    }
    const std::string path = config.getString("CHN_FAMILY_NAME_FREQ_DICT", "");
    const float threshold =
        static_cast<float>(config.getDouble("CHN_FAMILY_NAME_FREQ_THRESHOLD", 0.0));
    if (!m_familyNames->loadText(path.c_str(), kDefaultFamilyFreq, threshold)) {
        PR_ERROR("load family name dict : %s fail!\n", path.c_str());
        return false;
    }
    WsLogger::getWsLogger()->debugPos("wsPersonRecognizer.cpp", __LINE__,
                                      "load family-name-dict : %s success!\n", path.c_str());
    m_familyCheckOn = true;
    return true;
}

bool PersonRecognizer::init(const WsConfig& config, int meIdx, int ruleIdx) {
    if (config.enableMaxentPersonNameTagger && !_initMaxent(config, meIdx)) return false;
    if (config.enableRuleNameTagger) {
        m_ruleTagger.reset(new (std::nothrow) RulePersonNameTagger(m_charFreq));
        if (!m_ruleTagger) {
            PR_ERROR("new RulePersonNameTagger fail!\n");
            return false;
        }
        if (!m_ruleTagger->init(config, ruleIdx)) return false;
        m_ruleOn = true;
    }
    if (config.enableFamilyNameCheck && !_initFamilyNames(config)) return false;
    if (config.enableRightBoundaryCheck) m_rightBoundaryOn = true;
    return true;
}

int PersonRecognizer::doRecognize(TextSegmentation& seg) {
    if (m_ruleOn) {
        if (!seg.resultByDict.valid && m_segmenter != nullptr) m_segmenter->doSegment(seg, 1, 1);
        m_ruleTagger->tag(seg);
    }
    if (!m_maxentOn) return 1;
    m_meTagger->tag(seg, 1);
    const bool haveBuffer = m_meIdx >= 0 && static_cast<unsigned>(m_meIdx) < seg.newWordBuffers.size();
    if (m_familyCheckOn && haveBuffer)
        m_familyNames->checkFamilyName(seg.text, seg.newWordBuffers[m_meIdx], seg.textLen);
    if (m_rightBoundaryOn) _checkRightBoundary(seg, WS_PROPERTY_PER_ME, m_meIdx);
    return 1;
}

int PersonRecognizer::getProperty(std::vector<unsigned short>& props) {
    props.push_back(WS_PROPERTY_PER_RULE);
    props.push_back(WS_PROPERTY_PER_ME);
    return 2;
}

void PersonRecognizer::_checkRightBoundary(TextSegmentation& seg, unsigned short, int idx) {
    if (m_dicts == nullptr || idx < 0 || static_cast<unsigned>(idx) >= seg.newWordBuffers.size())
        return;
    NewWordBuffer& buf = seg.newWordBuffers[idx];
    const unsigned n = seg.textLen;
    for (unsigned i = 0; i < n && i < buf.words.size(); ++i) {
        if (buf.words[i].len != 3 || i + 3 >= n) continue;
        if (m_dicts->match(reinterpret_cast<const char*>(seg.text + i + 2), 4, kBaseAndUser) != nullptr)
            buf.words[i].len = 2;
    }
}

}  // namespace ws
