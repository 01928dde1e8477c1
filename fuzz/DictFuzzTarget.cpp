// libFuzzer entry: arbitrary bytes loaded as a dictionary every way there
// is (in place, from a stream, mapped, in a dictionary set; as a
// part-of-speech dictionary; as a phrase dictionary from a stream and a
// file; as family names and character counts), then looked up.
// Nothing may crash or read outside the bytes.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/DictSeeds.h"
#include "fuzz/FuzzTarget.h"
#include "ws/core/wsFile.h"
#include "ws/core/wsWsLogger.h"
#include "ws/dict/wsBaseDict.h"
#include "ws/dict/wsCharFreqDict.h"
#include "ws/dict/wsDictSet.h"
#include "ws/dict/wsFamilyNameDict.h"
#include "ws/dict/wsMaxentDict.h"
#include "ws/dict/wsPhraseDict.h"
#include "ws/pos/wsTrigramPosDict.h"

namespace {

// Keys: the seed words, and the input's last bytes as one more.
std::vector<std::string> keysFor(const uint8_t* data, size_t size) {
    std::vector<std::string> keys = zeg_fuzz::seedKeys();
    const size_t n = size < 40 ? size : 40;
    keys.emplace_back(reinterpret_cast<const char*>(data + size - n), n);
    return keys;
}

void readValue(const ws::WsCoreDict& d, int id) {
    unsigned char* value = nullptr;
    float weight = 0;
    const int n = d.getValue(id, &value, weight);
    volatile unsigned sum = 0;
    for (int i = 0; i < n; ++i) sum = sum + value[i];
    std::vector<int> gran;
    std::vector<short> props;
    std::vector<float> weights;
    std::vector<ws::SemItem> sems;
    d.getAllInfo(value, gran, props, weights, sems);
    unsigned char* usr = nullptr;
    const int u = d.getUsrValue(id, &usr);
    for (int i = 0; i < u; ++i) sum = sum + usr[i];
}

void exercise(const ws::WsCoreDict& d, const std::vector<std::string>& keys) {
    ws::TrieBase::MatchInfo out[32];
    for (const std::string& k : keys) {
        const unsigned len = static_cast<unsigned>(k.size());
        d.match(k.data(), len);
        const int n = d.matchAll(k.data(), len, out, 32);
        for (int i = 0; i < n; ++i) readValue(d, out[i].value);
        readValue(d, d.getWordId(reinterpret_cast<const unsigned short*>(k.data()), len / 2));
    }
}

void exerciseBase(const ws::BaseDict& d, const std::vector<std::string>& keys) {
    for (const std::string& k : keys) {
        const char* entry = d.match(k.data(), static_cast<unsigned>(k.size()));
        if (entry != nullptr) ws::DATDict::recordWeight(entry);
    }
}

void exerciseSet(const std::string& path, const std::vector<std::string>& keys) {
    ws::WsDictSet set;
    if (set.loadDict(path, path, {path, path}) != 0) return;
    ws::TrieBase::MatchInfo out[32];
    for (const std::string& k : keys) {
        const unsigned len = static_cast<unsigned>(k.size());
        set.match(k.data(), len, 7);
        const int n = set.matchAll(k.data(), len, out, 32, 7);
        for (int i = 0; i < n; ++i) {
            unsigned char* usr = nullptr;
            set.getUsrValue(out[i].value, &usr);
        }
        set.getWordId(reinterpret_cast<const unsigned short*>(k.data()), len / 2, 7);
    }
}

// Phrase lookups under two cuts (all single characters; pairs) at every
// word of the seed words run together (where the seed phrases begin) and
// in each key, reading every record they answer with.
void lookUpPhrases(const ws::PhraseDict& d, const unsigned short* text, unsigned n) {
    static const std::vector<char> ones(64, 1), twos(64, 2);
    volatile int sum = 0;
    d.match(text, n < 64 ? n : 64);
    for (const std::vector<char>* cut : {&ones, &twos}) {
        const int at = d.matchPosition(text, n < 64 ? n : 64, cut->data());
        if (at < 0) continue;
        const char* record = d.getBuffer() + at;
        for (int i = 0; i <= record[0]; ++i) sum = sum + record[i];
    }
}

void exercisePhrases(const ws::PhraseDict& d, const std::vector<std::string>& keys) {
    std::string joined;
    for (const std::string& k : zeg_fuzz::seedKeys()) joined += k;
    const auto* text = reinterpret_cast<const unsigned short*>(joined.data());
    unsigned at = 0;
    for (const std::string& k : zeg_fuzz::seedKeys()) {
        lookUpPhrases(d, text + at, static_cast<unsigned>(joined.size() / 2) - at);
        at += static_cast<unsigned>(k.size() / 2);
    }
    for (const std::string& k : keys) {
        const std::string key = k + std::string(k.size() % 2, '\0');  // whole code units
        lookUpPhrases(d, reinterpret_cast<const unsigned short*>(key.data()),
                      static_cast<unsigned>(key.size() / 2));
    }
}

void exerciseMaxent(const ws::MaxentDict& d, const std::vector<std::string>& keys) {
    volatile unsigned sum = 0;
    for (const std::string& k : keys) {
        for (unsigned len : {2u, 4u}) {
            if (k.size() < len) continue;
            const unsigned char* r = d.match(k.data(), len);
            for (int i = 0; i < ws::MaxentDict::kRecordSize; ++i) sum = sum + r[i];
        }
    }
    for (int s : {0, ws::MaxentDict::kCodeSums - 1}) sum = sum + static_cast<unsigned>(d.codeSum(s) > 1);
    for (unsigned i = 0; i < 4; ++i) sum = sum + d[i][0];
}

// A part-of-speech dictionary: the tag lists of the seed words, each
// looked up as the tagger does (with property bits that reach the guesses).
void exercisePos(ws::TrigramPosDict& d, const std::vector<std::string>& keys) {
    volatile float sum = 0;
    for (const std::string& k : keys) {
        const auto* word = reinterpret_cast<const unsigned short*>(k.data());
        const int len = static_cast<int>(k.size() / 2);
        ws::WORD_T rec(word, static_cast<unsigned>(len), nullptr, 0, ws::WS_PROPERTY_PER_ME, 0, -1,
                       nullptr, 0, 0, -1);
        const char* list = d.getWordInfoBuf(word, len, &rec);
        for (int i = 0; i < ws::TrigramPosDict::getNumTags(list); ++i) {
            sum = sum + ws::TrigramPosDict::getProbAt(list, i);
            d.getTagName(ws::TrigramPosDict::getTagIdAt(list, i));
        }
    }
    d.getTagId("n");
}

// Character counts over the seed words' characters. One table for the
// process: it is large, and a load only overwrites entries.
void exerciseCharFreq(const std::string& path, const std::vector<std::string>& keys) {
    static ws::CharFreqDict freq;
    freq.loadText(path.c_str());
    volatile float sum = 0;
    for (const std::string& k : keys) {
        const auto* units = reinterpret_cast<const unsigned short*>(k.data());
        for (size_t i = 0; i < k.size() / 2; ++i)
            sum = sum + freq.getAloneCharProb(units[i]) + freq.getCharInWordProb(units[i]) +
                  freq.getFirstCharProb(units[i]) + freq.getMiddleCharProb(units[i]) +
                  freq.getFinalCharProb(units[i]);
    }
}

// The bytes as a file that can be mapped: an anonymous memory file.
std::string asFile(const uint8_t* data, size_t size, int& fd) {
    fd = memfd_create("fuzz-dict", MFD_CLOEXEC);
    if (fd < 0) return std::string();
    if (size > 0 && write(fd, data, size) != static_cast<ssize_t>(size)) return std::string();
    return "/proc/self/fd/" + std::to_string(fd);
}

}  // namespace

std::vector<std::string> zeg_fuzz::builtInSeeds() {
    return dictSeeds();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Failed loads are the norm here; their log lines are noise.
    static const bool quiet = ws::WsLogger::getWsLogger()->init("fuzz", "", 0, 0);
    (void)quiet;
    const std::vector<std::string> keys = keysFor(data, size);
    // A mapping is page-aligned: so is this copy, and nothing after it.
    std::vector<uint64_t> aligned(size / 8 + 1);
    if (size > 0) std::memcpy(aligned.data(), data, size);
    const char* buffer = reinterpret_cast<const char*>(aligned.data());
    const unsigned bufferSize = static_cast<unsigned>(size);

    ws::WsCoreDict inPlace;
    if (inPlace.loadDict(buffer, bufferSize) == 0) exercise(inPlace, keys);
    ws::BaseDict base;
    if (base.loadDict(buffer, bufferSize) == 0) exerciseBase(base, keys);

    ws::MaxentDict maxent;
    if (maxent.loadDict(buffer, bufferSize) == 0) exerciseMaxent(maxent, keys);

    if (ws::File f{fmemopen(const_cast<char*>(buffer), size > 0 ? size : 1, "rb")}) {
        ws::WsCoreDict fromStream;
        if (size > 0 && fromStream.loadDict(f.get()) == 0) exercise(fromStream, keys);
        std::rewind(f.get());
        ws::MaxentDict maxentStream;
        if (size > 0 && maxentStream.loadDict(f.get()) == 0) exerciseMaxent(maxentStream, keys);
        std::rewind(f.get());
        ws::FamilyNameDict family;
        if (size > 0) family.loadText(f.get(), 1.0f, 0.5f);
    }

    if (ws::File f{fmemopen(const_cast<char*>(buffer), size > 0 ? size : 1, "rb")}) {
        ws::PhraseDict phrases;
        if (size > 0 && phrases.loadDict(f.get()) == 0) exercisePhrases(phrases, keys);
    }

    ws::TrigramPosDict pos(nullptr);
    if (pos._loadFromMem(buffer, bufferSize) == 0) exercisePos(pos, keys);

    int fd = -1;
    const std::string path = asFile(data, size, fd);
    if (!path.empty()) {
        exerciseSet(path, keys);
        ws::PhraseDict phrases;
        phrases.dictVersion(path.c_str());
        if (phrases.loadDict(path.c_str()) == 0) exercisePhrases(phrases, keys);
        ws::MaxentDict mapped;
        if (mapped.loadDict(path.c_str()) == 0) exerciseMaxent(mapped, keys);
        ws::FamilyNameDict family;
        family.loadText(path.c_str(), 1.0f);
        exerciseCharFreq(path, keys);
    }
    ws::TrigramPosDict mappedPos(nullptr);
    if (!path.empty() && mappedPos.loadDict(path.c_str()) == 0) exercisePos(mappedPos, keys);
    if (fd >= 0) close(fd);
    return 0;
}
