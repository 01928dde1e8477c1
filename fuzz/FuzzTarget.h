#ifndef ZEG_FUZZ_FUZZTARGET_H
#define ZEG_FUZZ_FUZZTARGET_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// What every fuzz target defines. The entry takes any bytes and returns 0;
// a crash, a sanitizer report or a hang is the finding.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace zeg_fuzz {

// Inputs the target makes itself (binary files built with the library's
// own writers); empty for targets whose seeds are committed text.
std::vector<std::string> builtInSeeds();

}  // namespace zeg_fuzz

#endif
