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
    // Gathered in a local block first: appending byte by byte to the
    // string made this the larger part of loading a word list.
    char block[256];
    std::size_t held = 0;
    int c = 0;
    while (piece.size() + held < m_maxBytes && (c = getc_unlocked(m_file.get())) != EOF) {
        block[held++] = static_cast<char>(c);
        if (c == '\n') break;
        if (held == sizeof block) {
            piece.append(block, held);
            held = 0;
        }
    }
    piece.append(block, held);
    return !piece.empty();
}

bool LineReader::failed() const { return m_file && std::ferror(m_file.get()) != 0; }

}  // namespace ws
