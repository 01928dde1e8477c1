#include "ws/dict/wsFamilyNameDict.h"

#include <cstring>
#include <memory>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsFile.h"
#include "ws/core/wsWsLogger.h"

namespace ws {

namespace {

const char kSource[] = "wsFamilyNameDict";

}  // namespace

FamilyNameDict::FamilyNameDict() : m_bits(kBitBytes, 0xFF) {}

bool FamilyNameDict::loadText(std::FILE* f, float defaultFreq, float threshold) {
    return _load(f, "<stream>", defaultFreq, threshold);
}

bool FamilyNameDict::loadText(const char* path, float defaultFreq, float threshold) {
    File f;
    if (!f.openRegular(path, "r")) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "Can not open file '%s'",
                                          path != nullptr ? path : "");
        return false;
    }
    return _load(f.get(), path, defaultFreq, threshold);
}

bool FamilyNameDict::_load(std::FILE* f, const char* name, float defaultFreq, float threshold) {
    std::memset(m_bits.data(), 0, m_bits.size());
    if (f == nullptr) return false;
    WsLogger* log = WsLogger::getWsLogger();
    char line[kLineBuffer];
    char word[kLineBuffer];
    for (unsigned lineNo = 1; std::fgets(line, sizeof line, f) != nullptr; ++lineNo) {
        float freq = defaultFreq;
        int used = 0;
        // A line longer than the buffer comes in pieces; each is a line here.
        const int got = std::sscanf(line, "%1024s\t%f%n", word, &freq, &used);
        if (got < 1) {
            log->error("%s:%u: no name\n", name, lineNo);
            return false;
        }
        if (got == 2 && line[used + std::strspn(line + used, " \t\r\n")] != '\0') {
            log->error("%s:%u: more than two fields\n", name, lineNo);
            return false;
        }
        unsigned short c = 0;
        if (EncodeConverter::utf8ToUtf16(reinterpret_cast<const unsigned char*>(word),
                                         std::strlen(word), &c, 1) < 1 || c == 0) {
            log->error("%s:%u: the name does not convert to UTF-16\n", name, lineNo);
            return false;
        }
        if (freq >= threshold) setFamilyName(c);
    }
    return true;
}

void FamilyNameDict::checkFamilyName(const unsigned short* text, NewWordBuffer& buf,
                                     unsigned n) const {
    for (unsigned i = 0; i < n; ++i) {
        NewWordBuffer::Record& r = buf.words[i];
        if (r.len > 1 && !isChineseFamilyName(text[i])) r.len = 0;
    }
}

}  // namespace ws
