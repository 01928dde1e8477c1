// libFuzzer entry: the normaliser end to end over the default data. The
// first byte is the mode (every bit combination, 0 included), the second
// chooses GBK or UTF-8 for the input and the output, the rest is the query.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/FuzzTarget.h"
#include "normalize/NormalizeIntf.h"

std::vector<std::string> zeg_fuzz::builtInSeeds() {
    return {};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static normalize::NormalizeIntf* const normalizer = [] {
        normalize::NormalizeIntf* n = normalize::NormalizeIntf::getInstance();
        if (!n->init(ZEG_FUZZ_DATA_DIR "/normalizer.ini")) {
            std::fprintf(stderr, "fuzz_normalize: no default data in " ZEG_FUZZ_DATA_DIR "\n");
            std::abort();
        }
        return n;
    }();
    if (size < 2) return 0;
    const int mode = data[0];
    const bool inputIsGbk = (data[1] & 1) != 0;
    const bool outputIsGbk = (data[1] & 2) != 0;
    const std::string query(reinterpret_cast<const char*>(data + 2), size - 2);
    std::string output;
    std::vector<std::string> words;
    normalizer->doNormalize(query, mode, output, words, inputIsGbk, outputIsGbk);
    volatile size_t sum = output.size();
    for (const std::string& w : words) sum = sum + w.size();
    return 0;
}
