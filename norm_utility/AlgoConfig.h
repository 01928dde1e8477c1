#ifndef ZEG_NORM_UTILITY_ALGOCONFIG_H
#define ZEG_NORM_UTILITY_ALGOCONFIG_H

#include "norm_utility/FileConfiguration.h"

namespace norm_utility {

// The process-wide configuration. Its users create configurationInstance on
// first need (after setting FileConfiguration::configFileName) and never
// delete it. Thread safety: none.
class AlgoConfig : public FileConfiguration {
public:
    static AlgoConfig* configurationInstance;

    AlgoConfig() = default;
    ~AlgoConfig() override;
};

}  // namespace norm_utility

#endif
