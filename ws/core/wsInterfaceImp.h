#ifndef ZEG_WS_CORE_WSINTERFACEIMP_H
#define ZEG_WS_CORE_WSINTERFACEIMP_H

#include <memory>
#include <string>
#include <vector>

#include "ws/algo/wsChunker.h"
#include "ws/core/wsChunk.h"
#include "ws/core/wsPlugInLibrary.h"
#include "ws/core/wsPosTagger.h"
#include "ws/core/wsPropertyDict.h"
#include "ws/core/wsRecognizer.h"
#include "ws/core/wsResultText.h"
#include "ws/core/wsReviser.h"
#include "ws/core/wsSegmenter.h"
#include "ws/core/wsTextProcessor.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsUtf8Results.h"
#include "ws/core/wsWordRecord.h"
#include "ws/core/wsWsConfig.h"
#include "ws/dict/wsCharFreqDict.h"
#include "ws/dict/wsCorrectPhraseDict.h"
#include "ws/dict/wsDictSet.h"

namespace ws {

class TrigramPosTagger;

class SpaceProcessor;

// The segmenter behind WsSegmenter: built from a configuration, it runs the
// pipeline (pre-processors, recognisers, segmenter, revisers, tagger, post-
// processors) over one TextSegmentation per call. Texts longer than the
// chunk size are segmented chunk by chunk. Every working buffer grows to the
// longest text seen and is reused, so a warm segmenter allocates nothing in
// its core. The optional stages come from one table (see the .cpp): a row
// names the switch, the stage and the member that creates it. Not copyable.
// Thread safety: one text at a time.
class WsSegmenterImp {
public:
    // Texts up to this many code units are never split.
    static const unsigned int kChunkSize = 4096;

    WsSegmenterImp();
    ~WsSegmenterImp();
    WsSegmenterImp(const WsSegmenterImp&) = delete;
    WsSegmenterImp& operator=(const WsSegmenterImp&) = delete;

    bool init(const char* configPath);
    bool init(const WsConfig* config);

    bool segment(const unsigned short* text, unsigned int len,
                 std::vector<std::vector<WORD_T> >& results);
    bool segment(const char* utf8, unsigned int len,
                 std::vector<std::vector<WORD_UTF8_T> >& results);
    bool segment(const unsigned short* text, unsigned int len, std::vector<WORD_T>& result);
    bool segmentWords(const unsigned short* text, unsigned int len, std::vector<WORD_T>& words);
    bool segment(const char* utf8, unsigned int len, std::vector<WORD_UTF8_T>& result);
    const char* segment(const char* utf8, unsigned int len, int outType);

    const char* getTagName(unsigned char tag);
    int getTagId(const char* name);
    const char* getTypeName(short type);
    short getTypeId(const char* name);
    int getWordId(const unsigned short* word, unsigned int len);
    int getWordId(const char* utf8, unsigned int len);

    void setOutType(int outType) { m_outType = outType; }
    void setSegType(int segType) { m_segType = segType; }

private:
    // One optional stage: created by `create` when `wanted` says its switch
    // is on (always, when `wanted` is null); refused, naming `switchName`,
    // when this build has no `create` for it.
    struct StageRow {
        const char* switchName;
        const char* stage;
        bool (*wanted)(const WsConfig&);
        bool unigramOnly;  // feeds the lattice's new-word buffers
        bool (WsSegmenterImp::*create)(const WsConfig&);
    };
    static const StageRow kStages[];

    void _release();
    bool _build();
    bool _loadDicts(const WsConfig& config);
    bool _loadChunker(const WsConfig& config);
    bool _loadPropertyDict(const std::string& path);
    bool _checkOptions(const WsConfig& config);
    bool _createSegmenter(const WsConfig& config);
    void _addNewWordBuffers(const WsConfig& config);
    bool _createStages(const WsConfig& config);
    int _bufferIndex(unsigned short prop) const;

    // Stage factories named by kStages.
    bool _createSpaceProcessor(const WsConfig& config);
    bool _createNormalizer(const WsConfig& config);
    bool _createNumberRecognizer(const WsConfig& config);
    bool _createPersonRecognizer(const WsConfig& config);
    bool _createOrgnizationRecognizer(const WsConfig& config);
    bool _createPosTagger(const WsConfig& config);
    bool _createPhraseCorrecter(const WsConfig& config);
    bool _loadPlugIns(const WsConfig& config);
    template <typename Stage>
    bool _loadPlugIn(const std::string& path, const char* factory,
                     std::vector<std::unique_ptr<Stage> >& list);

    // Runs the pipeline over m_seg; false when a pre-processor ends it.
    bool _doSegment();
    bool _wantUserValues();
    void _appendWords(std::vector<WORD_T>& words, bool userValues);
    bool _segmentUtf16(const unsigned short* text, unsigned int len, std::vector<WORD_T>& words);
    // Decodes into m_utf16; false when a non-empty text yields no code unit.
    bool _toUtf16(const char* utf8, unsigned int len, unsigned int& units);

    bool m_ready = false;
    WsConfig m_config;
    WsDictSet m_dicts;
    std::unique_ptr<CharFreqDict> m_charFreq;
    TextSegmentation m_seg;
    std::unique_ptr<Segmenter> m_segmenter;
    bool m_unigram = false;  // the segmenter is a UnigramSegmenter
    // Before the stages: the libraries must outlive the objects they made.
    std::vector<PlugInLibrary> m_plugIns;
    std::vector<std::unique_ptr<TextProcessor> > m_preProcessors;
    std::vector<std::unique_ptr<Recognizer> > m_recognizers;
    std::unique_ptr<CorrectPhraseDict> m_correctPhrases;  // before the revisers that read it
    std::vector<std::unique_ptr<Reviser> > m_revisers;
    std::unique_ptr<PosTagger> m_tagger;
    TrigramPosTagger* m_trigramTagger = nullptr;  // m_tagger, for getTagId
    std::vector<std::unique_ptr<TextProcessor> > m_postProcessors;
    SpaceProcessor* m_spaceProcessor = nullptr;  // in m_preProcessors; maps words back
    Chunker m_chunker;
    PropertyDict m_properties;
    int m_outType = 0;
    int m_segType = 0;
    bool m_wantTypes = false;     // fill word types (for the weighted text form)
    bool m_skipUserValues = false;  // words only rendered as text or read for their text
    bool m_richInfoLogged = false;

    // Reused working buffers.
    std::vector<unsigned short> m_spaceFree;
    std::vector<unsigned short> m_normalized;
    std::vector<CHUNK_T> m_chunks;
    std::vector<unsigned short> m_utf16;
    std::vector<std::vector<WORD_T> > m_words;
    std::vector<std::vector<WORD_UTF8_T> > m_utf8Words;
    Utf8Results m_utf8Results;
    ResultText m_text;
};

}  // namespace ws

#endif
