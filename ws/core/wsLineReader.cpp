#include "ws/core/wsLineReader.h"

namespace ws {

LineReader::LineReader(std::size_t bufferSize)
    : m_maxBytes(bufferSize > 1 ? bufferSize - 1 : 1) {}

bool LineReader::open(const char* path) { return m_file.openRegular(path, "rb"); }

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

bool LineReader::cut(const std::string& piece) const {
    return piece.size() == m_maxBytes && piece.back() != '\n';
}

bool LineReader::failed() const { return m_file && std::ferror(m_file.get()) != 0; }

}  // namespace ws
