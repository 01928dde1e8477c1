#ifndef ZEG_TOOLS_PROGRESSLINE_H
#define ZEG_TOOLS_PROGRESSLINE_H

#include <chrono>
#include <cstdint>
#include <ostream>
#include <string>

namespace zeg_tools {

// A line on a terminal that says how far a long job is, rewritten in place
// ("\r") at most a few times a second, and ended when the job is done.
// Disabled, it writes nothing. Not thread-safe.
class ProgressLine {
public:
    // `total` is the amount of work (bytes of input), 0 when unknown.
    ProgressLine(std::ostream& out, bool enabled, const std::string& label, uint64_t total);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // Reports `done` of the total and `items` so far; cheap when nothing
    // is due.
    void update(uint64_t done, uint64_t items);
    // Ends the line (once) if anything was shown.
    void finish();

    // True when standard error is a terminal.
    static bool stderrIsTerminal();

private:
    void show(uint64_t done, uint64_t items);

    std::ostream& m_out;
    bool m_enabled;
    std::string m_label;
    uint64_t m_total;
    bool m_shown = false;
    unsigned m_calls = 0;
    std::chrono::steady_clock::time_point m_last;
};

}  // namespace zeg_tools

#endif
