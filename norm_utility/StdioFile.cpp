#include "norm_utility/StdioFile.h"

#include <sys/stat.h>

#include <cerrno>

namespace norm_utility {

StdioFile::~StdioFile() { close(); }

bool StdioFile::open(const char* path) {
    close();
    if (path == nullptr) {
        errno = ENOENT;
        return false;
    }
    std::FILE* f = std::fopen(path, "r");
    if (f == nullptr) return false;
    struct stat st;
    if (fstat(fileno(f), &st) == 0 && S_ISDIR(st.st_mode)) {
        std::fclose(f);
        errno = EISDIR;
        return false;
    }
    m_file = f;
    return true;
}

void StdioFile::close() {
    if (m_file != nullptr) {
        std::fclose(m_file);
        m_file = nullptr;
    }
}

bool StdioFile::readLine(char* buf, int size) {
    return m_file != nullptr && std::fgets(buf, size, m_file) != nullptr;
}

std::size_t StdioFile::read(char* buf, std::size_t size) {
    return m_file == nullptr ? 0 : std::fread(buf, 1, size, m_file);
}

bool StdioFile::failed() const { return m_file != nullptr && std::ferror(m_file) != 0; }

}  // namespace norm_utility
