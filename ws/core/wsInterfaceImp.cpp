#include "ws/core/wsInterfaceImp.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include "ws/algo/wsMaxMatchSegmenter.h"
#include "ws/algo/wsNumberRecognizer.h"
#include "ws/algo/wsUnigramSegmenter.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsUtility.h"
#include "ws/core/wsWsLogger.h"

#define WS_IMP_ERROR(...) WsLogger::getWsLogger()->errorPos("wsInterfaceImp.cpp", __LINE__, __VA_ARGS__)
#define WS_IMP_DEBUG(...) WsLogger::getWsLogger()->debugPos("wsInterfaceImp.cpp", __LINE__, __VA_ARGS__)

namespace ws {

namespace {

const unsigned char kAllDicts = 7;
const unsigned short kNamePropBits = WS_PROPERTY_PER_RULE | WS_PROPERTY_PER_ME;

template <class T>
void growTo(std::vector<T>& v, size_t n) {
    if (v.size() < n) v.resize(n);
}

}  // namespace

WsSegmenterImp::WsSegmenterImp() = default;

WsSegmenterImp::~WsSegmenterImp() { _release(); }

void WsSegmenterImp::_release() {
    m_ready = false;
    m_preProcessors.clear();
    m_recognizers.clear();
    m_revisers.clear();
    m_postProcessors.clear();
    m_segmenter.reset();
    m_unigram = false;
    m_charFreq.reset();
    m_dicts.clearData();
}

bool WsSegmenterImp::init(const char* configPath) {
    WsConfig config;
    if (configPath == nullptr || !config.init(configPath)) {
        WS_IMP_ERROR("load config file : %s fail!\n", configPath != nullptr ? configPath : "(null)");
        return false;
    }
    return init(&config);
}

bool WsSegmenterImp::init(const WsConfig* config) {
    _release();
    if (config == nullptr) return false;
    try {
        m_config = *config;
        if (!_loadDicts(m_config)) {
            WS_IMP_ERROR("load dicts fail!\n");
            return false;
        }
        m_seg = TextSegmentation();
        if (!_loadChunker(m_config) ||
            !_loadPropertyDict(m_config.getString("PROPERTY_DICT_FILE", "")) ||
            !_checkUnavailableStages(m_config) || !_createSegmenter(m_config))
            return false;
        _addNewWordBuffers(m_config);
        if (m_unigram && !_createRecognizers(m_config)) return false;
    } catch (const std::bad_alloc&) {
        WS_IMP_ERROR("allocate memory fail!");
        _release();
        return false;
    }
    setOutType(static_cast<int>(m_config.outType));
    setSegType(static_cast<int>(m_config.segType));
    m_ready = true;
    return true;
}

bool WsSegmenterImp::_loadDicts(const WsConfig& config) {
    std::vector<std::string> users;
    Utility::splitLine(config.getString("USER_DICTIONARY", ""), " ;", users);
    if (m_dicts.loadDict(config.getString("BASE_DICTIONARY", ""),
                         config.getString("ALNUM_DICTIONARY", ""), users) != 0) {
        WS_IMP_ERROR("Load dicts failed!\n");
        return false;
    }
    const std::string charFreq = config.getString("CHARACTER_FREQ_DICT", "");
    if (charFreq.empty()) return true;  // only the statistical stages need it
    m_charFreq.reset(new (std::nothrow) CharFreqDict());
    if (!m_charFreq) {
        WS_IMP_ERROR("new CharFreqDict fail!\n");
        return false;
    }
    if (!m_charFreq->loadText(charFreq.c_str())) return false;
    WS_IMP_DEBUG("load char-freq-dict : %s success!\n", charFreq.c_str());
    return true;
}

bool WsSegmenterImp::_loadChunker(const WsConfig& config) {
    const std::string path = config.getString("SPACE_DEFINE_FILE", "");
    if (!m_chunker.loadText(path)) {
        WS_IMP_ERROR("load chunk-delimiter-list : %s fail!\n", path.c_str());
        return false;
    }
    m_chunker.setChunkSize(kChunkSize);
    WS_IMP_DEBUG("load chunk-delimiter-list : %s success!\n", path.c_str());
    return true;
}

bool WsSegmenterImp::_loadPropertyDict(const std::string& path) {
    if (!m_properties.load(path)) {
        WS_IMP_ERROR("load property Dict : %s fail!\n", path.c_str());
        return false;
    }
    WS_IMP_DEBUG("load property Dict : %s success!\n", path.c_str());
    return true;
}

// Stages this build does not have fail init when their switch is on, so that
// a configuration never silently loses a stage it asks for.
bool WsSegmenterImp::_checkUnavailableStages(const WsConfig& config) {
    const char* missing = nullptr;
    if (config.enableRemoveSpace || config.enableNormalize != 0)
        missing = "ENABLE_REMOVE_SPACE / ENABLE_NORMALIZE (text processors)";
    else if (config.enableCorrectPhrase)
        missing = "ENABLE_CORRECT_PHRASE (phrase correction)";
    else if (config.enablePlugIn)
        missing = "ENABLE_PLUG_IN (plug-ins)";
    if (config.enablePosTagger != 0 && config.enablePosTagger != 1) {
        WS_IMP_ERROR("ENABLE_POS_TAGGER is error");
        return false;
    }
    if (missing == nullptr && config.enablePosTagger == 1)
        missing = "ENABLE_POS_TAGGER (part-of-speech tagger)";
    if (missing == nullptr) return true;
    WS_IMP_ERROR("%s is switched on but this build has no such stage\n", missing);
    return false;
}

bool WsSegmenterImp::_createSegmenter(const WsConfig& config) {
    const std::string algorithm = config.getString("SEGMENT_ALGORITHM", "");
    if (algorithm == "MAX_MATCH") {
        auto* segmenter = new (std::nothrow) MaxMatchSegmenter(&m_dicts);
        if (segmenter == nullptr) {
            WS_IMP_ERROR("new MaxMatchSegmenter fail!\n");
            return false;
        }
        m_segmenter.reset(segmenter);
        return segmenter->init(config);
    }
    if (algorithm == "UNIGRAM") {
        auto* segmenter = new (std::nothrow) UnigramSegmenter(&m_dicts);
        if (segmenter == nullptr) {
            WS_IMP_ERROR("new UnigramSegmenter fail!\n");
            return false;
        }
        m_segmenter.reset(segmenter);
        m_unigram = true;
        return segmenter->init(config);
    }
    WS_IMP_ERROR("Please specify the segment algorithm in config file");
    return false;
}

// The recognisers fill the new-word buffers that only the unigram lattice
// reads, so they exist with that algorithm only.
bool WsSegmenterImp::_createRecognizers(const WsConfig& config) {
    const char* missing = nullptr;
    if (config.enableRuleNameTagger || config.enableMaxentPersonNameTagger)
        missing = "ENABLE_RULEBASED_NAME_TAGGER / ENABLE_MAXENT_PERSON_NAME_TAGGER "
                  "(person-name recogniser)";
    else if (config.enableRuleOrgnizationTagger)
        missing = "ENABLE_RULEBASED_ORGNIZATION_TAGGER (organisation recogniser)";
    if (missing != nullptr) {
        WS_IMP_ERROR("%s is switched on but this build has no such stage\n", missing);
        return false;
    }
    std::unique_ptr<NumberRecognizer> numbers(new (std::nothrow) NumberRecognizer());
    if (!numbers) {
        WS_IMP_ERROR("new NumberRecognizer fail!\n");
        return false;
    }
    const std::string path = config.getString("NUMERIC_RULE_FILE", "");
    const auto idx = [this](unsigned short prop) {
        const unsigned int i = m_seg.getPropIdx(prop);
        return i == TextSegmentation::kNoBuffer ? -1 : static_cast<int>(i);
    };
    if (numbers->init(path.c_str(), idx(WS_PROPERTY_NUM), idx(WS_PROPERTY_LET),
                      idx(WS_PROPERTY_LETNUM), idx(WS_PROPERTY_CHINESE_NUM)) != 0) {
        WS_IMP_ERROR("load number-rule-file : %s fail!\n", path.c_str());
        return false;
    }
    WS_IMP_DEBUG("load number-rule-file success!\n");
    if (config.enableNumericRecognizer) m_recognizers.push_back(std::move(numbers));
    return true;
}

void WsSegmenterImp::_addNewWordBuffers(const WsConfig& config) {
    const float numeric = static_cast<float>(config.numericThreshold);
    for (unsigned short prop : {WS_PROPERTY_NUM, WS_PROPERTY_LET, WS_PROPERTY_LETNUM,
                                WS_PROPERTY_CHINESE_NUM})
        m_seg.addNewWordBuffer(prop, numeric);
    m_seg.addNewWordBuffer(WS_PROPERTY_PER_RULE, static_cast<float>(config.ruleNameThreshold));
    m_seg.addNewWordBuffer(WS_PROPERTY_PER_ME, static_cast<float>(config.maxentNameThreshold));
    m_seg.addNewWordBuffer(WS_PROPERTY_ORG, static_cast<float>(config.orgnizationThreshold));
}

bool WsSegmenterImp::_doSegment() {
    for (auto& p : m_preProcessors) {
        if (p->doPreProcess(m_seg) != 0) return false;
    }
    for (auto& r : m_recognizers) r->doRecognize(m_seg);
    m_segmenter->doSegment(m_seg, 1, m_seg.resultByDict.valid != 0 ? 2 : 0);
    for (auto& r : m_revisers) r->doRevise(m_seg);
    for (auto& p : m_postProcessors) p->doPostProcess(m_seg);
    return true;
}

// Rich output wants the words' user values, which only a dictionary set
// loaded for rich information provides.
bool WsSegmenterImp::_wantUserValues() {
    if (m_outType != 1 && m_outType != 2) return false;
    if (m_config.enableWordRichInfo) return true;
    WS_IMP_ERROR("please load rich info dictionary first");
    return false;
}

void WsSegmenterImp::_appendWords(std::vector<WORD_T>& words, bool userValues) {
    const SegmentResult::Cell* cells = m_seg.result.cells.data();
    for (unsigned int pos = 0; pos < m_seg.textLen;) {
        const SegmentResult::Cell& cell = cells[pos];
        const unsigned int len = cell.len != 0 ? cell.len : 1;
        unsigned char* usr = nullptr;
        const int usrLen = userValues ? m_dicts.getUsrValue(cell.wordId, &usr) : 0;
        words.emplace_back(m_seg.text + pos, len, m_seg.orgText + pos, len, cell.prop, cell.tag,
                           cell.wordId, usr, static_cast<unsigned int>(usrLen > 0 ? usrLen : 0),
                           0u, -1);
        if (m_wantTypes && cell.value != nullptr) m_dicts.getPropWght(cell.value, words.back().types);
        pos += len;
    }
}

bool WsSegmenterImp::_segmentUtf16(const unsigned short* text, unsigned int len,
                                   std::vector<WORD_T>& words) {
    words.clear();
    if (len == 0) return true;
    if (len <= kChunkSize) {
        m_chunks.assign(1, CHUNK_T{text, len});
    } else {
        m_chunker.getChunks(text, len, m_chunks);
    }
    const bool userValues = _wantUserValues();
    for (const CHUNK_T& chunk : m_chunks) {
        growTo(m_spaceFree, chunk.len);
        growTo(m_normalized, chunk.len);
        if (!m_seg.init(chunk.text, m_spaceFree.data(), m_normalized.data(), chunk.len))
            return false;
        if (!_doSegment()) return false;
        _appendWords(words, userValues);
    }
    return true;
}

unsigned int WsSegmenterImp::_toUtf16(const char* utf8, unsigned int len) {
    if (utf8 == nullptr || len == 0) return 0;
    growTo(m_utf16, static_cast<size_t>(len) + 1);
    const int n = EncodeConverter::utf8ToUtf16(reinterpret_cast<const unsigned char*>(utf8), len,
                                               m_utf16.data(), m_utf16.size());
    return n > 0 ? static_cast<unsigned int>(n) : 0;
}

// Bytes of the UTF-8 form of the first `units` code units of `w`.
static unsigned int utf8Bytes(const unsigned short* w, unsigned int units) {
    unsigned int bytes = 0;
    for (unsigned int i = 0; i < units; ++i) bytes += w[i] < 0x80 ? 1 : w[i] < 0x800 ? 2 : 3;
    return bytes;
}

void WsSegmenterImp::_transformUtf16ToUtf8(const std::vector<WORD_T>& words,
                                           std::vector<WORD_UTF8_T>& out) {
    size_t units = 0;
    for (const WORD_T& w : words) units += w.wordLen;
    growTo(m_utf8, 3 * units + 1);
    out.clear();
    char* p = m_utf8.data();
    for (const WORD_T& w : words) {
        const int n = EncodeConverter::utf16ToUtf8(w.word, w.wordLen,
                                                   reinterpret_cast<unsigned char*>(p),
                                                   3 * static_cast<unsigned long>(w.wordLen) + 1);
        const unsigned int bytes = n > 0 ? static_cast<unsigned int>(n) : 0;
        out.emplace_back(p, bytes, nullptr, 0u, w.prop, w.tag, w.wordId, w.usrValue, w.usrValueLen,
                         w.subWordNum, w.subWordStart);
        WORD_UTF8_T& u = out.back();
        u.types = w.types;
        u.props = w.props;
        for (const SemItem& s : w.semItems) {
            const unsigned int start = utf8Bytes(w.word, s.offset);
            const unsigned int length = utf8Bytes(w.word + s.offset, s.length);
            u.semItems.push_back(SemItem{static_cast<unsigned char>(start),
                                         static_cast<unsigned char>(length)});
        }
        p += bytes;
    }
}

bool WsSegmenterImp::segment(const unsigned short* text, unsigned int len,
                             std::vector<std::vector<WORD_T> >& results) {
    if (!m_ready) return false;
    try {
        results.resize(1);
        return _segmentUtf16(text, text != nullptr ? len : 0, results[0]);
    } catch (const std::bad_alloc&) {
        WS_IMP_ERROR("allocate memory fail!");
        return false;
    }
}

bool WsSegmenterImp::segment(const char* utf8, unsigned int len,
                             std::vector<std::vector<WORD_UTF8_T> >& results) {
    if (!m_ready) return false;
    try {
        m_words.resize(1);
        const unsigned int units = _toUtf16(utf8, len);
        if (!_segmentUtf16(m_utf16.data(), units, m_words[0])) return false;
        results.resize(1);
        _transformUtf16ToUtf8(m_words[0], results[0]);
        return true;
    } catch (const std::bad_alloc&) {
        WS_IMP_ERROR("allocate memory fail!");
        return false;
    }
}

bool WsSegmenterImp::segment(const unsigned short* text, unsigned int len,
                             std::vector<WORD_T>& result) {
    if (!segment(text, len, m_words)) return false;
    result.swap(m_words.front());
    return true;
}

bool WsSegmenterImp::segment(const char* utf8, unsigned int len, std::vector<WORD_UTF8_T>& result) {
    if (!segment(utf8, len, m_utf8Words)) return false;
    result.swap(m_utf8Words.front());
    return true;
}

const char* WsSegmenterImp::segment(const char* utf8, unsigned int len, int outType) {
    if (!m_ready) return nullptr;
    try {
        m_wantTypes = outType != 0;
        m_words.resize(1);
        const unsigned int units = _toUtf16(utf8, len);
        const bool ok = _segmentUtf16(m_utf16.data(), units, m_words[0]);
        m_wantTypes = false;
        if (!ok) return nullptr;
        m_text.clear();
        if (outType == 0)
            _transformResult(m_words[0]);
        else
            _transformResult_wordtypeWeight(m_words[0]);
        return m_text.c_str();
    } catch (const std::bad_alloc&) {
        m_wantTypes = false;
        WS_IMP_ERROR("allocate memory fail!");
        return nullptr;
    }
}

// Appends the UTF-8 form of `units` code units to m_text; false when it
// yields nothing.
bool WsSegmenterImp::_appendUtf8(const unsigned short* text, unsigned int units) {
    char buf[3 * 256 + 1];
    unsigned int done = 0;
    while (done < units) {
        const unsigned int n = std::min(units - done, 256u);
        const int bytes = EncodeConverter::utf16ToUtf8(text + done, n,
                                                       reinterpret_cast<unsigned char*>(buf),
                                                       sizeof buf);
        if (bytes < 1) return false;
        m_text.append(buf, static_cast<size_t>(bytes));
        done += n;
    }
    return true;
}

void WsSegmenterImp::_transformResult(const std::vector<WORD_T>& words) {
    for (const WORD_T& w : words) {
        if (!_appendUtf8(w.word, w.wordLen)) {
            WS_IMP_ERROR("utf16 to utf8 fail!\n");
            continue;
        }
        if (m_showTags && !(w.wordLen == 1 && Utility::isSpaceChar(w.word[0]))) {
            const char* tag = getTagName(w.tag);
            m_text.append("/").append(tag != nullptr ? tag : "");
        }
        m_text.push_back(' ');
    }
}

void WsSegmenterImp::_transformResult_wordtypeWeight(const std::vector<WORD_T>& words) {
    char buf[64];
    for (const WORD_T& w : words) {
        if (!_appendUtf8(w.word, w.wordLen)) {
            WS_IMP_ERROR("utf16 to utf8 fail!\n");
            continue;
        }
        if (w.types.empty() && (w.prop & (kNamePropBits | WS_PROPERTY_ORG)) == 0 &&
            w.semItems.empty()) {
            m_text.push_back(' ');
            continue;
        }
        m_text.append("[|");
        for (const WordType& t : w.types) {
            const char* name = getTypeName(t.type);
            std::snprintf(buf, sizeof buf, "%s@%-2.1f", name != nullptr ? name : "", t.weight);
            m_text.append("/").append(buf).push_back(' ');
        }
        if (w.prop & kNamePropBits) m_text.append("/NR ");
        if (w.prop & WS_PROPERTY_ORG) m_text.append("/NT ");
        for (const SemItem& s : w.semItems) {
            m_text.push_back('#');
            if (s.offset + s.length <= w.wordLen) _appendUtf8(w.word + s.offset, s.length);
            m_text.push_back(' ');
        }
        m_text.append("|] ");
    }
}

bool WsSegmenterImp::segmentMax(const unsigned short* text, unsigned int len,
                                std::vector<WORD_T>& result) {
    return segment(text, len, result);
}

bool WsSegmenterImp::segmentMax(const char* utf8, unsigned int len,
                                std::vector<WORD_UTF8_T>& result) {
    return segment(utf8, len, result);
}

bool WsSegmenterImp::segmentMin(const unsigned short* text, unsigned int len,
                                std::vector<WORD_T>& result) {
    return segment(text, len, result);
}

bool WsSegmenterImp::segmentMin(const char* utf8, unsigned int len,
                                std::vector<WORD_UTF8_T>& result) {
    return segment(utf8, len, result);
}

const char* WsSegmenterImp::getTagName(unsigned char) { return nullptr; }

int WsSegmenterImp::getTagId(const char*) { return -1; }

const char* WsSegmenterImp::getTypeName(short type) { return m_properties.getName(type); }

short WsSegmenterImp::getTypeId(const char* name) { return m_properties.getId(name); }

int WsSegmenterImp::getWordId(const unsigned short* word, unsigned int len) {
    if (!m_ready || word == nullptr) return -1;
    return m_dicts.getWordId(word, len, kAllDicts);
}

int WsSegmenterImp::getWordId(const char* utf8, unsigned int len) {
    if (!m_ready) return -1;
    const unsigned int n = _toUtf16(utf8, len);
    return n > 0 ? m_dicts.getWordId(m_utf16.data(), n, kAllDicts) : -1;
}

}  // namespace ws
