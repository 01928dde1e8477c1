#include "tools/PieceSegmenter.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "ws/core/wsInterfaceImp.h"

namespace zeg_tools {

namespace {

const unsigned kChunkUnits = ws::WsSegmenterImp::kChunkSize;
// The private-use area of the basic multilingual plane: U+E000 to U+F8FF.
const unsigned kFirstStandIn = 0xE000;
const unsigned kStandIns = 0x1900;

// The code unit of the UTF-8 sequence at `p` and its length in bytes (0 when
// the sequence runs past `n`). A stray byte counts as one unit of its own, a
// four-byte sequence as one unit no delimiter list holds.
std::size_t decode(const unsigned char* p, std::size_t n, unsigned& unit) {
    const std::size_t len = p[0] < 0xC0 ? 1 : p[0] < 0xE0 ? 2 : p[0] < 0xF0 ? 3 : p[0] < 0xF8 ? 4 : 1;
    if (len > n) return 0;
    if (len == 1) unit = p[0];
    else if (len == 2) unit = ((p[0] & 0x1Fu) << 6) | (p[1] & 0x3Fu);
    else if (len == 3) unit = ((p[0] & 0x0Fu) << 12) | ((p[1] & 0x3Fu) << 6) | (p[2] & 0x3Fu);
    else unit = 0xFFFF;
    return len;
}

}  // namespace

PieceSegmenter::PieceSegmenter(Segment segment, std::size_t window)
    : m_segment(std::move(segment)), m_window(window), m_usedStandIns(kStandIns) {}

bool PieceSegmenter::loadDelimiters(const std::string& path) {
    m_haveDelimiters = m_chunker.loadText(path);
    return m_haveDelimiters;
}

bool PieceSegmenter::add(const std::string& bytes, bool more, std::FILE* out) {
    m_pending += bytes;
    bool ok = true;
    if (!more) {
        ok = emit(m_pending.data(), m_pending.size(), out);
        m_pending.clear();
    } else if (m_pending.size() >= m_window) {
        const std::size_t cut = cutPoint();
        ok = cut == 0 || emit(m_pending.data(), cut, out);
        m_pending.erase(0, cut);
    }
    return ok && !m_writeFailed;
}

// The last place in m_pending where the segmenter's chunker would end a
// chunk of the whole line: chunks end after a delimiter, or after
// kChunkUnits units without one.
std::size_t PieceSegmenter::cutPoint() const {
    const unsigned char* text = reinterpret_cast<const unsigned char*>(m_pending.data());
    const std::size_t n = m_pending.size();
    std::size_t pos = 0, end = 0;
    unsigned units = 0, unit = 0;
    for (std::size_t len; pos < n && (len = decode(text + pos, n - pos, unit)) != 0;) {
        pos += len;
        if ((m_haveDelimiters && m_chunker.checkWord(unit)) || ++units == kChunkUnits) {
            end = pos;
            units = 0;
        }
    }
    return end;
}

bool PieceSegmenter::pickStandIn(const char* text, std::size_t len) {
    std::fill(m_usedStandIns.begin(), m_usedStandIns.end(), false);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
    unsigned unit = 0;
    for (std::size_t i = 0, step; i < len; i += step) {
        step = decode(p + i, len - i, unit);
        if (step == 0) break;
        if (unit >= kFirstStandIn && unit - kFirstStandIn < kStandIns)
            m_usedStandIns[unit - kFirstStandIn] = true;
    }
    for (unsigned k = 0; k < kStandIns; ++k) {
        if (m_usedStandIns[k]) continue;
        const unsigned u = kFirstStandIn + k;
        m_standIn = {static_cast<char>(0xE0 | (u >> 12)), static_cast<char>(0x80 | ((u >> 6) & 0x3F)),
                     static_cast<char>(0x80 | (u & 0x3F))};
        return true;
    }
    return false;
}

template <class Write>
bool PieceSegmenter::emitWith(const char* text, std::size_t len, const Write& write) {
    const bool hasNul = std::memchr(text, '\0', len) != nullptr;
    if (hasNul) {
        if (!pickStandIn(text, len)) return false;
        m_text.clear();
        for (std::size_t i = 0; i < len; ++i) {
            if (text[i] == '\0') m_text += m_standIn;
            else m_text += text[i];
        }
    }
    const char* words = hasNul ? m_segment(m_text.data(), m_text.size()) : m_segment(text, len);
    if (words == nullptr) return false;
    if (hasNul) {
        static const char kNul = '\0';
        for (const char* standIn; (standIn = std::strstr(words, m_standIn.c_str())) != nullptr;) {
            m_writeFailed = m_writeFailed ||
                            !write(words, static_cast<std::size_t>(standIn - words)) ||
                            !write(&kNul, 1);
            words = standIn + m_standIn.size();
        }
    }
    m_writeFailed = m_writeFailed || !write(words, std::strlen(words));
    return true;
}

bool PieceSegmenter::segmentLine(const std::string& line, std::string& out) {
    return emitWith(line.data(), line.size(), [&out](const char* bytes, std::size_t n) {
        out.append(bytes, n);
        return true;
    });
}

bool PieceSegmenter::emit(const char* text, std::size_t len, std::FILE* out) {
    return emitWith(text, len, [out](const char* bytes, std::size_t n) {
        return std::fwrite(bytes, 1, n, out) == n;
    });
}

}  // namespace zeg_tools
