#include "ws/core/wsLineReader.h"

namespace ws {

LineReader::LineReader(std::size_t bufferSize)
    : m_maxBytes(bufferSize > 1 ? bufferSize - 1 : 1) {}

bool LineReader::open(const char* path) { return m_file.openRegular(path, "rb"); }

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

bool LineReader::cut(const std::string& piece) const {
    return piece.size() == m_maxBytes && piece.back() != '\n';
}

bool LineReader::failed() const { return m_file && std::ferror(m_file.get()) != 0; }

}  // namespace ws
