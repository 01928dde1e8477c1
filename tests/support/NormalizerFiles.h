#ifndef ZEG_TESTS_SUPPORT_NORMALIZERFILES_H
#define ZEG_TESTS_SUPPORT_NORMALIZERFILES_H

#include <string>

#include "support/DefaultData.h"
#include "support/TempDir.h"

namespace zeg_test {

// A normaliser configuration for one test: the default segmenter and word
// lists of the test's own, written in GBK from the UTF-8 given here.
struct NormalizerFiles {
    std::string wsConfig = ZEG_SEGMENTER_CONFIG;
    std::string stopWords;         // white-space separated
    std::string synonyms;          // lines "word\x01replacement\n"
    std::string stopFile;          // when set, used instead of writing stopWords
    std::string synonymsFile;      // when set, used instead of writing synonyms
    std::string maxInputLength = "10000";

    // Writes the lists and normalizer.ini into `dir`; returns the ini's path.
    std::string write(const TempDir& dir) const;
};

}  // namespace zeg_test

#endif
