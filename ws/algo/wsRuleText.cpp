#include "ws/algo/wsRuleText.h"

#include "ws/core/wsEncodeConverter.h"
#include "ws/dict/wsLineReader.h"

namespace ws {

namespace {

const std::size_t kLineBuffer = 1024;

}  // namespace

bool RuleText::read(const char* path, std::string& content) {
    LineReader reader(kLineBuffer);
    if (!reader.open(path)) return false;
    content.clear();
    std::string piece;
    while (reader.next(piece)) {
        if (piece.back() == '\n') piece.pop_back();
        content += piece;
        content += '\n';
    }
    return !reader.failed();
}

int RuleText::between(const std::string& content, const std::string& key,
                      const std::string& endMark, std::string& members) {
    const std::string::size_type at = content.find(key);
    if (at == std::string::npos) return -1;
    const std::string::size_type begin = at + key.size();
    const std::string::size_type end = content.find(endMark, begin + 1);
    if (end == std::string::npos) return -2;
    members.assign(content, begin, end - begin);
    return 0;
}

int RuleText::_toUtf16(const std::string& utf8, std::vector<unsigned short>& units) {
    // A UTF-8 byte never yields more than one code unit.
    units.resize(utf8.size());
    if (utf8.empty()) return 0;
    const int n = EncodeConverter::utf8ToUtf16(reinterpret_cast<const unsigned char*>(utf8.data()),
                                               utf8.size(), units.data(), units.size());
    return n < 0 ? 0 : n;
}

}  // namespace ws
