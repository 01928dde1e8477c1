#ifndef ZEG_TOOLS_PROPERTYTABLE_H
#define ZEG_TOOLS_PROPERTYTABLE_H

#include <map>
#include <string>
#include <vector>

namespace zeg_tools {

// The table of word properties (part-of-speech tags) that dictionaries
// refer to by id. File: one property a line, "ID<TAB>NAME", ids from 1;
// the segmenter reads the same file to name the ids it finds.
// Ids are signed 16-bit in the dictionaries, so the table holds at most
// kMaxId properties. Not thread-safe.
class PropertyTable {
public:
    static constexpr int kMaxId = 32767;

    // Reads `path`; a missing file is an empty table. False with `error`
    // ("PATH:LINE: reason", or "PATH: reason") on a malformed line, a
    // repeated id or name, or a file that exists but cannot be read.
    bool load(const std::string& path, std::string& error);

    // The id of `name`, adding it with the next free id when new; -1 when
    // the table is full.
    int idOf(const std::string& name);
    // The id of `name`, or -1; never adds.
    int find(const std::string& name) const;

    // True when idOf added something since load, or load found no file:
    // the file should be written.
    bool changed() const { return m_changed || !m_existed; }
    size_t size() const { return m_names.size(); }

    // The file's text, ids rising.
    std::string text() const;
    // Writes text() to `path` as a whole (through a temporary file).
    bool write(const std::string& path, std::string& error) const;

private:
    bool addLine(const std::string& line, std::string& reason);

    std::map<int, std::string> m_names;
    std::map<std::string, int> m_ids;
    int m_nextId = 1;
    bool m_changed = false;
    bool m_existed = false;
};

}  // namespace zeg_tools

#endif
