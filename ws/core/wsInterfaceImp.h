#ifndef ZEG_WS_CORE_WSINTERFACEIMP_H
#define ZEG_WS_CORE_WSINTERFACEIMP_H

#include <memory>
#include <string>
#include <vector>

#include "ws/algo/wsChunker.h"
#include "ws/core/wsChunk.h"
#include "ws/core/wsPropertyDict.h"
#include "ws/core/wsRecognizer.h"
#include "ws/core/wsReviser.h"
#include "ws/core/wsSegmenter.h"
#include "ws/core/wsTextProcessor.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsWordRecord.h"
#include "ws/core/wsWsConfig.h"
#include "ws/dict/wsCharFreqDict.h"
#include "ws/dict/wsDictSet.h"

namespace ws {

// The segmenter behind WsSegmenter: built from a configuration, it runs the
// pipeline (pre-processors, recognisers, segmenter, revisers, post-
// processors) over one TextSegmentation per call. Texts longer than the
// chunk size are segmented chunk by chunk. Every working buffer grows to the
// longest text seen and is reused, so a warm segmenter allocates nothing in
// its core. Not copyable. Thread safety: one text at a time.
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
    bool segment(const char* utf8, unsigned int len, std::vector<WORD_UTF8_T>& result);
    const char* segment(const char* utf8, unsigned int len, int outType);

    bool segmentMax(const unsigned short* text, unsigned int len, std::vector<WORD_T>& result);
    bool segmentMax(const char* utf8, unsigned int len, std::vector<WORD_UTF8_T>& result);
    bool segmentMin(const unsigned short* text, unsigned int len, std::vector<WORD_T>& result);
    bool segmentMin(const char* utf8, unsigned int len, std::vector<WORD_UTF8_T>& result);

    const char* getTagName(unsigned char tag);
    int getTagId(const char* name);
    const char* getTypeName(short type);
    short getTypeId(const char* name);
    int getWordId(const unsigned short* word, unsigned int len);
    int getWordId(const char* utf8, unsigned int len);

    void setOutType(int outType) { m_outType = outType; }
    void setSegType(int segType) { m_segType = segType; }

private:
    void _release();
    bool _loadDicts(const WsConfig& config);
    bool _loadChunker(const WsConfig& config);
    bool _loadPropertyDict(const std::string& path);
    bool _createSegmenter(const WsConfig& config);
    void _addNewWordBuffers(const WsConfig& config);
    bool _createRecognizers(const WsConfig& config);
    bool _checkUnavailableStages(const WsConfig& config);
    // Runs the pipeline over m_seg; false when a pre-processor stops it.
    bool _doSegment();
    bool _wantUserValues();
    void _appendWords(std::vector<WORD_T>& words, bool userValues);
    bool _segmentUtf16(const unsigned short* text, unsigned int len, std::vector<WORD_T>& words);
    // Decodes into m_utf16; returns the code units.
    unsigned int _toUtf16(const char* utf8, unsigned int len);
    bool _appendUtf8(const unsigned short* text, unsigned int units);
    void _transformUtf16ToUtf8(const std::vector<WORD_T>& words, std::vector<WORD_UTF8_T>& out);
    void _transformResult(const std::vector<WORD_T>& words);
    void _transformResult_wordtypeWeight(const std::vector<WORD_T>& words);

    bool m_ready = false;
    WsConfig m_config;
    WsDictSet m_dicts;
    std::unique_ptr<CharFreqDict> m_charFreq;
    TextSegmentation m_seg;
    std::unique_ptr<Segmenter> m_segmenter;
    bool m_unigram = false;  // the segmenter is a UnigramSegmenter
    std::vector<std::unique_ptr<TextProcessor> > m_preProcessors;
    std::vector<std::unique_ptr<Recognizer> > m_recognizers;
    std::vector<std::unique_ptr<Reviser> > m_revisers;
    std::vector<std::unique_ptr<TextProcessor> > m_postProcessors;
    Chunker m_chunker;
    PropertyDict m_properties;
    int m_outType = 0;
    int m_segType = 0;
    bool m_showTags = false;
    bool m_wantTypes = false;  // fill word types (for the weighted text form)

    // Reused working buffers.
    std::vector<unsigned short> m_spaceFree;
    std::vector<unsigned short> m_normalized;
    std::vector<CHUNK_T> m_chunks;
    std::vector<unsigned short> m_utf16;
    std::vector<char> m_utf8;
    std::vector<std::vector<WORD_T> > m_words;
    std::vector<std::vector<WORD_UTF8_T> > m_utf8Words;
    std::string m_text;
};

}  // namespace ws

#endif
