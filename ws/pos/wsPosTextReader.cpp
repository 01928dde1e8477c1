#include "ws/pos/wsPosTextReader.h"

#include <cstdio>

#include "ws/core/wsUtility.h"

namespace ws {

PosTextReader::PosTextReader() : m_reader(kMaxLine + 2) {}

bool PosTextReader::open(const char* path) {
    m_path = path != nullptr ? path : "";
    m_line = 0;
    return m_reader.open(path);
}

bool PosTextReader::next(const std::string& delims, std::vector<std::string>& fields) {
    while (m_reader.next(m_piece)) {
        ++m_line;
        if (m_piece.back() != '\n' && m_piece.size() > kMaxLine) {
            report("line too long");
            // The rest of the line comes in further pieces; drop them.
            while (m_reader.next(m_piece) && m_piece.back() != '\n') {
            }
            continue;
        }
        Utility::splitLine(m_piece, delims + "\n", fields);
        if (!fields.empty()) return true;
    }
    return false;
}

void PosTextReader::report(const std::string& reason) const {
    std::fprintf(stderr, "%s:%d: %s\n", m_path.c_str(), m_line, reason.c_str());
}

}  // namespace ws
