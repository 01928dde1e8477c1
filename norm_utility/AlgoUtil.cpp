#include "norm_utility/AlgoUtil.h"

namespace norm_utility {

void AlgoUtil::trim(std::string& text) {
    std::size_t end = text.size();
    while (end > 0 && isSpace(static_cast<unsigned char>(text[end - 1]))) --end;
    std::size_t begin = 0;
    while (begin < end && isSpace(static_cast<unsigned char>(text[begin]))) ++begin;
    text.erase(end).erase(0, begin);
}

void AlgoUtil::split2(const std::string& text, const std::string& separator,
                      std::vector<std::string>& fields) {
    fields.clear();
    std::size_t begin = 0;
    while (begin <= text.size()) {
        std::size_t end = separator.empty() ? std::string::npos : text.find(separator, begin);
        if (end == std::string::npos) end = text.size();
        std::string field = text.substr(begin, end - begin);
        trim(field);
        if (!field.empty()) fields.push_back(std::move(field));
        begin = end + (separator.empty() ? 1 : separator.size());
    }
}

void AlgoUtil::stringToupper(std::string& text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
}

}  // namespace norm_utility
