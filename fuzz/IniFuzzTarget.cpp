// libFuzzer entry: the INI reader. The input is the file; every key it
// names is asked for in its section, and the normaliser's own settings are
// read from it as at start-up.
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/FuzzTarget.h"
#include "fuzz/MemoryFile.h"
#include "norm_utility/FileConfiguration.h"
#include "norm_utility/YException.h"
#include "normalize/nmConfig.h"

std::vector<std::string> zeg_fuzz::builtInSeeds() {
    return {};
}

namespace {

// (section, key) of every option line, as the reader splits them.
std::vector<std::pair<std::string, std::string>> optionsOf(const std::string& text) {
    std::vector<std::pair<std::string, std::string>> options;
    std::string section, key, value;
    std::string::size_type from = 0;
    while (from < text.size() && options.size() < 64) {
        std::string::size_type end = text.find('\n', from);
        if (end == std::string::npos) end = text.size();
        const std::string line = text.substr(from, end - from);
        if (norm_utility::FileConfiguration::getPairs(line.c_str(), section, key, value))
            options.emplace_back(section, key);
        from = end + 1;
    }
    return options;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const zeg_fuzz::MemoryFile file(data, size);
    if (file.path().empty()) return 0;
    const std::string text(reinterpret_cast<const char*>(data), size);
    norm_utility::FileConfiguration::configFileName = file.path();
    volatile size_t sum = 0;
    try {
        norm_utility::FileConfiguration config;
        config.setDefaultValue("SERVER", "MAX_INPUT_LENGTH", "10000");
        for (const auto& option : optionsOf(text)) {
            try {
                sum = sum + config.getValue(option.first.c_str(), option.second.c_str()).size();
            } catch (const norm_utility::YException&) {
            }
        }
        config.initialize();
    } catch (const norm_utility::YException&) {
    }
    normalize::nmConfig settings;
    try {
        settings.init(file.path());
        sum = sum + static_cast<size_t>(settings.getMaxInputLength()) + settings.getStopFile().size();
    } catch (const norm_utility::YException&) {
    }
    return 0;
}
