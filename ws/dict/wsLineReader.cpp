#include "ws/dict/wsLineReader.h"

#include <sys/stat.h>

#include <cerrno>

namespace ws {

LineReader::LineReader(std::size_t bufferSize)
    : m_maxBytes(bufferSize > 1 ? bufferSize - 1 : 1) {}

LineReader::~LineReader() { close(); }

void LineReader::close() {
    if (m_file != nullptr) std::fclose(m_file);
    m_file = nullptr;
}

bool LineReader::open(const char* path) {
    close();
    if (path == nullptr) {
        errno = ENOENT;
        return false;
    }
    std::FILE* f = std::fopen(path, "rb");
    if (f == nullptr) return false;
    struct stat st = {};
    if (fstat(fileno(f), &st) != 0 || !S_ISREG(st.st_mode)) {
        const int error = S_ISDIR(st.st_mode) ? EISDIR : EINVAL;
        std::fclose(f);
        errno = error;
        return false;
    }
    m_file = f;
    return true;
}

bool LineReader::next(std::string& piece) {
    piece.clear();
    if (m_file == nullptr) return false;
    int c = 0;
    while (piece.size() < m_maxBytes && (c = getc_unlocked(m_file)) != EOF) {
        piece.push_back(static_cast<char>(c));
        if (c == '\n') break;
    }
    return !piece.empty();
}

bool LineReader::failed() const { return m_file != nullptr && std::ferror(m_file) != 0; }

}  // namespace ws
