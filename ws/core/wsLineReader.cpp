#include "ws/core/wsLineReader.h"

#include <algorithm>
#include <cstring>

namespace ws {

namespace {

const std::size_t kBlockBytes = 16384;

}  // namespace

LineReader::LineReader(std::size_t bufferSize)
    : m_maxBytes(bufferSize > 1 ? bufferSize - 1 : 1) {}

bool LineReader::open(const char* path) {
    m_at = m_held = 0;
    if (!m_file.openRegular(path, "rb")) return false;
    m_block.resize(kBlockBytes);
    return true;
}

bool LineReader::_fill() {
    m_at = 0;
    m_held = std::fread(m_block.data(), 1, m_block.size(), m_file.get());
    return m_held > 0;
}

bool LineReader::next(std::string& piece) {
    piece.clear();
    if (!m_file) return false;
    while (piece.size() < m_maxBytes && (m_at < m_held || _fill())) {
        const char* from = m_block.data() + m_at;
        const std::size_t room = std::min(m_held - m_at, m_maxBytes - piece.size());
        const void* feed = std::memchr(from, '\n', room);
        const std::size_t take =
            feed != nullptr ? static_cast<std::size_t>(static_cast<const char*>(feed) - from) + 1
                            : room;
        piece.append(from, take);
        m_at += take;
        if (feed != nullptr) break;
    }
    return !piece.empty();
}

bool LineReader::next(const char*& data, std::size_t& size, std::string& spill) {
    if (m_file && (m_at < m_held || _fill())) {
        const char* from = m_block.data() + m_at;
        const std::size_t room = std::min(m_held - m_at, m_maxBytes);
        const void* feed = std::memchr(from, '\n', room);
        if (feed != nullptr || room == m_maxBytes) {
            size = feed != nullptr
                       ? static_cast<std::size_t>(static_cast<const char*>(feed) - from) + 1
                       : room;
            data = from;
            m_at += size;
            return true;
        }
    }
    if (!next(spill)) return false;  // the piece spans two blocks, or the file ends
    data = spill.data();
    size = spill.size();
    return true;
}

bool LineReader::cut(const std::string& piece) const {
    return piece.size() == m_maxBytes && piece.back() != '\n';
}

bool LineReader::failed() const { return m_file && std::ferror(m_file.get()) != 0; }

}  // namespace ws
