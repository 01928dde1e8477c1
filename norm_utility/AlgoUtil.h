#ifndef ZEG_NORM_UTILITY_ALGOUTIL_H
#define ZEG_NORM_UTILITY_ALGOUTIL_H

#include <string>
#include <vector>

namespace norm_utility {

// The string helpers the normaliser uses. White space means the ASCII
// blanks " \t\r\n\v\f"; bytes of 0x80 and above are never touched, so GBK
// text passes through unchanged. Stateless; safe from any thread.
class AlgoUtil {
public:
    // Removes leading and trailing white space in place.
    static void trim(std::string& text);

    // Cuts `text` at every occurrence of `separator`, trims each field and
    // drops empty ones; replaces the contents of `fields`. An empty
    // separator yields the whole trimmed text as one field.
    static void split2(const std::string& text, const std::string& separator,
                       std::vector<std::string>& fields);

    // Upper-cases ASCII letters in place.
    static void stringToupper(std::string& text);

    static bool isSpace(unsigned char c) {
        return c == ' ' || (c >= '\t' && c <= '\r');
    }
};

}  // namespace norm_utility

#endif
