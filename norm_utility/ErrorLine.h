#ifndef ZEG_NORM_UTILITY_ERRORLINE_H
#define ZEG_NORM_UTILITY_ERRORLINE_H

#include <string>

namespace norm_utility {

// Writes `line` and a newline to standard error in one write, so that lines
// from a multi-threaded host do not interleave mid-line.
void writeErrorLine(const std::string& line);

}  // namespace norm_utility

#endif
