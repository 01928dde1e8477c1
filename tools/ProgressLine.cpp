#include "tools/ProgressLine.h"

#include <unistd.h>

namespace zeg_tools {

namespace {

const auto kInterval = std::chrono::milliseconds(200);
// Looking at the clock for every line would cost more than the line.
const unsigned kCallsPerCheck = 4096;

}  // namespace

ProgressLine::ProgressLine(std::ostream& out, bool enabled, const std::string& label,
                           uint64_t total)
    : m_out(out), m_enabled(enabled), m_label(label), m_total(total),
      m_last(std::chrono::steady_clock::now()) {}

ProgressLine::~ProgressLine() { finish(); }

bool ProgressLine::stderrIsTerminal() { return isatty(STDERR_FILENO) == 1; }

void ProgressLine::update(uint64_t done, uint64_t items) {
    if (!m_enabled || ++m_calls % kCallsPerCheck != 0) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - m_last < kInterval) return;
    m_last = now;
    show(done, items);
}

void ProgressLine::show(uint64_t done, uint64_t items) {
    m_out << '\r' << m_label << ": " << items << " lines";
    if (m_total > 0) m_out << " (" << (done >= m_total ? 100 : done * 100 / m_total) << "%)";
    m_out.flush();
    m_shown = true;
}

void ProgressLine::finish() {
    if (m_shown) m_out << '\n';
    m_shown = false;
}

}  // namespace zeg_tools
