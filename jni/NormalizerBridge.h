#ifndef ZEG_JNI_NORMALIZERBRIDGE_H
#define ZEG_JNI_NORMALIZERBRIDGE_H

#include <cstddef>
#include <string>

namespace normalize {

class NormalizeIntf;

// A query of this many bytes or more is not normalised (the result is "").
constexpr std::size_t kQueryLimitBytes = 512;
// The result buffer, its terminating zero byte included.
constexpr std::size_t kResultBufferBytes = 2048;

// What the Java method normalize(query, mode) returns, as the bytes handed
// to the JVM: `query` is the zero-terminated modified UTF-8 of the Java
// string. "" when `norm` or `query` is null or the query is too long;
// otherwise the UTF-8 result of norm->doNormalize(query, mode, out, false,
// false), whatever it returned, up to its first zero byte. A result that
// would not fit the buffer is cut at the last character boundary that
// does. Throws what doNormalize throws (std::bad_alloc).
std::string normalizeForJava(NormalizeIntf* norm, const char* query, int mode);
// The same for the bytes of `query` up to its first zero byte, into
// `result` (not `query`), reusing its memory: a caller that keeps both
// strings from call to call allocates nothing once they have grown.
void normalizeForJava(NormalizeIntf* norm, const std::string& query, int mode,
                      std::string& result);

}  // namespace normalize

#endif
