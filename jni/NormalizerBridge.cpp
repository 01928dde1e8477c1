#include "jni/NormalizerBridge.h"

#include <cstring>

#include "normalize/NormalizeIntf.h"

namespace normalize {

namespace {

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Cuts `out` to what a zero-terminated buffer of kResultBufferBytes holds:
// everything before the first zero byte, and if that is too long, as much
// as fits without splitting a character (a split one would reach the JVM
// as malformed modified UTF-8).
void bound(std::string& out) {
    std::size_t length = std::strlen(out.c_str());
    if (length >= kResultBufferBytes) {
        length = kResultBufferBytes - 1;
        while (length > 0 && isContinuation(out[length])) --length;
    }
    out.resize(length);
}

}  // namespace

std::string normalizeForJava(NormalizeIntf* norm, const char* query, int mode) {
    std::string result;
    if (norm == nullptr || query == nullptr) return result;
    const std::size_t length = std::strlen(query);
    if (length >= kQueryLimitBytes) return result;
    normalizeForJava(norm, std::string(query, length), mode, result);
    return result;
}

void normalizeForJava(NormalizeIntf* norm, const std::string& query, int mode,
                      std::string& result) {
    result.clear();
    const std::size_t length = std::strlen(query.c_str());
    if (norm == nullptr || length >= kQueryLimitBytes) return;
    if (length == query.size())
        norm->doNormalize(query, mode, result, false, false);
    else
        norm->doNormalize(query.substr(0, length), mode, result, false, false);
    bound(result);
}

}  // namespace normalize
