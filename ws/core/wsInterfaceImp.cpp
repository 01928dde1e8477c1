#include "ws/core/wsInterfaceImp.h"

#include <new>
#include <utility>

#include "ws/algo/wsMaxMatchSegmenter.h"
#include "ws/algo/wsNormalizer.h"
#include "ws/algo/wsNumberRecognizer.h"
#include "ws/algo/wsOrgnizationRecognizer.h"
#include "ws/algo/wsPersonRecognizer.h"
#include "ws/algo/wsPhraseCorrecter.h"
#include "ws/algo/wsSpaceProcessor.h"
#include "ws/algo/wsUnigramSegmenter.h"
#include "ws/core/wsBufferGrowth.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsHot.h"
#include "ws/core/wsPlugIn.h"
#include "ws/core/wsUtility.h"
#include "ws/core/wsWsLogger.h"
#include "ws/pos/wsTrigramPosTagger.h"

#define WS_IMP_ERROR(...) WsLogger::getWsLogger()->errorPos("wsInterfaceImp.cpp", __LINE__, __VA_ARGS__)
#define WS_IMP_DEBUG(...) WsLogger::getWsLogger()->debugPos("wsInterfaceImp.cpp", __LINE__, __VA_ARGS__)

namespace ws {

namespace {

const unsigned char kAllDicts = 7;

// Sets a per-call switch for one call and clears it on every way out.
class CallSwitch {
public:
    CallSwitch(bool& flag, bool value) : m_flag(flag) { m_flag = value; }
    ~CallSwitch() { m_flag = false; }
    CallSwitch(const CallSwitch&) = delete;
    CallSwitch& operator=(const CallSwitch&) = delete;

private:
    bool& m_flag;
};

// Allocates without throwing; logs `failure` and returns null when memory runs out.
template <class T, class... Args>
T* newStage(const char* failure, Args&&... args) {
    T* stage = new (std::nothrow) T(std::forward<Args>(args)...);
    if (stage == nullptr) WS_IMP_ERROR("%s", failure);
    return stage;
}

}  // namespace

// The optional stages, in the order init creates them: text processors,
// recognisers, revisers, the tagger, plug-ins. A stage still to be built
// has a null factory, so switching it on fails init with its switch named.
const WsSegmenterImp::StageRow WsSegmenterImp::kStages[] = {
    {"ENABLE_REMOVE_SPACE", "space processor",
     [](const WsConfig& c) { return c.enableRemoveSpace; }, false,
     &WsSegmenterImp::_createSpaceProcessor},
    {"ENABLE_NORMALIZE", "normalising processor",
     [](const WsConfig& c) { return c.enableNormalize != 0; }, false,
     &WsSegmenterImp::_createNormalizer},
    // Created with the lattice whatever its switch says; listed when it is on.
    {"ENABLE_NUMERIC_EXPRESSION_RECOGNIZER", "numeric recogniser", nullptr, true,
     &WsSegmenterImp::_createNumberRecognizer},
    {"ENABLE_RULEBASED_NAME_TAGGER / ENABLE_MAXENT_PERSON_NAME_TAGGER", "person-name recogniser",
     [](const WsConfig& c) { return c.enableRuleNameTagger || c.enableMaxentPersonNameTagger; },
     true, &WsSegmenterImp::_createPersonRecognizer},
    {"ENABLE_RULEBASED_ORGNIZATION_TAGGER", "organisation recogniser",
     [](const WsConfig& c) { return c.enableRuleOrgnizationTagger; }, true,
     &WsSegmenterImp::_createOrgnizationRecognizer},
    {"ENABLE_CORRECT_PHRASE", "phrase correcter",
     [](const WsConfig& c) { return c.enableCorrectPhrase; }, false,
     &WsSegmenterImp::_createPhraseCorrecter},
    {"ENABLE_POS_TAGGER", "part-of-speech tagger",
     [](const WsConfig& c) { return c.enablePosTagger == 1; }, false,
     &WsSegmenterImp::_createPosTagger},
    {"ENABLE_PLUG_IN", "plug-in loader", [](const WsConfig& c) { return c.enablePlugIn; }, false,
     &WsSegmenterImp::_loadPlugIns},
};

WsSegmenterImp::WsSegmenterImp() = default;

WsSegmenterImp::~WsSegmenterImp() { _release(); }

void WsSegmenterImp::_release() {
    m_ready = false;
    m_spaceProcessor = nullptr;
    m_preProcessors.clear();
    m_recognizers.clear();
    m_revisers.clear();
    m_correctPhrases.reset();
    m_tagger.reset();
    m_trigramTagger = nullptr;
    m_postProcessors.clear();
    m_plugIns.clear();  // after the objects the libraries made
    m_segmenter.reset();
    m_unigram = false;
    m_charFreq.reset();
    m_dicts.clearData();
    m_richInfoLogged = false;
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
    bool built = false;
    try {
        m_config = *config;
        built = _build();
    } catch (const std::bad_alloc&) {
        WS_IMP_ERROR("allocate memory fail!");
    }
    if (!built) {
        _release();
        return false;
    }
    setOutType(static_cast<int>(m_config.outType));
    setSegType(static_cast<int>(m_config.segType));
    m_ready = true;
    return true;
}

bool WsSegmenterImp::_build() {
    if (!_loadDicts(m_config)) {
        WS_IMP_ERROR("load dicts fail!\n");
        return false;
    }
    m_seg = TextSegmentation();
    if (!_loadChunker(m_config) ||
        !_loadPropertyDict(m_config.getString("PROPERTY_DICT_FILE", "")) ||
        !_checkOptions(m_config) || !_createSegmenter(m_config))
        return false;
    _addNewWordBuffers(m_config);
    return _createStages(m_config);
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

// Values asking for what this build cannot give fail init rather than being
// ignored: it has one result level and one segmentation type.
bool WsSegmenterImp::_checkOptions(const WsConfig& config) {
    if (config.enablePosTagger != 0 && config.enablePosTagger != 1) {
        WS_IMP_ERROR("ENABLE_POS_TAGGER is error");
        return false;
    }
    if (config.segmentResultNum < 0 || config.segmentResultNum > 1) {
        WS_IMP_ERROR("SEGMENT_RESULT_NUM = %ld: this build gives one result (0 or 1)\n",
                     config.segmentResultNum);
        return false;
    }
    if (config.segType != 0) {
        WS_IMP_ERROR("SEG_TYPE = %ld: this build has segmentation type 0 only\n", config.segType);
        return false;
    }
    return true;
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

void WsSegmenterImp::_addNewWordBuffers(const WsConfig& config) {
    const float numeric = static_cast<float>(config.numericThreshold);
    for (unsigned short prop : {WS_PROPERTY_NUM, WS_PROPERTY_LET, WS_PROPERTY_LETNUM,
                                WS_PROPERTY_CHINESE_NUM})
        m_seg.addNewWordBuffer(prop, numeric);
    m_seg.addNewWordBuffer(WS_PROPERTY_PER_RULE, static_cast<float>(config.ruleNameThreshold));
    m_seg.addNewWordBuffer(WS_PROPERTY_PER_ME, static_cast<float>(config.maxentNameThreshold));
    m_seg.addNewWordBuffer(WS_PROPERTY_ORG, static_cast<float>(config.orgnizationThreshold));
}

int WsSegmenterImp::_bufferIndex(unsigned short prop) const {
    const unsigned int i = m_seg.getPropIdx(prop);
    return i == TextSegmentation::kNoBuffer ? -1 : static_cast<int>(i);
}

// The recognisers fill new-word buffers that only the unigram lattice reads,
// so with maximum matching their rows are skipped.
bool WsSegmenterImp::_createStages(const WsConfig& config) {
    for (const StageRow& row : kStages) {
        if (row.unigramOnly && !m_unigram) continue;
        if (row.wanted != nullptr && !row.wanted(config)) continue;
        if (row.create == nullptr) {
            WS_IMP_ERROR("%s is switched on but this build has no %s\n", row.switchName, row.stage);
            return false;
        }
        if (!(this->*row.create)(config)) return false;
    }
    return true;
}

bool WsSegmenterImp::_createSpaceProcessor(const WsConfig& config) {
    std::unique_ptr<SpaceProcessor> spaces(newStage<SpaceProcessor>("new SpaceProcessor fail!\n"));
    if (!spaces) return false;
    const std::string path = config.getString("SPACE_DEFINE_FILE", "");
    if (!spaces->loadText(path)) {
        WS_IMP_ERROR("load space-file : %s fail!\n", path.c_str());
        return false;
    }
    WS_IMP_DEBUG("load space-file : %s success!\n", path.c_str());
    // Words are mapped back onto the caller's text, so the removed spaces
    // are recorded, and unfolding returns to the text without them.
    m_seg.recordRemovedSpaces = 1;
    m_seg.denormalizeToSpaceFree = 1;
    m_spaceProcessor = spaces.get();
    m_preProcessors.push_back(std::move(spaces));
    return true;
}

bool WsSegmenterImp::_createPosTagger(const WsConfig& config) {
    std::unique_ptr<TrigramPosTagger> tagger(new (std::nothrow) TrigramPosTagger(&m_dicts));
    if (!tagger) {
        WS_IMP_ERROR("new TrigramPosTagger fail!\n");
        return false;
    }
    if (!tagger->init(config)) {
        WS_IMP_ERROR("init POS-tagger fail!\n");
        return false;
    }
    m_trigramTagger = tagger.get();
    m_tagger = std::move(tagger);
    return true;
}

bool WsSegmenterImp::_createNormalizer(const WsConfig& config) {
    std::unique_ptr<Normalizer> folding(newStage<Normalizer>("new Normalizer fail!\n"));
    if (!folding) return false;
    m_seg.normalizeMode = static_cast<int>(config.enableNormalize);
    m_preProcessors.push_back(std::move(folding));
    if (!config.enableDenormalize) return true;
    std::unique_ptr<Normalizer> unfolding(newStage<Normalizer>("new Normalizer fail!\n"));
    if (!unfolding) return false;
    m_postProcessors.push_back(std::move(unfolding));
    return true;
}

bool WsSegmenterImp::_createNumberRecognizer(const WsConfig& config) {
    std::unique_ptr<NumberRecognizer> numbers(
        newStage<NumberRecognizer>("new NumberRecognizer fail!\n"));
    if (!numbers) return false;
    const std::string path = config.getString("NUMERIC_RULE_FILE", "");
    if (numbers->init(path.c_str(), _bufferIndex(WS_PROPERTY_NUM), _bufferIndex(WS_PROPERTY_LET),
                      _bufferIndex(WS_PROPERTY_LETNUM),
                      _bufferIndex(WS_PROPERTY_CHINESE_NUM)) != 0) {
        WS_IMP_ERROR("load number-rule-file : %s fail!\n", path.c_str());
        return false;
    }
    WS_IMP_DEBUG("load number-rule-file success!\n");
    if (config.enableNumericRecognizer) m_recognizers.push_back(std::move(numbers));
    return true;
}

bool WsSegmenterImp::_createPersonRecognizer(const WsConfig& config) {
    std::unique_ptr<PersonRecognizer> names(
        new (std::nothrow) PersonRecognizer(m_segmenter.get(), m_charFreq.get(), &m_dicts));
    if (!names) {
        WS_IMP_ERROR("new PersonRecognizer fail!\n");
        return false;
    }
    if (!names->init(config, _bufferIndex(WS_PROPERTY_PER_ME), _bufferIndex(WS_PROPERTY_PER_RULE))) {
        WS_IMP_ERROR("init person recognizer fail!\n");
        return false;
    }
    m_recognizers.push_back(std::move(names));
    return true;
}

bool WsSegmenterImp::_createOrgnizationRecognizer(const WsConfig& config) {
    std::unique_ptr<OrgnizationRecognizer> orgs(new (std::nothrow)
                                                    OrgnizationRecognizer(m_segmenter.get()));
    if (!orgs) {
        WS_IMP_ERROR("new OrganizationRecognizer fail!\n");
        return false;
    }
    if (!orgs->init(config, _bufferIndex(WS_PROPERTY_ORG))) {
        WS_IMP_ERROR("init org recognizer fail!\n");
        return false;
    }
    m_recognizers.push_back(std::move(orgs));
    return true;
}

bool WsSegmenterImp::_createPhraseCorrecter(const WsConfig& config) {
    std::unique_ptr<CorrectPhraseDict> phrases(
        newStage<CorrectPhraseDict>("allocate memory fail!\n"));
    if (!phrases) return false;
    const std::string path = config.getString("CORRECT_PHRASE_DICT", "");
    if (phrases->loadDict(path.c_str()) != 0) {
        WS_IMP_ERROR("load correct-phrase-dict : %s fail!\n", path.c_str());
        return false;
    }
    WS_IMP_DEBUG("load correct-phrase-dict : %s success!\n", path.c_str());
    std::unique_ptr<PhraseCorrecter> correcter(
        newStage<PhraseCorrecter>("new PhraseCorrecter fail!\n", &m_dicts, phrases.get()));
    if (!correcter) return false;
    m_correctPhrases = std::move(phrases);
    m_revisers.push_back(std::move(correcter));
    return true;
}

bool WsSegmenterImp::_loadPlugIns(const WsConfig& config) {
    for (const std::string& path : config.reviserPlugIns)
        if (!_loadPlugIn(path, "createReviser", m_revisers)) return false;
    for (const std::string& path : config.preProcessPlugIns)
        if (!_loadPlugIn(path, "createTextProcessor", m_preProcessors)) return false;
    for (const std::string& path : config.postProcessPlugIns)
        if (!_loadPlugIn(path, "createTextProcessor", m_postProcessors)) return false;
    return true;
}

template <typename Stage>
bool WsSegmenterImp::_loadPlugIn(const std::string& path, const char* factory,
                                 std::vector<std::unique_ptr<Stage> >& list) {
    PlugInLibrary library;
    std::string error;
    if (!library.open(path.c_str(), error)) {
        WS_IMP_ERROR("%s", error.c_str());
        return false;
    }
    void* create = library.symbol(factory, error);
    if (create == nullptr) {
        WS_IMP_ERROR("There isn't the function %s in dll", factory);
        return false;
    }
    std::unique_ptr<Stage> stage(reinterpret_cast<Stage* (*)()>(create)());
    if (!stage) {
        WS_IMP_ERROR("%s of %s returned no object\n", factory, path.c_str());
        return false;
    }
    m_plugIns.push_back(std::move(library));
    list.push_back(std::move(stage));
    WS_IMP_DEBUG("load plug-in : %s success!\n", path.c_str());
    return true;
}

WS_HOT bool WsSegmenterImp::_doSegment() {
    for (auto& p : m_preProcessors) {
        if (p->doPreProcess(m_seg) != 0) return false;
    }
    for (auto& r : m_recognizers) r->doRecognize(m_seg);
    m_segmenter->doSegment(m_seg, 1, m_seg.resultByDict.valid != 0 ? 2 : 0);
    for (auto& r : m_revisers) r->doRevise(m_seg);
    if (m_tagger) m_tagger->annotate(m_seg);
    for (auto& p : m_postProcessors) p->doPostProcess(m_seg);
    return true;
}

// Rich output wants user values that only a dictionary set loaded for rich
// information has; said once per init, not for every text.
bool WsSegmenterImp::_wantUserValues() {
    if ((m_outType != 1 && m_outType != 2) || m_config.enableWordRichInfo) return true;
    if (!m_richInfoLogged) WS_IMP_ERROR("please load rich info dictionary first");
    m_richInfoLogged = true;
    return false;
}

WS_HOT void WsSegmenterImp::_appendWords(std::vector<WORD_T>& words, bool userValues) {
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

// A chunk that a pre-processor ends (a text of spaces only, say) has no words.
WS_HOT bool WsSegmenterImp::_segmentUtf16(const unsigned short* text, unsigned int len,
                                          std::vector<WORD_T>& words) {
    words.clear();
    if (len == 0) return true;
    if (len <= kChunkSize) {
        m_chunks.assign(1, CHUNK_T{text, len});
    } else {
        m_chunker.getChunks(text, len, m_chunks);
    }
    const bool userValues = _wantUserValues() && !m_skipUserValues;
    for (const CHUNK_T& chunk : m_chunks) {
        growTo(m_spaceFree, chunk.len);
        growTo(m_normalized, chunk.len);
        if (!m_seg.init(chunk.text, m_spaceFree.data(), m_normalized.data(), chunk.len))
            return false;
        if (!_doSegment()) continue;
        const size_t first = words.size();
        _appendWords(words, userValues);
        if (m_spaceProcessor != nullptr)
            m_spaceProcessor->restoreSpace(m_seg, words, static_cast<unsigned int>(first));
    }
    return true;
}

WS_HOT bool WsSegmenterImp::_toUtf16(const char* utf8, unsigned int len, unsigned int& units) {
    units = 0;
    if (utf8 == nullptr || len == 0) return true;
    growTo(m_utf16, static_cast<size_t>(len) + 1);
    const int n = EncodeConverter::utf8ToUtf16(reinterpret_cast<const unsigned char*>(utf8), len,
                                               m_utf16.data(), m_utf16.size());
    if (n <= 0) return false;
    units = static_cast<unsigned int>(n);
    return true;
}

WS_HOT bool WsSegmenterImp::segment(const unsigned short* text, unsigned int len,
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

WS_HOT bool WsSegmenterImp::segment(const char* utf8, unsigned int len,
                                    std::vector<std::vector<WORD_UTF8_T> >& results) {
    if (!m_ready) return false;
    try {
        m_words.resize(1);
        unsigned int units = 0;
        if (!_toUtf16(utf8, len, units) || !_segmentUtf16(m_utf16.data(), units, m_words[0]))
            return false;
        results.resize(1);
        m_utf8Results.transform(m_words[0], results[0]);
        return true;
    } catch (const std::bad_alloc&) {
        WS_IMP_ERROR("allocate memory fail!");
        return false;
    }
}

WS_HOT bool WsSegmenterImp::segmentWords(const unsigned short* text, unsigned int len,
                                         std::vector<WORD_T>& words) {
    if (!m_ready) return false;
    try {
        const CallSwitch skip(m_skipUserValues, true);
        return _segmentUtf16(text, text != nullptr ? len : 0, words);
    } catch (const std::bad_alloc&) {
        WS_IMP_ERROR("allocate memory fail!");
        return false;
    }
}

WS_HOT bool WsSegmenterImp::segment(const unsigned short* text, unsigned int len,
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

WS_HOT const char* WsSegmenterImp::segment(const char* utf8, unsigned int len, int outType) {
    if (!m_ready) return nullptr;
    try {
        bool ok = false;
        {
            const CallSwitch types(m_wantTypes, outType != 0);
            const CallSwitch skip(m_skipUserValues, true);
            m_words.resize(1);
            unsigned int units = 0;
            ok = _toUtf16(utf8, len, units) && _segmentUtf16(m_utf16.data(), units, m_words[0]);
        }
        if (!ok) return nullptr;
        const int skipped =
            outType == 0 ? m_text.renderPlain(m_words[0], m_spaceProcessor != nullptr, m_tagger.get())
                         : m_text.renderWeighted(m_words[0], m_properties);
        for (int i = 0; i < skipped; ++i) WS_IMP_ERROR("utf16 to utf8 fail!\n");
        return m_text.c_str();
    } catch (const std::bad_alloc&) {
        WS_IMP_ERROR("allocate memory fail!");
        return nullptr;
    }
}

const char* WsSegmenterImp::getTagName(unsigned char tag) {
    return m_tagger ? m_tagger->getTagName(tag) : nullptr;
}

int WsSegmenterImp::getTagId(const char* name) {
    return m_trigramTagger != nullptr ? m_trigramTagger->getTagId(name) : -1;
}

const char* WsSegmenterImp::getTypeName(short type) { return m_properties.getName(type); }

short WsSegmenterImp::getTypeId(const char* name) { return m_properties.getId(name); }

int WsSegmenterImp::getWordId(const unsigned short* word, unsigned int len) {
    if (!m_ready || word == nullptr) return -1;
    return m_dicts.getWordId(word, len, kAllDicts);
}

int WsSegmenterImp::getWordId(const char* utf8, unsigned int len) {
    if (!m_ready) return -1;
    unsigned int n = 0;
    if (!_toUtf16(utf8, len, n) || n == 0) return -1;
    return m_dicts.getWordId(m_utf16.data(), n, kAllDicts);
}

}  // namespace ws
