#ifndef ZEG_WS_CORE_WSENCODECONVERTER_H
#define ZEG_WS_CORE_WSENCODECONVERTER_H

#include <cstddef>
#include <string>

#include "ws/core/wsExport.h"

// Conversion between UTF-8 and UTF-16 in the segmenter's restricted form.
// Every 16-bit code unit is one character: surrogates are encoded one by one
// (never paired) and four-byte UTF-8 sequences are not accepted, so a code
// unit never takes more than three UTF-8 bytes. Every caller sizes its UTF-8
// buffers as 3 * code units + 1 and relies on that bound.
// No operation reports an error: malformed UTF-8 decodes to
// REPLACEMENT_CHAR or ends a run early, and a run stops at the end of its
// output buffer; a run result below 1 is what callers treat as a failure.
// All functions are pure; safe from any thread.
class WS_EXPORT EncodeConverter {
public:
    typedef std::basic_string<unsigned short> Utf16String;
    typedef std::basic_string<unsigned char> Utf8String;

    // Stored for a two- or three-byte sequence whose followers are not
    // continuation bytes (U+25A1 WHITE SQUARE).
    static constexpr unsigned short REPLACEMENT_CHAR = 0x25A1;

    // Encodes the code unit *c into out, which must have room for 3 bytes.
    // Returns the bytes written: 1, 2 or 3.
    static int utf16ToUtf8(const unsigned short* c, unsigned char* out);

    // Encodes the n code units of `in` into `out` (outSize bytes) while the
    // bytes written are fewer than outSize - 3 (taken as a signed 32-bit
    // value). Returns the bytes written; 0 when n is 0 or outSize < 4. With
    // outSize = 3 * n + 1 the whole run always fits. No terminating zero.
    static int utf16ToUtf8(const unsigned short* in, unsigned long n, unsigned char* out,
                           unsigned long outSize);

    // Decodes one character starting at `in` into *out. Returns the bytes
    // consumed: 1, 2 or 3 (a two- or three-byte lead consumes its full
    // length even when malformed, storing REPLACEMENT_CHAR), or 0 with
    // nothing stored for a continuation byte or a four-byte lead.
    // REQUIRES: a lead byte's followers are readable up to the first one
    // that is not a continuation byte (so a NUL-terminated string is safe).
    static int utf8ToUtf16(const unsigned char* in, unsigned short* out);

    // Decodes the n bytes of `in` into `out` (outSize code units, taken as a
    // signed 32-bit value) until the input is consumed, the output is full
    // or a byte cannot start a character. Returns the code units written;
    // 0 when n is 0 or outSize is not positive. Reads nothing outside
    // [in, in + n): a sequence cut by the end of the input is malformed.
    // No terminating zero.
    static int utf8ToUtf16(const unsigned char* in, unsigned long n, unsigned short* out,
                           unsigned long outSize);

    // Swaps the two bytes of each of the n code units of buf in place.
    static void swapEndian(unsigned short* buf, unsigned long n);

    // True when the n bytes of s are a sequence of one-, two- and three-byte
    // characters that ends exactly at n (true for n = 0).
    static bool isUTF8(const unsigned char* s, unsigned long n);

    // Inverted on purpose, as its callers expect: 0 when isUTF8(s, n) holds,
    // else the number of characters before the first byte that breaks it.
    static long getUTF8Len(const unsigned char* s, unsigned long n);

    // Whole-string forms of the run operations above.
    static Utf8String utf16ToUtf8(const Utf16String& text);
    static Utf16String utf8ToUtf16(const Utf8String& text);
    static bool isUTF8(const Utf8String& text);
    static long getUTF8Len(const Utf8String& text);

private:
    static bool isContinuation(unsigned char b) { return (b & 0xC0) == 0x80; }
    // Decodes one character reading at most `avail` bytes (avail >= 1); a
    // sequence longer than `avail` is malformed and consumes `avail` bytes.
    static int decodeOne(const unsigned char* in, std::size_t avail, unsigned short* out);
    // Walks whole characters through [s, s + n); returns where the walk
    // stopped and sets `count` to the characters walked.
    static unsigned long walk(const unsigned char* s, unsigned long n, long& count);
};

// The single-unit forms run on every character of every query: inline.

inline int EncodeConverter::utf16ToUtf8(const unsigned short* c, unsigned char* out) {
    const unsigned v = *c;
    if (v < 0x80) {
        out[0] = static_cast<unsigned char>(v);
        return 1;
    }
    if (v < 0x800) {
        out[0] = static_cast<unsigned char>(0xC0 | (v >> 6));
        out[1] = static_cast<unsigned char>(0x80 | (v & 0x3F));
        return 2;
    }
    out[0] = static_cast<unsigned char>(0xE0 | (v >> 12));
    out[1] = static_cast<unsigned char>(0x80 | ((v >> 6) & 0x3F));
    out[2] = static_cast<unsigned char>(0x80 | (v & 0x3F));
    return 3;
}

inline int EncodeConverter::decodeOne(const unsigned char* in, std::size_t avail,
                                      unsigned short* out) {
    const unsigned b0 = in[0];
    if (b0 < 0x80) {
        *out = static_cast<unsigned short>(b0);
        return 1;
    }
    // The && chains stop at the first non-continuation byte, so nothing
    // after a NUL terminator is ever read.
    if ((b0 & 0xF0) == 0xE0) {
        if (avail >= 3 && isContinuation(in[1]) && isContinuation(in[2])) {
            *out = static_cast<unsigned short>(((b0 & 0x0F) << 12) | ((in[1] & 0x3F) << 6) |
                                               (in[2] & 0x3F));
            return 3;
        }
        *out = REPLACEMENT_CHAR;
        return avail < 3 ? static_cast<int>(avail) : 3;
    }
    if ((b0 & 0xE0) == 0xC0) {
        if (avail >= 2 && isContinuation(in[1])) {
            *out = static_cast<unsigned short>(((b0 & 0x1F) << 6) | (in[1] & 0x3F));
            return 2;
        }
        *out = REPLACEMENT_CHAR;
        return avail < 2 ? static_cast<int>(avail) : 2;
    }
    return 0;
}

inline int EncodeConverter::utf8ToUtf16(const unsigned char* in, unsigned short* out) {
    return decodeOne(in, 3, out);
}

#endif
