#include "ws/algo/wsRuleText.h"

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsLineReader.h"
#include "ws/core/wsWsLogger.h"

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

int RuleText::between(const std::string& content, const std::string& key,
                      const std::string& endMark, std::string& members, Spans& claimed) {
    const int found = between(content, key, endMark, members);
    if (found == 0) {
        const std::size_t at = content.find(key);
        claimed.emplace_back(at, at + key.size() + members.size() + endMark.size());
    }
    return found;
}

unsigned RuleText::reportUnclaimed(const char* path, const std::string& content,
                                   const Spans& claimed) {
    unsigned count = 0, lineNo = 0;
    for (std::size_t begin = 0; begin < content.size(); ++lineNo) {
        std::size_t end = content.find('\n', begin);
        if (end == std::string::npos) end = content.size();
        const std::size_t text = content.find_first_not_of(" \t\r", begin);
        bool used = text >= end || content[text] == '#';
        for (std::size_t i = 0; !used && i < claimed.size(); ++i)
            used = claimed[i].first < end && claimed[i].second > begin;
        if (!used) {
            WsLogger::getWsLogger()->error("%s:%u: no class key claims this line\n", path,
                                           lineNo + 1);
            ++count;
        }
        begin = end + 1;
    }
    return count;
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
