#include "tools/AtomicFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace zeg_tools {

AtomicFile::AtomicFile(const std::string& target)
    : m_target(target), m_temp(target + ".tmp." + std::to_string(getpid())) {}

AtomicFile::~AtomicFile() {
    if (!m_committed) std::remove(m_temp.c_str());
}

bool AtomicFile::commit(std::string& error) {
    if (std::rename(m_temp.c_str(), m_target.c_str()) == 0) {
        m_committed = true;
        return true;
    }
    error = std::strerror(errno);
    std::remove(m_temp.c_str());
    return false;
}

}  // namespace zeg_tools
