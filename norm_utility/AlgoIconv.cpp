#include "norm_utility/AlgoIconv.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "ws/core/wsBufferGrowth.h"
#include "ws/core/wsHot.h"

namespace norm_utility {

namespace {

bool isContinuation(unsigned char c) { return c >= 0x80 && c <= 0xBF; }

bool inRange(unsigned char c, unsigned char lo, unsigned char hi) { return c >= lo && c <= hi; }

// The encoding names the tables serve, as callers spell them.
bool isGbk(const char* name) { return strcasecmp(name, "gbk") == 0; }
bool isUtf8(const char* name) {
    return strcasecmp(name, "utf-8") == 0 || strcasecmp(name, "utf8") == 0;
}

// Counts of one IsUTF8 walk.
struct Utf8Census {
    std::size_t ascii = 0;
    std::size_t multibyte = 0;
};

Utf8Census takeCensus(const unsigned char* b, std::size_t n) {
    Utf8Census c;
    std::size_t i = 0;
    while (i < n) {
        if (b[i] < 0x80) {
            ++c.ascii;
            ++i;
        } else if (inRange(b[i], 0xC0, 0xDF) && i + 1 < n) {
            c.multibyte += 2;  // the trail byte is not checked
            i += 2;
        } else if (inRange(b[i], 0xE0, 0xEF) && i + 2 < n && isContinuation(b[i + 1]) &&
                   isContinuation(b[i + 2])) {
            c.multibyte += 3;
            i += 3;
        } else {
            ++i;
        }
    }
    return c;
}

}  // namespace

AlgoIconv::~AlgoIconv() { close(); }

int AlgoIconv::open(const char* fromCode, const char* toCode) {
    close();
    if (fromCode == nullptr || toCode == nullptr) return -1;
    m_cd = iconv_open(toCode, fromCode);
    if (!isOpen()) return -1;
    if (isGbk(fromCode) && isUtf8(toCode)) {
        m_codec = GbkCodec::instance();
        m_direction = GbkCodec::kGbkToUtf8;
    } else if (isUtf8(fromCode) && isGbk(toCode)) {
        m_codec = GbkCodec::instance();
        m_direction = GbkCodec::kUtf8ToGbk;
    }
    return 0;
}

void AlgoIconv::close() {
    if (isOpen()) {
        iconv_close(m_cd);
        m_cd = kClosed;
    }
    m_codec = nullptr;
}

WS_HOT int AlgoIconv::conv(const void* input, int length, std::vector<char>& output) {
    if (input == nullptr || length < 0) length = 0;
    const std::size_t required = 2 * static_cast<std::size_t>(length) + 1;
    ws::growTo(output, required);

    char* in = static_cast<char*>(const_cast<void*>(input));
    std::size_t inLeft = static_cast<std::size_t>(length);
    char* out = output.data();
    std::size_t outLeft = output.size();
    if (!isOpen()) inLeft = 0;  // every call would fail and skip a byte: same result, no work
    if (m_codec != nullptr && inLeft > 0) {
        std::size_t done = 0, written = 0;
        m_codec->convert(m_direction, reinterpret_cast<const unsigned char*>(in), inLeft, &done,
                         reinterpret_cast<unsigned char*>(out), outLeft, &written);
        in += done;
        inLeft -= done;
        out += written;
        outLeft -= written;
    }
    if (inLeft > 0) iconv(m_cd, nullptr, nullptr, nullptr, nullptr);  // forget a previous call's state
    while (inLeft > 0) {
        if (iconv(m_cd, &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1)) break;
        if (errno == E2BIG) break;
        ++in;  // invalid or incomplete sequence: drop one byte, resume after it
        --inLeft;
    }
    const std::size_t written = output.size() - outLeft;
    if (written == output.size()) output.push_back(0);
    output[written] = 0;
    return static_cast<int>(written);
}

int AlgoIconv::convCharset(const char* fromCode, const char* toCode, const char* input, int length,
                           char** output, int* outputLength) {
    *output = nullptr;
    *outputLength = -1;
    AlgoIconv cd;
    if (cd.open(fromCode, toCode) != 0) return -1;
    if (input == nullptr) input = "";
    if (length <= 0) length = static_cast<int>(std::strlen(input));
    const std::size_t room = 4 * static_cast<std::size_t>(length);
    char* buffer = static_cast<char*>(std::malloc(room + 1));  // + the zero byte
    if (buffer == nullptr) return -1;

    char* in = const_cast<char*>(input);
    std::size_t inLeft = static_cast<std::size_t>(length);
    char* out = buffer;
    std::size_t outLeft = room;
    iconv(cd.m_cd, &in, &inLeft, &out, &outLeft);
    const std::size_t written = room - outLeft;
    buffer[written] = 0;
    *output = buffer;
    *outputLength = static_cast<int>(written);
    return length - static_cast<int>(inLeft);
}

bool AlgoIconv::IsUTF8(const std::string& text) {
    const Utf8Census c =
        takeCensus(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    if (c.ascii == text.size()) return false;
    const float share =
        static_cast<float>(c.multibyte) / static_cast<float>(text.size() - c.ascii) * 100.0f;
    const int p = static_cast<int>(share);
    return p > 98 || (p > 95 && c.multibyte > 30);
}

bool AlgoIconv::isUTF8(const std::string& text) {
    const auto* b = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t n = text.size();
    std::size_t i = 0;
    while (i < n) {
        const unsigned char c = b[i];
        if (c < 0x80) {
            ++i;
        } else if (inRange(c, 0xC0, 0xDF) && i + 1 < n && isContinuation(b[i + 1])) {
            return false;
        } else if (inRange(c, 0xE0, 0xEF) && i + 2 < n && isContinuation(b[i + 1]) &&
                   isContinuation(b[i + 2])) {
            i += 3;
        } else if (inRange(c, 0xF0, 0xF7) && i + 3 < n && isContinuation(b[i + 1]) &&
                   isContinuation(b[i + 2]) && isContinuation(b[i + 3])) {
            i += 4;
        } else {
            return false;
        }
    }
    return true;
}

}  // namespace norm_utility
