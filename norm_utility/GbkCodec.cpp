#include "norm_utility/GbkCodec.h"

#include <iconv.h>

#include <algorithm>
#include <new>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsHot.h"

namespace norm_utility {

namespace {

const unsigned kFirstLead = 0x81;
const unsigned kLastLead = 0xFE;
const unsigned kFirstTrail = 0x40;
const unsigned kLastTrail = 0xFE;
const unsigned kTrails = kLastTrail - kFirstTrail + 1;

// Length of the UTF-8 sequence that `lead` starts; 0 for a stray byte.
size_t utf8Length(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    return 0;
}

// The BMP code point of one well-formed UTF-8 sequence of 1-3 bytes.
uint32_t decodeUtf8(const unsigned char* s, size_t len) {
    if (len == 1) return s[0];
    if (len == 2) return (s[0] & 0x1Fu) << 6 | (s[1] & 0x3Fu);
    return (s[0] & 0x0Fu) << 12 | (s[1] & 0x3Fu) << 6 | (s[2] & 0x3Fu);
}

// Zeroed memory for `n` objects of T, its pages left untouched until used.
template <typename T>
T* zeroed(size_t n) {
    return static_cast<T*>(std::calloc(n, sizeof(T)));
}

}  // namespace

// An iconv descriptor, closed on every path, with an output buffer big
// enough for a row of pairs: filling a table part allocates nothing.
class GbkCodec::Descriptor {
public:
    static const size_t kMaxInput = 2 * kTrails;

    Descriptor(const char* from, const char* to) : m_cd(iconv_open(to, from)) {}
    ~Descriptor() {
        if (ok()) iconv_close(m_cd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    bool ok() const { return m_cd != reinterpret_cast<iconv_t>(-1); }
    // One call from a reset state on n <= kMaxInput bytes at `in`. The input
    // bytes consumed; `produced` gets the output bytes, at output().
    size_t run(const char* in, size_t n, size_t& produced) {
        iconv(m_cd, nullptr, nullptr, nullptr, nullptr);
        char* src = const_cast<char*>(in);
        size_t srcLeft = n;
        char* dst = m_out;
        size_t dstLeft = sizeof m_out;
        iconv(m_cd, &src, &srcLeft, &dst, &dstLeft);
        produced = sizeof m_out - dstLeft;
        return n - srcLeft;
    }
    const char* output() const { return m_out; }

private:
    iconv_t m_cd;
    // A GBK byte becomes at most three UTF-8 bytes (0x80 is the euro sign).
    char m_out[3 * kMaxInput + 8];
};

GbkCodec::GbkCodec() = default;

GbkCodec::~GbkCodec() = default;

const GbkCodec* GbkCodec::instance() {
    static const std::unique_ptr<GbkCodec> codec = [] {
        std::unique_ptr<GbkCodec> c(new (std::nothrow) GbkCodec());
        try {
            if (c && !c->open()) c.reset();
        } catch (const std::bad_alloc&) {
            c.reset();
        }
        return c;
    }();
    return codec.get();
}

bool GbkCodec::open() {
    m_decoder.reset(new Descriptor("gbk", "utf-8"));
    m_encoder.reset(new Descriptor("utf-8", "gbk"));
    // A row per byte value, not only per lead: the table is then big enough
    // for malloc to take it straight from the system, and its zero pages
    // cost nothing until a row is filled.
    m_double.reset(zeroed<Bytes>(256 * 256));
    m_gbkOf.reset(zeroed<uint16_t>(0x10000));
    if (!m_decoder->ok() || !m_encoder->ok() || !m_double || !m_gbkOf) return false;
    size_t produced = 0;
    for (unsigned b = 1; b < 256; ++b) {
        const char byte = static_cast<char>(b);
        if (m_decoder->run(&byte, 1, produced) != 1 || produced == 0 || produced > 3 ||
            utf8Length(static_cast<unsigned char>(m_decoder->output()[0])) != produced)
            continue;
        m_single[b].len = static_cast<uint8_t>(produced);
        for (size_t k = 0; k < produced; ++k)
            m_single[b].b[k] = static_cast<uint8_t>(m_decoder->output()[k]);
    }
    return true;
}

inline const GbkCodec::Bytes* GbkCodec::row(unsigned lead) const {
    if (__atomic_load_n(&m_rowReady[lead], __ATOMIC_ACQUIRE) == 0) fillRow(lead);
    return &m_double[lead * 256];
}

// The row's pairs in runs: a run stops at a pair iconv refuses, which stays
// to iconv, and the next run starts after it. A row iconv answers in a way
// the table cannot hold stays to iconv whole.
__attribute__((noinline)) void GbkCodec::fillRow(unsigned lead) const {
    std::lock_guard<std::mutex> lock(m_fill);
    if (m_rowReady[lead] != 0) return;
    Bytes* const entries = &m_double[lead * 256];
    Bytes filled[256] = {};
    bool usable = m_single[lead].len == 0;  // a lead that stands alone: iconv's
    char in[Descriptor::kMaxInput];
    for (unsigned t = kFirstTrail; t <= kLastTrail; ++t) {
        in[2 * (t - kFirstTrail)] = static_cast<char>(lead);
        in[2 * (t - kFirstTrail) + 1] = static_cast<char>(t);
    }
    unsigned trail = kFirstTrail;
    while (usable && trail <= kLastTrail) {
        const size_t from = 2 * (trail - kFirstTrail);
        size_t produced = 0;
        const size_t used = m_decoder->run(in + from, sizeof in - from, produced) / 2;
        const char* out = m_decoder->output();
        size_t at = 0;
        for (size_t k = 0; usable && k < used; ++k) {
            const size_t len = at < produced ? utf8Length(static_cast<unsigned char>(out[at])) : 0;
            usable = len != 0 && at + len <= produced;  // one character a pair
            if (!usable) break;
            Bytes& e = filled[trail + k];
            e.len = static_cast<uint8_t>(len);
            for (size_t j = 0; j < len; ++j) e.b[j] = static_cast<uint8_t>(out[at + j]);
            at += len;
        }
        usable = usable && at == produced;
        trail += static_cast<unsigned>(used) + 1;  // past the refused pair
    }
    if (usable) std::copy(filled, filled + 256, entries);
    __atomic_store_n(&m_rowReady[lead], 1, __ATOMIC_RELEASE);
}

inline uint16_t GbkCodec::gbkOf(uint32_t cp) const {
    const uint16_t gbk = __atomic_load_n(&m_gbkOf[cp], __ATOMIC_RELAXED);
    return gbk != kUnknown ? gbk : askGbkOf(cp);
}

// One character encoded alone: a stateless encoding gives the same bytes
// inside any text.
__attribute__((noinline)) uint16_t GbkCodec::askGbkOf(uint32_t cp) const {
    uint16_t gbk = kLeftToIconv;
    if (cp != 0) {
        std::lock_guard<std::mutex> lock(m_fill);
        const unsigned short unit = static_cast<unsigned short>(cp);
        unsigned char bytes[3];
        const size_t len = static_cast<size_t>(EncodeConverter::utf16ToUtf8(&unit, bytes));
        const char* in = reinterpret_cast<const char*>(bytes);
        size_t produced = 0;
        const auto* out = reinterpret_cast<const unsigned char*>(m_encoder->output());
        if (m_encoder->run(in, len, produced) == len) {
            if (produced == 1 && out[0] != 0 && out[0] < kFirstLead)
                gbk = out[0];
            else if (produced == 2 && out[0] >= kFirstLead && out[1] != 0xFF)
                gbk = static_cast<uint16_t>(out[0] << 8 | out[1]);
        }
    }
    __atomic_store_n(&m_gbkOf[cp], gbk, __ATOMIC_RELAXED);
    return gbk;
}

WS_HOT void GbkCodec::convert(Direction d, const unsigned char* in, size_t n, size_t* pos,
                              unsigned char* out, size_t room, size_t* written) const {
    if (d == kGbkToUtf8)
        toUtf8(in, n, pos, out, room, written);
    else
        toGbk(in, n, pos, out, room, written);
}

// The entry of the GBK character at in[i] (of n bytes) and its width in
// bytes; null when the tables leave it to iconv.
inline const GbkCodec::Bytes* GbkCodec::entryAt(const unsigned char* in, size_t n, size_t i,
                                                size_t& width) const {
    const unsigned char b = in[i];
    width = 1;
    if (m_single[b].len != 0) return &m_single[b];
    if (b < kFirstLead || b > kLastLead || i + 1 >= n) return nullptr;
    width = 2;
    const Bytes* e = &row(b)[in[i + 1]];
    return e->len != 0 ? e : nullptr;
}

WS_HOT void GbkCodec::toUtf8(const unsigned char* in, size_t n, size_t* pos, unsigned char* out,
                             size_t room, size_t* written) const {
    size_t i = *pos, w = *written;
    size_t width = 0;
    while (i < n) {
        const Bytes* e = entryAt(in, n, i, width);
        if (e == nullptr || room - w < e->len) break;
        for (unsigned k = 0; k < e->len; ++k) out[w + k] = e->b[k];
        w += e->len;
        i += width;
    }
    *pos = i;
    *written = w;
}

WS_HOT bool GbkCodec::gbkToUtf16(const unsigned char* in, size_t n, unsigned short* out,
                                 size_t* written) const {
    size_t i = 0, w = 0, width = 0;
    while (i < n) {
        const Bytes* e = entryAt(in, n, i, width);
        if (e == nullptr) return false;
        // An entry is one BMP character (see fillRow): its UTF-8 decodes to one unit.
        out[w++] = static_cast<unsigned short>(decodeUtf8(e->b, e->len));
        i += width;
    }
    *written = w;
    return true;
}

WS_HOT bool GbkCodec::utf16ToGbk(const unsigned short* in, size_t n, unsigned char* out,
                                 size_t* written) const {
    size_t w = 0;
    for (size_t i = 0; i < n; ++i) {
        // A lone surrogate is one iconv refuses, like any unit without GBK bytes.
        const uint16_t gbk = gbkOf(in[i]);
        if (gbk == kLeftToIconv) return false;
        if (gbk > 0xFF) out[w++] = static_cast<unsigned char>(gbk >> 8);
        out[w++] = static_cast<unsigned char>(gbk & 0xFF);
    }
    *written = w;
    return true;
}

WS_HOT void GbkCodec::toGbk(const unsigned char* in, size_t n, size_t* pos, unsigned char* out,
                            size_t room, size_t* written) const {
    size_t i = *pos, w = *written;
    while (i < n) {
        const size_t len = utf8Length(in[i]);
        if (len == 0 || i + len > n) break;
        // Only well-formed, shortest sequences outside the surrogates.
        if (len >= 2 && (in[i + 1] & 0xC0) != 0x80) break;
        if (len == 3) {
            if ((in[i + 2] & 0xC0) != 0x80) break;
            if (in[i] == 0xE0 && in[i + 1] < 0xA0) break;
            if (in[i] == 0xED && in[i + 1] >= 0xA0) break;
        }
        const uint16_t gbk = gbkOf(decodeUtf8(in + i, len));
        if (gbk == kLeftToIconv) break;
        const size_t width = gbk > 0xFF ? 2 : 1;
        if (room - w < width) break;
        if (width == 2) out[w++] = static_cast<unsigned char>(gbk >> 8);
        out[w++] = static_cast<unsigned char>(gbk & 0xFF);
        i += len;
    }
    *pos = i;
    *written = w;
}

}  // namespace norm_utility
