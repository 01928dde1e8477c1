#include "norm_utility/StdioFile.h"

namespace norm_utility {

bool StdioFile::open(const char* path) { return m_file.openRegular(path, "r"); }

void StdioFile::close() { m_file.close(); }

bool StdioFile::readLine(char* buf, int size) {
    return m_file && std::fgets(buf, size, m_file.get()) != nullptr;
}

std::size_t StdioFile::read(char* buf, std::size_t size) {
    return m_file ? std::fread(buf, 1, size, m_file.get()) : 0;
}

bool StdioFile::failed() const { return m_file && std::ferror(m_file.get()) != 0; }

}  // namespace norm_utility
