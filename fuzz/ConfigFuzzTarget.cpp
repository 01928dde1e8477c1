// libFuzzer entry: the segmenter's configuration parser. The input is up to
// four files separated by NUL bytes, written as a.conf .. d.conf into one
// temporary directory; a.conf is loaded, and the files may include each
// other and set and use variables. Every key the input names is then read.
#include <fstream>
#include <string>
#include <vector>

#include "fuzz/FuzzTarget.h"
#include "support/TempDir.h"
#include "ws/core/wsWsConfig.h"

std::vector<std::string> zeg_fuzz::builtInSeeds() {
    return {};
}

namespace {

const char* const kNames[] = {"a.conf", "b.conf", "c.conf", "d.conf"};
const std::string kInclude = "#include";

// Includes are tied to the temporary directory: its path goes in front of
// the name, and a name with a slash (a way out of it, to endless files
// such as /dev/zero) drops the line.
std::string tieIncludes(const std::string& file, const std::string& dir) {
    std::string out;
    std::string::size_type from = 0;
    while (from <= file.size()) {
        std::string::size_type end = file.find('\n', from);
        if (end == std::string::npos) end = file.size();
        std::string line = file.substr(from, end - from);
        const std::string::size_type at = line.find(kInclude);
        if (at != std::string::npos) {
            if (line.find('/') != std::string::npos) {
                line.clear();
            } else {
                const std::string::size_type quote = line.find('"', at + kInclude.size());
                line.insert(quote == std::string::npos ? at + kInclude.size() : quote + 1,
                            dir + "/");
            }
        }
        out += line;
        if (end < file.size()) out += '\n';
        from = end + 1;
    }
    return out;
}

// The text before '=' on each line, trimmed: the keys worth asking for.
std::vector<std::string> keysOf(const std::string& text) {
    std::vector<std::string> keys;
    std::string::size_type from = 0;
    while (from < text.size() && keys.size() < 64) {
        std::string::size_type end = text.find_first_of(std::string("\n\0", 2), from);
        if (end == std::string::npos) end = text.size();
        const std::string line = text.substr(from, end - from);
        const std::string::size_type eq = line.find('=');
        if (eq != std::string::npos) {
            const std::string key = line.substr(0, eq);
            const auto first = key.find_first_not_of(" \t");
            const auto last = key.find_last_not_of(" \t");
            if (first != std::string::npos) keys.push_back(key.substr(first, last - first + 1));
        }
        from = end + 1;
    }
    return keys;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const zeg_test::TempDir dir;
    const std::string input(reinterpret_cast<const char*>(data), size);
    std::string::size_type from = 0;
    for (const char* name : kNames) {
        std::string part;
        if (from <= input.size()) {
            std::string::size_type end = input.find('\0', from);
            if (end == std::string::npos) end = input.size();
            part = input.substr(from, end - from);
            from = end + 1;
        }
        dir.write(name, tieIncludes(part, dir.path()));
    }
    ws::WsConfig config;
    if (!config.init(dir.file("a.conf").c_str())) return 0;
    volatile size_t sum = 0;
    for (const std::string& key : keysOf(input)) {
        sum = sum + config.getString(key, "").size();
        sum = sum + static_cast<size_t>(config.getLong(key, 0) + config.getBool(key, false));
        sum = sum + static_cast<size_t>(config.getDouble(key, 0.5) > 1);
    }
    return 0;
}
