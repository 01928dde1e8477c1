#include "norm_utility/AlgoConfig.h"

namespace norm_utility {

AlgoConfig* AlgoConfig::configurationInstance = nullptr;

AlgoConfig::~AlgoConfig() = default;

}  // namespace norm_utility
