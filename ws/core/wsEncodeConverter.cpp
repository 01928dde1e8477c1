#include "ws/core/wsEncodeConverter.h"

#include <cstdint>
#include <vector>

#include "ws/core/wsHot.h"

namespace {

// The sizes arrive as unsigned long but the rules compare them as signed
// 32-bit values (a huge size reads as negative and yields an empty run).
int32_t asInt32(unsigned long value) {
    return static_cast<int32_t>(static_cast<uint32_t>(value));
}

}  // namespace

WS_HOT int EncodeConverter::utf16ToUtf8(const unsigned short* in, unsigned long n,
                                        unsigned char* out, unsigned long outSize) {
    const int32_t limit = asInt32(outSize - 3u);
    if (n == 0 || limit < 1) return 0;
    unsigned char* o = out;
    // Before each unit at most 3 bytes per earlier unit are written, so when
    // 3 * (n - 1) < limit the limit can never stop the run: skip the check.
    if (n - 1 <= static_cast<unsigned long>(limit - 1) / 3) {
        for (const unsigned short* p = in; p != in + n; ++p) o += utf16ToUtf8(p, o);
        return static_cast<int>(o - out);
    }
    for (unsigned long i = 0; i < n && o - out < limit; ++i) o += utf16ToUtf8(in + i, o);
    return static_cast<int>(o - out);
}

WS_HOT int EncodeConverter::utf8ToUtf16(const unsigned char* in, unsigned long n,
                                        unsigned short* out, unsigned long outSize) {
    const int32_t room = asInt32(outSize);
    if (n == 0 || room <= 0) return 0;
    const unsigned char* p = in;
    const unsigned char* const end = in + n;
    unsigned short* o = out;
    unsigned short* const full = out + room;
    // Bounded decoding: a lead byte near the end must not pull followers
    // from beyond n, because callers hand in slices of longer buffers.
    while (p != end && o != full) {
        const int used = decodeOne(p, static_cast<std::size_t>(end - p), o);
        if (used == 0) break;
        p += used;
        ++o;
    }
    return static_cast<int>(o - out);
}

void EncodeConverter::swapEndian(unsigned short* buf, unsigned long n) {
    for (unsigned long i = 0; i < n; ++i) {
        buf[i] = static_cast<unsigned short>((buf[i] << 8) | (buf[i] >> 8));
    }
}

unsigned long EncodeConverter::walk(const unsigned char* s, unsigned long n, long& count) {
    unsigned long pos = 0;
    count = 0;
    while (pos < n) {
        const unsigned char b = s[pos];
        const unsigned long left = n - pos;
        unsigned long step = 0;
        if (b < 0x80) {
            step = 1;
        } else if ((b & 0xF0) == 0xE0) {
            if (left >= 3 && isContinuation(s[pos + 1]) && isContinuation(s[pos + 2])) step = 3;
        } else if ((b & 0xE0) == 0xC0) {
            if (left >= 2 && isContinuation(s[pos + 1])) step = 2;
        }
        if (step == 0) break;
        pos += step;
        ++count;
    }
    return pos;
}

bool EncodeConverter::isUTF8(const unsigned char* s, unsigned long n) {
    long count = 0;
    return walk(s, n, count) == n;
}

long EncodeConverter::getUTF8Len(const unsigned char* s, unsigned long n) {
    long count = 0;
    return walk(s, n, count) == n ? 0 : count;
}

EncodeConverter::Utf8String EncodeConverter::utf16ToUtf8(const Utf16String& text) {
    std::vector<unsigned char> buf(3 * text.size() + 1);
    const int written = utf16ToUtf8(text.data(), text.size(), buf.data(), buf.size());
    return Utf8String(buf.data(), static_cast<std::size_t>(written));
}

EncodeConverter::Utf16String EncodeConverter::utf8ToUtf16(const Utf8String& text) {
    std::vector<unsigned short> buf(text.size() + 1);
    const int written = utf8ToUtf16(text.data(), text.size(), buf.data(), buf.size());
    return Utf16String(buf.data(), static_cast<std::size_t>(written));
}

bool EncodeConverter::isUTF8(const Utf8String& text) {
    return isUTF8(text.data(), text.size());
}

long EncodeConverter::getUTF8Len(const Utf8String& text) {
    return getUTF8Len(text.data(), text.size());
}
