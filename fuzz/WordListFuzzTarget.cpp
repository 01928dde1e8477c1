// libFuzzer entry: the normaliser's stop-word and synonym loaders, each
// given the input as its file; the lists are emptied after every input.
#include <string>
#include <vector>

#include "fuzz/FuzzTarget.h"
#include "fuzz/MemoryFile.h"
#include "normalize/WordLists.h"

std::vector<std::string> zeg_fuzz::builtInSeeds() {
    return {};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const zeg_fuzz::MemoryFile file(data, size);
    if (file.path().empty()) return 0;
    normalize::loadStopFile(file.path());
    normalize::loadSynonymsFile(file.path());
    volatile size_t sum = 0;
    for (const std::string& w : normalize::gStopWords) sum = sum + w.size();
    for (const auto& s : normalize::gSynonymsWords) sum = sum + s.first.size() + s.second.size();
    normalize::gStopWords.clear();
    normalize::gSynonymsWords.clear();
    normalize::wordListsChanged();
    return 0;
}
