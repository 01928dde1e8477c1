#include "ws/core/wsUtility.h"

#include <sys/times.h>
#include <unistd.h>

#include <cstdio>

namespace ws {

void Utility::splitLine(const std::string& line, const std::string& delims,
                        std::vector<std::string>& out) {
    // Loaders split every line of big files: reuse the vector's strings and
    // test membership in a table instead of searching `delims` per byte.
    bool isDelim[256] = {};
    for (const char d : delims) isDelim[static_cast<unsigned char>(d)] = true;
    const char* p = line.data();
    const char* const end = p + line.size();
    size_t n = 0;
    for (;;) {
        while (p != end && isDelim[static_cast<unsigned char>(*p)]) ++p;
        if (p == end) break;
        const char* const start = p;
        while (p != end && !isDelim[static_cast<unsigned char>(*p)]) ++p;
        if (n < out.size())
            out[n].assign(start, static_cast<size_t>(p - start));
        else
            out.emplace_back(start, static_cast<size_t>(p - start));
        ++n;
    }
    out.resize(n);
}

void Utility::splitGran(const std::string& gran, const std::string& line,
                        const std::string& delims, std::vector<std::string>& out) {
    if (gran.find(' ') == std::string::npos) {
        splitLine(line, delims, out);
        return;
    }
    std::vector<std::string> pieces;
    splitLine(line, delims, pieces);
    out.clear();
    std::size_t next = 0;
    std::string::size_type start = gran.find_first_not_of(delims);
    while (start != std::string::npos) {
        const std::string::size_type stop = gran.find_first_of(delims, start);
        if (stop == std::string::npos) {
            // The last field of the line takes whatever is left.
            out.insert(out.end(), pieces.begin() + static_cast<long>(next), pieces.end());
            return;
        }
        std::size_t covered = 0;
        while (covered < stop - start && next < pieces.size()) {
            covered += pieces[next].size();
            out.push_back(pieces[next++]);
        }
        start = gran.find_first_not_of(delims, stop);
        if (start == std::string::npos) return;
        out.push_back(gran.substr(stop, start - stop));
    }
}

void Utility::extractWordPos(const std::string& token, std::string& word, std::string& pos) {
    word.clear();
    pos.clear();
    const std::string::size_type slash = token.find('/');
    if (slash == std::string::npos) {
        word = token;
        return;
    }
    // Only a '[' before the slash opens the word; one inside the tag does not.
    const std::string::size_type open = token.find('[');
    if (open != std::string::npos && open < slash) {
        word = token.substr(open + 1, slash - open - 1);
    } else {
        word = token.substr(0, slash);
    }
    if (word.empty()) word = "\xE2\x97\x87";
    const std::string::size_type close = token.find(']', slash + 1);
    pos = token.substr(slash + 1, close == std::string::npos ? std::string::npos : close - slash - 1);
}

void Utility::showTimes() {
    const long rate = sysconf(_SC_CLK_TCK);
    if (rate <= 0) {
        std::printf("Cannot determine clock ticks per second\n");
        return;
    }
    struct tms t;
    if (times(&t) == static_cast<clock_t>(-1)) {
        std::printf("Cannot get times information\n");
        return;
    }
    const double perSecond = static_cast<double>(rate);
    std::printf("User time: %f seconds\n", static_cast<double>(t.tms_utime) / perSecond);
    std::printf("System time: %f seconds\n", static_cast<double>(t.tms_stime) / perSecond);
    std::printf("Children's user time: %f seconds\n", static_cast<double>(t.tms_cutime) / perSecond);
    std::printf("Children's system time: %f seconds\n",
                static_cast<double>(t.tms_cstime) / perSecond);
}

}  // namespace ws
