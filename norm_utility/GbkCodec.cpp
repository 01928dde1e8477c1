#include "norm_utility/GbkCodec.h"

#include <iconv.h>

#include <memory>
#include <new>
#include <string>

#include "ws/core/wsPrefault.h"

namespace norm_utility {

namespace {

const unsigned kFirstLead = 0x81;
const unsigned kLastLead = 0xFE;
const unsigned kFirstTrail = 0x40;
const unsigned kLastTrail = 0xFE;

// An iconv descriptor for the build, closed on every path.
class Descriptor {
public:
    // `growth`: output bytes an input byte can take at most.
    Descriptor(const char* from, const char* to, size_t growth)
        : m_cd(iconv_open(to, from)), m_growth(growth) {}
    ~Descriptor() {
        if (ok()) iconv_close(m_cd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    bool ok() const { return m_cd != reinterpret_cast<iconv_t>(-1); }
    // One call from a reset state on n bytes at `in`, into `out` (kept at
    // its size: room for `growth` bytes an input byte). The input bytes
    // consumed; `produced` gets the output bytes.
    size_t run(const char* in, size_t n, std::string& out, size_t& produced) const {
        iconv(m_cd, nullptr, nullptr, nullptr, nullptr);
        if (out.size() < m_growth * n + 8) out.resize(m_growth * n + 8);
        char* src = const_cast<char*>(in);
        size_t srcLeft = n;
        char* dst = &out[0];
        size_t dstLeft = out.size();
        iconv(m_cd, &src, &srcLeft, &dst, &dstLeft);
        produced = out.size() - dstLeft;
        return n - srcLeft;
    }

private:
    iconv_t m_cd;
    size_t m_growth;
};

// Length of the UTF-8 sequence that `lead` starts; 0 for a stray byte.
size_t utf8Length(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    return 0;
}

void appendUtf8(uint32_t cp, std::string& s) {
    if (cp < 0x80) {
        s.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        s.push_back(static_cast<char>(0xC0 | cp >> 6));
        s.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        s.push_back(static_cast<char>(0xE0 | cp >> 12));
        s.push_back(static_cast<char>(0x80 | (cp >> 6 & 0x3F)));
        s.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

// The BMP code point of one well-formed UTF-8 sequence of 1-3 bytes.
uint32_t decodeUtf8(const unsigned char* s, size_t len) {
    if (len == 1) return s[0];
    if (len == 2) return (s[0] & 0x1Fu) << 6 | (s[1] & 0x3Fu);
    return (s[0] & 0x0Fu) << 12 | (s[1] & 0x3Fu) << 6 | (s[2] & 0x3Fu);
}

// The characters GBK decodes to (and ASCII), encoded back by iconv in one
// call; a character iconv encodes that no pair decodes to stays to iconv.
bool reverseTable(const Descriptor& encoder, const std::string& decoded,
                  std::vector<uint16_t>& gbkOf) {
    ws::assignPrefaulted(gbkOf, 0x10000, uint16_t{0});
    std::string in, out;
    for (unsigned b = 1; b < 0x80; ++b) appendUtf8(b, in);
    in += decoded;
    size_t produced = 0;
    if (encoder.run(in.data(), in.size(), out, produced) != in.size()) return false;
    out.resize(produced);
    size_t at = 0;
    const auto* src = reinterpret_cast<const unsigned char*>(in.data());
    const auto* dst = reinterpret_cast<const unsigned char*>(out.data());
    for (size_t i = 0; i < in.size();) {
        const size_t len = utf8Length(src[i]);
        if (len == 0 || at >= out.size()) return false;
        const uint32_t cp = decodeUtf8(src + i, len);
        uint16_t gbk = dst[at];
        size_t width = 1;
        if (dst[at] >= kFirstLead) {
            if (at + 1 >= out.size()) return false;
            gbk = static_cast<uint16_t>(dst[at] << 8 | dst[at + 1]);
            width = 2;
        }
        if (cp != 0 && gbk != 0) gbkOf[cp] = gbk;
        at += width;
        i += len;
    }
    return at == out.size();
}

}  // namespace

const GbkCodec* GbkCodec::instance() {
    static const std::unique_ptr<GbkCodec> codec = [] {
        std::unique_ptr<GbkCodec> c(new (std::nothrow) GbkCodec());
        try {
            if (c && !c->build()) c.reset();
        } catch (const std::bad_alloc&) {
            c.reset();
        }
        return c;
    }();
    return codec.get();
}

bool GbkCodec::build() {
    // A GBK byte becomes at most three UTF-8 bytes (0x80 is the euro sign);
    // UTF-8 never grows into GBK.
    const Descriptor decoder("gbk", "utf-8", 3);
    const Descriptor encoder("utf-8", "gbk", 1);
    if (!decoder.ok() || !encoder.ok()) return false;
    std::string in, out;
    size_t produced = 0;
    for (unsigned b = 1; b < 256; ++b) {
        const char byte = static_cast<char>(b);
        if (decoder.run(&byte, 1, out, produced) != 1 || produced == 0 || produced > 3 ||
            utf8Length(static_cast<unsigned char>(out[0])) != produced)
            continue;
        m_single[b].len = static_cast<uint8_t>(produced);
        for (size_t k = 0; k < produced; ++k) m_single[b].b[k] = static_cast<uint8_t>(out[k]);
    }
    ws::assignPrefaulted(m_double, (kLastLead - kFirstLead + 1) * 256, Bytes{});
    // A lead's pairs in runs: a run stops at a pair iconv refuses, which
    // stays to iconv, and the next run starts after it.
    std::string decoded;  // every character the pairs decode to, for the reverse table
    for (unsigned lead = kFirstLead; lead <= kLastLead; ++lead) {
        if (m_single[lead].len != 0) continue;  // a lead that stands alone: iconv's
        in.clear();
        for (unsigned t = kFirstTrail; t <= kLastTrail; ++t) {
            in.push_back(static_cast<char>(lead));
            in.push_back(static_cast<char>(t));
        }
        unsigned trail = kFirstTrail;
        while (trail <= kLastTrail) {
            const size_t from = 2 * (trail - kFirstTrail);
            const size_t used = decoder.run(in.data() + from, in.size() - from, out, produced) / 2;
            size_t at = 0;
            for (size_t k = 0; k < used; ++k) {
                const size_t len =
                    at < produced ? utf8Length(static_cast<unsigned char>(out[at])) : 0;
                if (len == 0 || at + len > produced) return false;  // not one character a pair
                Bytes& e = m_double[(lead - kFirstLead) * 256 + trail + k];
                e.len = static_cast<uint8_t>(len);
                for (size_t j = 0; j < len; ++j) e.b[j] = static_cast<uint8_t>(out[at + j]);
                decoded.append(out, at, len);
                at += len;
            }
            if (at != produced) return false;
            trail += static_cast<unsigned>(used) + 1;  // past the refused pair
        }
    }
    return reverseTable(encoder, decoded, m_gbkOf);
}


void GbkCodec::convert(Direction d, const unsigned char* in, size_t n, size_t* pos,
                       unsigned char* out, size_t room, size_t* written) const {
    if (d == kGbkToUtf8)
        toUtf8(in, n, pos, out, room, written);
    else
        toGbk(in, n, pos, out, room, written);
}

void GbkCodec::toUtf8(const unsigned char* in, size_t n, size_t* pos, unsigned char* out,
                      size_t room, size_t* written) const {
    size_t i = *pos, w = *written;
    while (i < n) {
        const unsigned char b = in[i];
        const Bytes* e = &m_single[b];
        size_t width = 1;
        if (e->len == 0) {
            if (b < kFirstLead || b > kLastLead || i + 1 >= n) break;
            e = &m_double[(b - kFirstLead) * 256 + in[i + 1]];
            width = 2;
            if (e->len == 0) break;
        }
        if (room - w < e->len) break;
        for (unsigned k = 0; k < e->len; ++k) out[w + k] = e->b[k];
        w += e->len;
        i += width;
    }
    *pos = i;
    *written = w;
}

void GbkCodec::toGbk(const unsigned char* in, size_t n, size_t* pos, unsigned char* out,
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
        const uint16_t gbk = m_gbkOf[decodeUtf8(in + i, len)];
        if (gbk == 0) break;
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
