#include "tools/BoundedLine.h"

namespace zeg_tools {

LineRead getBoundedLine(std::istream& in, std::string& line, std::size_t cap) {
    line.clear();
    std::streambuf* buffer = in.rdbuf();
    if (!in.good() || buffer == nullptr) {
        in.setstate(std::ios::failbit);
        return LineRead::kEnd;
    }
    for (;;) {
        int c = 0;
        try {
            c = buffer->sbumpc();
        } catch (...) {
            // A read error (a directory, say): as std::getline reports it.
            in.setstate(std::ios::badbit);
            return LineRead::kEnd;
        }
        if (c == std::char_traits<char>::eof()) {
            in.setstate(line.empty() ? std::ios::eofbit | std::ios::failbit : std::ios::eofbit);
            return line.empty() ? LineRead::kEnd : LineRead::kLine;
        }
        if (c == '\n') return LineRead::kLine;
        if (line.size() == cap) return LineRead::kTooLong;
        line.push_back(static_cast<char>(c));
    }
}

std::string tooLongReason(std::size_t cap) {
    return "longer than " + std::to_string(cap) + " bytes";
}

}  // namespace zeg_tools
