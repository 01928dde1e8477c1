#include "tools/PropertyTable.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "tools/AtomicFile.h"
#include "tools/BoundedLine.h"
#include "ws/core/wsFile.h"

namespace zeg_tools {

namespace {

// A positive decimal id without sign or leading zeros, at most kMaxId.
bool parseId(const std::string& text, int& id) {
    if (text.empty() || text.size() > 5 || text[0] == '0') return false;
    id = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return false;
        id = id * 10 + (c - '0');
    }
    return id <= PropertyTable::kMaxId;
}

}  // namespace

bool PropertyTable::addLine(const std::string& line, std::string& reason) {
    const size_t tab = line.find('\t');
    int id = 0;
    if (tab == std::string::npos) {
        reason = "expected ID<TAB>NAME";
        return false;
    }
    const std::string name = line.substr(tab + 1);
    if (!parseId(line.substr(0, tab), id)) {
        reason = "bad property id '" + line.substr(0, tab) + "'";
    } else if (name.empty() || name.find_first_of(" \t") != std::string::npos) {
        reason = "bad property name '" + name + "'";
    } else if (m_names.count(id) != 0) {
        reason = "property id " + std::to_string(id) + " appears twice";
    } else if (m_ids.count(name) != 0) {
        reason = "property '" + name + "' appears twice";
    } else {
        m_names[id] = name;
        m_ids[name] = id;
        if (id >= m_nextId) m_nextId = id + 1;
        return true;
    }
    return false;
}

bool PropertyTable::load(const std::string& path, std::string& error) {
    m_names.clear();
    m_ids.clear();
    m_nextId = 1;
    m_changed = false;
    m_existed = false;
    errno = 0;
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        if (errno == ENOENT) return true;
        error = path + ": " + std::strerror(errno);
        return false;
    }
    m_existed = true;
    std::string line, reason;
    for (int number = 1;; ++number) {
        const LineRead got = getBoundedLine(in, line);
        if (got == LineRead::kEnd) break;
        if (got == LineRead::kTooLong) {
            error = path + ":" + std::to_string(number) + ": " + tooLongReason();
            return false;
        }
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty()) continue;
        if (!addLine(line, reason)) {
            error = path + ":" + std::to_string(number) + ": " + reason;
            return false;
        }
    }
    if (in.bad()) {
        error = path + ": read error";
        return false;
    }
    return true;
}

int PropertyTable::find(const std::string& name) const {
    const auto it = m_ids.find(name);
    return it != m_ids.end() ? it->second : -1;
}

int PropertyTable::idOf(const std::string& name) {
    const int id = find(name);
    if (id != -1) return id;
    if (m_nextId > kMaxId) return -1;
    m_names[m_nextId] = name;
    m_ids[name] = m_nextId;
    m_changed = true;
    return m_nextId++;
}

std::string PropertyTable::text() const {
    std::string out;
    for (const auto& entry : m_names) out += std::to_string(entry.first) + "\t" + entry.second + "\n";
    return out;
}

bool PropertyTable::write(const std::string& path, std::string& error) const {
    AtomicFile file(path);
    const std::string body = text();
    ws::File f;
    if (!f.open(file.tempPath().c_str(), "wb")) {
        error = path + ": " + std::strerror(errno);
        return false;
    }
    const bool written = std::fwrite(body.data(), 1, body.size(), f.get()) == body.size();
    if (f.close() != 0 || !written) {
        error = path + ": write error";
        return false;
    }
    if (file.commit(error)) return true;
    error = path + ": " + error;
    return false;
}

}  // namespace zeg_tools
