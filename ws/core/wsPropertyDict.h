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
    // Replaces the table with the file's (a regular file). Lines that are
    // not "id TAB name" with 1 <= id < 32768 are logged as "FILE:LINE:
    // reason" and skipped; blank lines are skipped quietly. False, the table
    // unchanged, when the file cannot be read, has a line of 4096 bytes or
    // more, or has lines but none usable.
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
