#include "norm_utility/ErrorLine.h"

#include <cstdio>

namespace norm_utility {

namespace {
thread_local ErrorLineCapture* t_capture = nullptr;
}

void writeErrorLine(const std::string& line) {
    std::string out;
    out.reserve(line.size() + 1);
    out.append(line).push_back('\n');
    std::fwrite(out.data(), 1, out.size(), stderr);
    std::fflush(stderr);
    if (t_capture != nullptr) t_capture->m_lines += out;
}

ErrorLineCapture::ErrorLineCapture() : m_outer(t_capture) { t_capture = this; }

ErrorLineCapture::~ErrorLineCapture() { t_capture = m_outer; }

}  // namespace norm_utility
