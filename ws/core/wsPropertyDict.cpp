#include "ws/core/wsPropertyDict.h"

#include <cstdlib>

#include "ws/core/wsBufferGrowth.h"
#include "ws/core/wsLineReader.h"
#include "ws/core/wsWsLogger.h"

namespace ws {

namespace {

const long kMaxId = 32767;
// Names are tag names; a longer line is junk, not a table row.
const std::size_t kLineBuffer = 4096;

// "id TAB name" (a trailing CR dropped) into id and name; false otherwise.
bool parseLine(std::string line, long& id, std::string& name) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const size_t tab = line.find('\t');
    if (tab == std::string::npos || tab == 0 || tab + 1 == line.size()) return false;
    char* end = nullptr;
    id = std::strtol(line.c_str(), &end, 10);
    if (end != line.c_str() + tab || id < 1 || id > kMaxId) return false;
    name = line.substr(tab + 1);
    return true;
}

}  // namespace

bool PropertyDict::load(const std::string& path) {
    WsLogger* log = WsLogger::getWsLogger();
    LineReader reader(kLineBuffer);
    if (!reader.open(path.c_str())) return false;
    std::vector<std::string> names;
    std::unordered_map<std::string, short> ids;
    std::string line, name;
    long id = 0;
    unsigned lineNo = 0, unusable = 0;
    while (reader.next(line)) {
        ++lineNo;
        if (reader.cut(line)) {
            log->error("%s:%u: longer than %zu bytes\n", path.c_str(), lineNo, kLineBuffer - 1);
            return false;
        }
        if (!line.empty() && line.back() == '\n') line.pop_back();
        if (line.empty() || line == "\r") continue;
        if (!parseLine(line, id, name)) {
            log->error("%s:%u: not \"id TAB name\" with an id from 1 to %ld\n", path.c_str(),
                       lineNo, kMaxId);
            ++unusable;
            continue;
        }
        growTo(names, static_cast<size_t>(id) + 1);
        names[static_cast<size_t>(id)] = name;
        ids.emplace(name, static_cast<short>(id));
    }
    // An empty table is a dictionary without tags; a table of junk is not.
    if (reader.failed() || (ids.empty() && unusable > 0)) return false;
    m_names.swap(names);
    m_ids.swap(ids);
    return true;
}

const char* PropertyDict::getName(short id) const {
    if (id < 1 || static_cast<size_t>(id) >= m_names.size() || m_names[id].empty()) return nullptr;
    return m_names[static_cast<size_t>(id)].c_str();
}

short PropertyDict::getId(const char* name) const {
    if (name == nullptr) return -1;
    auto it = m_ids.find(name);
    return it == m_ids.end() ? -1 : it->second;
}

}  // namespace ws
