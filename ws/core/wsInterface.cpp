#include "ws/core/wsInterface.h"

#include <new>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsInterfaceImp.h"
#include "ws/core/wsWsLogger.h"

namespace ws {

int wsVersion() { return 0x2000000; }

WsSegmenter::WsSegmenter() = default;

WsSegmenter::~WsSegmenter() = default;

bool WsSegmenter::init(const char* configPath) {
    m_imp.reset(new (std::nothrow) WsSegmenterImp());
    if (!m_imp) {
        WsLogger::getWsLogger()->errorPos("wsInterface.cpp", __LINE__, "allocate memory fail!");
        return false;
    }
    return m_imp->init(configPath);
}

bool WsSegmenter::init(const WsConfig* config) {
    m_imp.reset(new (std::nothrow) WsSegmenterImp());
    if (!m_imp) {
        WsLogger::getWsLogger()->errorPos("wsInterface.cpp", __LINE__, "allocate memory fail!");
        return false;
    }
    return m_imp->init(config);
}

bool WsSegmenter::segment(const unsigned short* text, unsigned int len,
                          std::vector<std::vector<WORD_T> >& results) {
    return m_imp && m_imp->segment(text, len, results);
}

bool WsSegmenter::segment(const char* utf8, unsigned int len,
                          std::vector<std::vector<WORD_UTF8_T> >& results) {
    return m_imp && m_imp->segment(utf8, len, results);
}

bool WsSegmenter::segment(const unsigned short* text, unsigned int len,
                          std::vector<WORD_T>& result) {
    return m_imp && m_imp->segment(text, len, result);
}

bool WsSegmenter::segment(const char* utf8, unsigned int len, std::vector<WORD_UTF8_T>& result) {
    return m_imp && m_imp->segment(utf8, len, result);
}

bool WsSegmenter::segmentWords(const unsigned short* text, unsigned int len,
                               std::vector<WORD_T>& words) {
    return m_imp && m_imp->segmentWords(text, len, words);
}

const char* WsSegmenter::segment(const char* utf8, unsigned int len, int outType) {
    return m_imp ? m_imp->segment(utf8, len, outType) : nullptr;
}

bool WsSegmenter::segmentMax(const unsigned short* text, unsigned int len,
                             std::vector<WORD_T>& result) {
    return m_imp && m_imp->segment(text, len, result);
}

bool WsSegmenter::segmentMax(const char* utf8, unsigned int len,
                             std::vector<WORD_UTF8_T>& result) {
    return m_imp && m_imp->segment(utf8, len, result);
}

bool WsSegmenter::segmentMin(const unsigned short* text, unsigned int len,
                             std::vector<WORD_T>& result) {
    return m_imp && m_imp->segment(text, len, result);
}

bool WsSegmenter::segmentMin(const char* utf8, unsigned int len,
                             std::vector<WORD_UTF8_T>& result) {
    return m_imp && m_imp->segment(utf8, len, result);
}

int WsSegmenter::utf8ToUtf16(const char* utf8, unsigned int len, unsigned short* out,
                             unsigned int outSize) {
    if (utf8 == nullptr || out == nullptr) return 0;
    return EncodeConverter::utf8ToUtf16(reinterpret_cast<const unsigned char*>(utf8), len, out,
                                        outSize);
}

int WsSegmenter::utf16ToUtf8(const unsigned short* text, unsigned int len, char* out,
                             unsigned int outSize) {
    if (text == nullptr || out == nullptr) return 0;
    return EncodeConverter::utf16ToUtf8(text, len, reinterpret_cast<unsigned char*>(out), outSize);
}

const char* WsSegmenter::getTagName(unsigned char tag) {
    return m_imp ? m_imp->getTagName(tag) : nullptr;
}

int WsSegmenter::getTagId(const char* name) { return m_imp ? m_imp->getTagId(name) : -1; }

const char* WsSegmenter::getTypeName(short type) {
    return m_imp ? m_imp->getTypeName(type) : nullptr;
}

short WsSegmenter::getTypeId(const char* name) { return m_imp ? m_imp->getTypeId(name) : -1; }

int WsSegmenter::getWordId(const unsigned short* word, unsigned int len) {
    return m_imp ? m_imp->getWordId(word, len) : -1;
}

int WsSegmenter::getWordId(const char* utf8, unsigned int len) {
    return m_imp ? m_imp->getWordId(utf8, len) : -1;
}

void WsSegmenter::setOutType(int outType) {
    if (m_imp) m_imp->setOutType(outType);
}

void WsSegmenter::setSegType(int segType) {
    if (m_imp) m_imp->setSegType(segType);
}

}  // namespace ws
