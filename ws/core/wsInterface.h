#ifndef ZEG_WS_CORE_WSINTERFACE_H
#define ZEG_WS_CORE_WSINTERFACE_H

#include <memory>
#include <vector>

#include "ws/core/wsExport.h"
#include "ws/core/wsWordRecord.h"

namespace ws {

class WsConfig;
class WsSegmenterImp;

// The interface version.
WS_EXPORT int wsVersion();

// The word segmenter's public face. init builds everything the configuration
// file asks for (dictionaries, algorithm, recognisers, processors, tagger,
// plug-ins); segment runs the pipeline over one text. Lengths of UTF-16
// text count code units, of UTF-8 text bytes. Word records point into the
// caller's text or into buffers owned by this object, valid until the next
// call. Not copyable. Thread safety: one text at a time per object (it
// keeps working buffers); separate objects are independent.
class WS_EXPORT WsSegmenter {
public:
    WsSegmenter();
    virtual ~WsSegmenter();
    WsSegmenter(const WsSegmenter&) = delete;
    WsSegmenter& operator=(const WsSegmenter&) = delete;

    // False, with the segmenter's log messages, when any step fails.
    bool init(const char* configPath);
    bool init(const WsConfig* config);

    // Every result level (this build computes one); the last one holds the
    // final word sequence in text order. False when the pipeline fails or a
    // non-empty UTF-8 text yields no code unit (results then undefined). A
    // text that a pre-processor ends (only spaces, with spaces removed) gives
    // no words and true.
    bool segment(const unsigned short* text, unsigned int len,
                 std::vector<std::vector<WORD_T> >& results);
    bool segment(const char* utf8, unsigned int len,
                 std::vector<std::vector<WORD_UTF8_T> >& results);
    // The first result only.
    bool segment(const unsigned short* text, unsigned int len, std::vector<WORD_T>& result);
    bool segment(const char* utf8, unsigned int len, std::vector<WORD_UTF8_T>& result);
    // The result as text: each word followed by one blank (and "/tag" before
    // it when tags are shown). Where spaces were removed before segmenting,
    // each word is printed as it stands in the caller's text. outType 0 is
    // the plain form, any other the weighted one ("[|/type@weight ... |]").
    // Owned by this object, valid until the next call; null on failure.
    const char* segment(const char* utf8, unsigned int len, int outType);
    // segment(text, len, words) without the user values (usrValue null,
    // usrValueLen 0), for callers that read only the words: the user-value
    // look-up is a good part of a short text's cost.
    bool segmentWords(const unsigned short* text, unsigned int len, std::vector<WORD_T>& words);

    // This build computes one result level (SEGMENT_RESULT_NUM 0 or 1), so
    // the coarsest and the finest cut are both that result: these return
    // what segment(text, len, result) returns.
    bool segmentMax(const unsigned short* text, unsigned int len, std::vector<WORD_T>& result);
    bool segmentMax(const char* utf8, unsigned int len, std::vector<WORD_UTF8_T>& result);
    bool segmentMin(const unsigned short* text, unsigned int len, std::vector<WORD_T>& result);
    bool segmentMin(const char* utf8, unsigned int len, std::vector<WORD_UTF8_T>& result);

    // Conversions with the segmenter's own UTF-8/UTF-16 rules; return the
    // units (code units, bytes) written.
    int utf8ToUtf16(const char* utf8, unsigned int len, unsigned short* out, unsigned int outSize);
    int utf16ToUtf8(const unsigned short* text, unsigned int len, char* out, unsigned int outSize);

    // Part-of-speech tag names and ids (through the tagger), word type names
    // and ids (through the property table), dictionary word ids (-1 = none).
    const char* getTagName(unsigned char tag);
    int getTagId(const char* name);
    const char* getTypeName(short type);
    short getTypeId(const char* name);
    int getWordId(const unsigned short* word, unsigned int len);
    int getWordId(const char* utf8, unsigned int len);

    // The output type decides whether words get their user values (0 always;
    // 1 and 2 only with ENABLE_WORD_RICH_INFO). init sets it from OUT_TYPE.
    void setOutType(int outType);
    // Stored only: this build has one segmentation type (0; init refuses
    // other SEG_TYPE values).
    void setSegType(int segType);

private:
    std::unique_ptr<WsSegmenterImp> m_imp;
};

}  // namespace ws

#endif
