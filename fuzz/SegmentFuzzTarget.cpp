// libFuzzer entry: the segmenter end to end over the default data, through
// the facade's UTF-8 and UTF-16 calls. The first byte picks the text form
// of the output and the configuration (the default one, or the one with
// name recognisers and the tagger on); the rest is the text, as UTF-8 bytes
// and as UTF-16 code units (unpaired surrogates and all).
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/FuzzTarget.h"
#include "support/TempDir.h"
#include "ws/core/wsInterface.h"

std::vector<std::string> zeg_fuzz::builtInSeeds() {
    return {};
}

namespace {

// Every byte a record points at, so that the sanitizer sees a record
// reaching past its buffer.
template <class Word>
void readWords(const std::vector<Word>& words) {
    volatile unsigned sum = 0;
    for (const Word& w : words) {
        for (unsigned i = 0; i < w.wordLen; ++i) sum = sum + static_cast<unsigned>(w.word[i]);
        for (unsigned i = 0; i < w.orgWordLen && w.orgWord; ++i)
            sum = sum + static_cast<unsigned>(w.orgWord[i]);
        for (unsigned i = 0; i < w.usrValueLen && w.usrValue; ++i) sum = sum + w.usrValue[i];
        for (const ws::SemItem& item : w.semItems)
            sum = sum + item.offset + item.length;
    }
}

std::unique_ptr<ws::WsSegmenter> segmenterFor(const std::string& config) {
    auto s = std::make_unique<ws::WsSegmenter>();
    if (!s->init(config.c_str())) {
        std::fprintf(stderr, "fuzz_segment: cannot set up %s\n", config.c_str());
        std::abort();
    }
    return s;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Built once and kept for the process. The names configuration is read
    // whole by init, before its temporary directory goes.
    static const std::unique_ptr<ws::WsSegmenter> segmenters[] = {
        segmenterFor(ZEG_FUZZ_DATA_DIR "/segmenter.conf"),
        segmenterFor(zeg_test::TempDir().write(
            "names.conf", "#include \"" ZEG_FUZZ_DATA_DIR "/segmenter-names.conf\"\n"
                          "ENABLE_POS_TAGGER = 1\n"))};
    if (size < 1) return 0;
    const unsigned flags = data[0];
    ws::WsSegmenter* const segmenter = segmenters[(flags >> 1) & 1].get();
    const char* utf8 = reinterpret_cast<const char*>(data + 1);
    const auto len = static_cast<unsigned>(size - 1);

    std::vector<std::vector<ws::WORD_UTF8_T>> utf8Results;
    if (segmenter->segment(utf8, len, utf8Results))
        for (const auto& level : utf8Results) readWords(level);
    if (const char* text = segmenter->segment(utf8, len, static_cast<int>(flags & 1)))
        (void)std::strlen(text);
    std::vector<ws::WORD_UTF8_T> utf8Words;
    if (segmenter->segmentMin(utf8, len, utf8Words)) readWords(utf8Words);
    segmenter->getWordId(utf8, len);

    std::vector<unsigned short> units(len / 2);
    if (!units.empty()) std::memcpy(units.data(), utf8, units.size() * 2);
    std::vector<std::vector<ws::WORD_T>> results;
    if (segmenter->segment(units.data(), static_cast<unsigned>(units.size()), results))
        for (const auto& level : results) readWords(level);
    std::vector<ws::WORD_T> words;
    if (segmenter->segmentMax(units.data(), static_cast<unsigned>(units.size()), words))
        readWords(words);

    std::vector<char> back(units.size() * 3 + 1);
    segmenter->utf16ToUtf8(units.data(), static_cast<unsigned>(units.size()), back.data(),
                           static_cast<unsigned>(back.size()));
    return 0;
}
