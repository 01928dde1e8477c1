#ifndef ZEG_WS_ALGO_WSRULETEXT_H
#define ZEG_WS_ALGO_WSRULETEXT_H

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace ws {

// The small UTF-8 definition files that list classes of characters: a key
// such as "spacelist=", the members, then an end mark such as "end#".
// Everything between key and end mark is a member, line feeds included,
// since the file's lines are joined with line feeds before the search.
// Static and pure apart from reading the file; safe from any thread.
class RuleText {
public:
    // Replaces `content` with the file at `path` read in pieces of at most
    // 1023 bytes (a longer line is cut), each piece without its line feed
    // and followed by one. False, `content` then undefined, when the file
    // cannot be opened or a read fails. Throws std::bad_alloc.
    static bool read(const char* path, std::string& content);

    // Finds the first `key` in `content` and the first `endMark` that starts
    // at least one byte after the key's end (a member right after the key
    // cannot be taken for the end mark), and sets `members` to the bytes in
    // between. Returns 0; -1 when the key is absent, -2 when the end mark is.
    static int between(const std::string& content, const std::string& key,
                       const std::string& endMark, std::string& members);

    // Byte ranges [first, second) of `content` that a key claims, from the
    // key to the end of its end mark.
    typedef std::vector<std::pair<std::size_t, std::size_t> > Spans;

    // As between(), and on success adds the key's range to `claimed`.
    static int between(const std::string& content, const std::string& key,
                       const std::string& endMark, std::string& members, Spans& claimed);

    // Logs "PATH:LINE: reason" for every line of `content` that is not blank,
    // not a comment ('#' first) and holds no claimed byte: text that no key
    // uses, in a file read by read(). Returns the number of such lines.
    static unsigned reportUnclaimed(const char* path, const std::string& content,
                                    const Spans& claimed);

    // Appends the code units of the UTF-8 text `utf8` to `out`, converted by
    // EncodeConverter (so conversion stops at a byte that cannot start a
    // character). Returns the number appended. Throws std::bad_alloc.
    template <typename Unit>
    static int appendUtf16(const std::string& utf8, std::vector<Unit>& out);

private:
    static int _toUtf16(const std::string& utf8, std::vector<unsigned short>& units);
};

template <typename Unit>
int RuleText::appendUtf16(const std::string& utf8, std::vector<Unit>& out) {
    std::vector<unsigned short> units;
    const int n = _toUtf16(utf8, units);
    out.insert(out.end(), units.begin(), units.begin() + n);
    return n;
}

}  // namespace ws

#endif
