#ifndef ZEG_FUZZ_DICTSEEDS_H
#define ZEG_FUZZ_DICTSEEDS_H

#include <string>
#include <vector>

namespace zeg_fuzz {

// Valid dictionary files to start from: small core dictionaries (records
// with granularities, properties, semantic items and user values), an
// empty one, a BaseDict, a part-of-speech dictionary, a phrase dictionary,
// a person-name model, a family-name list and character counts.
std::vector<std::string> dictSeeds();

// The words the seeds hold, as UTF-16LE keys: the lookups worth trying.
const std::vector<std::string>& seedKeys();

}  // namespace zeg_fuzz

#endif
