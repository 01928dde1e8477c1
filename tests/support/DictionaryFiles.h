#ifndef ZEG_TESTS_SUPPORT_DICTIONARYFILES_H
#define ZEG_TESTS_SUPPORT_DICTIONARYFILES_H

#include <string>

#include "support/TempDir.h"

namespace zeg_test {

// Compiles `words` (zeg-dict core's input format) into `dir`/NAME.dict,
// extending `dir`/properties.txt. Returns "" on success, else the
// compiler's messages.
std::string compileDictionary(const TempDir& dir, const std::string& name,
                              const std::string& words);

}  // namespace zeg_test

#endif
