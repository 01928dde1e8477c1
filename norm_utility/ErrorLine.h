#ifndef ZEG_NORM_UTILITY_ERRORLINE_H
#define ZEG_NORM_UTILITY_ERRORLINE_H

#include <string>

namespace norm_utility {

// Writes `line` and a newline to standard error in one write, so that lines
// from a multi-threaded host do not interleave mid-line.
// Lines written while an ErrorLineCapture is alive on the same thread are
// also kept by it.
void writeErrorLine(const std::string& line);

// Keeps the lines this thread writes with writeErrorLine while it is alive,
// so that a caller can hand the reason for a failure on. Captures nest; the
// innermost one keeps the lines. Not copyable. Thread safety: one thread.
class ErrorLineCapture {
public:
    ErrorLineCapture();
    ~ErrorLineCapture();
    ErrorLineCapture(const ErrorLineCapture&) = delete;
    ErrorLineCapture& operator=(const ErrorLineCapture&) = delete;

    // The lines kept so far, each ending with a newline.
    const std::string& lines() const { return m_lines; }

private:
    friend void writeErrorLine(const std::string& line);

    std::string m_lines;
    ErrorLineCapture* m_outer;
};

}  // namespace norm_utility

#endif
