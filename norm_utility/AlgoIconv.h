#ifndef ZEG_NORM_UTILITY_ALGOICONV_H
#define ZEG_NORM_UTILITY_ALGOICONV_H

#include <iconv.h>

#include "norm_utility/GbkCodec.h"

#include <string>
#include <vector>

namespace norm_utility {

// One iconv conversion descriptor, closed on destruction. Not copyable.
// Also offers a one-shot conversion and two UTF-8 detectors.
// Thread safety: a descriptor carries shift state, so one object serves one
// thread at a time; convCharset and the detectors are safe anywhere.
class AlgoIconv {
public:
    AlgoIconv() = default;
    ~AlgoIconv();
    AlgoIconv(const AlgoIconv&) = delete;
    AlgoIconv& operator=(const AlgoIconv&) = delete;

    // Closes any open descriptor and opens fromCode -> toCode.
    // Returns 0 on success, -1 on failure (the object is then closed).
    int open(const char* fromCode, const char* toCode);
    void close();
    bool isOpen() const { return m_cd != kClosed; }

    // Converts `length` bytes of `input`. `output` is grown (never shrunk) to
    // at least 2 * length + 1 bytes and its whole size is offered as room;
    // conversion stops when the room is full. Undecodable input bytes are
    // skipped one at a time. A zero byte follows the converted bytes.
    // Returns the number of converted bytes. Allocates only to grow `output`.
    // Between GBK and UTF-8, characters go through tables of iconv's own
    // answers (GbkCodec) and only the rest through iconv: same bytes.
    int conv(const void* input, int length, std::vector<char>& output);

    // One-shot conversion with a descriptor of its own and a single iconv
    // call (no skipping). *output is malloc'ed (caller frees) with room for
    // 4 * length bytes and a zero byte; *outputLength receives the bytes
    // written. A length of 0 means strlen(input). Returns the input bytes
    // consumed, or -1 (with *output null, *outputLength -1) when the
    // descriptor cannot be opened or memory is short.
    static int convCharset(const char* fromCode, const char* toCode, const char* input, int length,
                           char** output, int* outputLength);

    // A statistical guess for mixed text: false for pure ASCII (and the
    // empty string); otherwise true when nearly all non-ASCII bytes form
    // plausible two- or three-byte sequences.
    static bool IsUTF8(const std::string& text);

    // A strict walk over one-, three- and four-byte sequences. Any lead byte
    // 0xC0-0xDF followed by a continuation byte is rejected: two-byte
    // characters deliberately do not pass. Empty and ASCII text pass.
    static bool isUTF8(const std::string& text);

private:
    static inline const iconv_t kClosed = reinterpret_cast<iconv_t>(-1);

    iconv_t m_cd = kClosed;
    // Set for GBK <-> UTF-8: the characters its tables know skip iconv.
    const GbkCodec* m_codec = nullptr;
    GbkCodec::Direction m_direction = GbkCodec::kGbkToUtf8;
};

}  // namespace norm_utility

#endif
