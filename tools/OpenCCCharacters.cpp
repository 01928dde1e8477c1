#include "tools/OpenCCCharacters.h"
#include "tools/BoundedLine.h"

namespace zeg_tools {

namespace {

// Length of the sequence led by `lead` and the lowest code point it may
// carry; 0 for a byte that leads nothing.
int sequenceLength(unsigned char lead, char32_t& minimum) {
    if (lead < 0x80) return minimum = 0, 1;
    if (lead >= 0xC2 && lead <= 0xDF) return minimum = 0x80, 2;
    if (lead >= 0xE0 && lead <= 0xEF) return minimum = 0x800, 3;
    if (lead >= 0xF0 && lead <= 0xF4) return minimum = 0x10000, 4;
    return 0;
}

// Splits "T<TAB>S1 S2 ..." into its traditional character and the first
// listed form other than itself (itself when there is none).
bool parseLine(const std::string& line, char32_t& traditional, char32_t& simplified) {
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos || !decodeOneUtf8(line.substr(0, tab), traditional)) return false;
    std::size_t at = tab + 1;
    do {
        const std::size_t end = line.find(' ', at);
        if (!decodeOneUtf8(line.substr(at, end - at), simplified)) return false;
        at = end == std::string::npos ? end : end + 1;
    } while (simplified == traditional && at != std::string::npos);
    return true;
}

}  // namespace

bool decodeOneUtf8(const std::string& text, char32_t& codePoint) {
    if (text.empty()) return false;
    const auto* b = reinterpret_cast<const unsigned char*>(text.data());
    char32_t minimum = 0;
    const int length = sequenceLength(b[0], minimum);
    if (length == 0 || text.size() != static_cast<std::size_t>(length)) return false;
    char32_t cp = length == 1 ? b[0] : b[0] & (0x7F >> length);
    for (int k = 1; k < length; ++k) {
        if ((b[k] & 0xC0) != 0x80) return false;
        cp = (cp << 6) | (b[k] & 0x3F);
    }
    if (cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return false;
    codePoint = cp;
    return true;
}

bool readOpenCCCharacters(std::istream& in, T2SMap& map, std::string& error) {
    T2SMap read;
    std::string line;
    for (int number = 1;; ++number) {
        const LineRead got = getBoundedLine(in, line);
        if (got == LineRead::kEnd) break;
        if (got == LineRead::kTooLong) {
            error = "line " + std::to_string(number) + ": " + tooLongReason();
            return false;
        }
        if (line.empty()) continue;
        char32_t traditional = 0, simplified = 0;
        if (!parseLine(line, traditional, simplified)) {
            error = "malformed line " + std::to_string(number) + " [" + line + "]";
            return false;
        }
        read[traditional] = simplified;
    }
    if (in.bad()) {
        error = "read error";
        return false;
    }
    map.swap(read);
    return true;
}

}  // namespace zeg_tools
