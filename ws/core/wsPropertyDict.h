#ifndef ZEG_WS_CORE_WSPROPERTYDICT_H
#define ZEG_WS_CORE_WSPROPERTYDICT_H

#include <string>
#include <unordered_map>
#include <vector>

namespace ws {

// The table of word-type (property) names: a text file of lines "id TAB
// name", ids from 1. Thread safety: read-only after load.
class PropertyDict {
public:
    // Replaces the table with the file's. False when the file cannot be
    // read; the table is then unchanged. Lines that
    // are not "id TAB name" with 1 <= id < 32768 are skipped.
    bool load(const std::string& path);

    // The name of `id`, or null.
    const char* getName(short id) const;
    // The id of `name`, or -1.
    short getId(const char* name) const;

private:
    std::vector<std::string> m_names;  // indexed by id; "" = unused
    std::unordered_map<std::string, short> m_ids;
};

}  // namespace ws

#endif
