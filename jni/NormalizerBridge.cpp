#include "jni/NormalizerBridge.h"

#include <cstring>

#include "normalize/NormalizeIntf.h"

namespace normalize {

namespace {

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// The result as a zero-terminated buffer of kResultBufferBytes holds it:
// everything before the first zero byte, and if that is too long, as much
// as fits without splitting a character (a split one would reach the JVM
// as malformed modified UTF-8).
std::string bounded(const std::string& out) {
    std::size_t length = std::strlen(out.c_str());
    if (length < kResultBufferBytes) return out.substr(0, length);
    length = kResultBufferBytes - 1;
    std::size_t lead = length;
    while (lead > 0 && isContinuation(out[lead])) --lead;
    return out.substr(0, lead);
}

}  // namespace

std::string normalizeForJava(NormalizeIntf* norm, const char* query, int mode) {
    if (norm == nullptr || query == nullptr) return std::string();
    const std::size_t length = std::strlen(query);
    if (length >= kQueryLimitBytes) return std::string();
    std::string out;
    norm->doNormalize(std::string(query, length), mode, out, false, false);
    return bounded(out);
}

}  // namespace normalize
