#ifndef ZEG_TOOLS_BOUNDEDLINE_H
#define ZEG_TOOLS_BOUNDEDLINE_H

#include <cstddef>
#include <istream>
#include <string>

namespace zeg_tools {

// Longest line the tools read from a named text file, line feed excluded.
// Their lines are words, tags and counts; a longer line is damage.
constexpr std::size_t kMaxTextLine = 65536;

enum class LineRead { kLine, kEnd, kTooLong };

// std::getline with a bound: the next line of `in` into `line`, without its
// line feed (kLine; a last line without one counts), or kEnd when nothing is
// left. A line of more than `cap` bytes gives kTooLong with `line` holding
// its first `cap` bytes and the stream left inside it: the caller reports it
// and stops, since skipping the rest of an endless line (/dev/zero) would
// never end. Sets eofbit at the end as getline does.
LineRead getBoundedLine(std::istream& in, std::string& line, std::size_t cap = kMaxTextLine);

// The "longer than N bytes" reason for a kTooLong line.
std::string tooLongReason(std::size_t cap = kMaxTextLine);

}  // namespace zeg_tools

#endif
