#include "ws/dict/wsLineReader.h"

#include <cerrno>

namespace ws {

LineReader::LineReader(std::size_t bufferSize)
    : m_maxBytes(bufferSize > 1 ? bufferSize - 1 : 1) {}

bool LineReader::open(const char* path) {
    if (!m_file.open(path, "rb")) return false;
    const unsigned type = m_file.type();
    if (type == S_IFREG) return true;
    m_file.close();
    errno = type == S_IFDIR ? EISDIR : EINVAL;
    return false;
}

bool LineReader::next(std::string& piece) {
    piece.clear();
    if (!m_file) return false;
    int c = 0;
    while (piece.size() < m_maxBytes && (c = getc_unlocked(m_file.get())) != EOF) {
        piece.push_back(static_cast<char>(c));
        if (c == '\n') break;
    }
    return !piece.empty();
}

bool LineReader::failed() const { return m_file && std::ferror(m_file.get()) != 0; }

}  // namespace ws
