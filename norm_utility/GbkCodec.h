#ifndef ZEG_NORM_UTILITY_GBKCODEC_H
#define ZEG_NORM_UTILITY_GBKCODEC_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <mutex>

namespace norm_utility {

// Table-driven GBK <-> UTF-8 for the characters iconv converts one at a
// time, so that a query's conversions do not go through iconv's generic
// machinery. The tables hold iconv's own answers, asked for on first use: a
// GBK lead byte's row of pairs the first time a pair with that lead is
// converted, a BMP character's GBK bytes the first time it is encoded. So
// a converted character is always what iconv gives, and start-up does not
// pay for the whole code page. What the tables do not cover (invalid or cut
// sequences, characters beyond the BMP, NUL) is left to iconv by the caller.
// Thread safety: convert may run on any number of threads; a table part
// is filled under a lock and published before it is read.
class GbkCodec {
public:
    enum Direction { kGbkToUtf8, kUtf8ToGbk };

    // The process's codec; null when iconv lacks GBK or memory ran out.
    static const GbkCodec* instance();

    ~GbkCodec();
    GbkCodec(const GbkCodec&) = delete;
    GbkCodec& operator=(const GbkCodec&) = delete;

    // Converts from in[*pos] while the tables know the next character and
    // its bytes fit in `room` bytes at out[*written]; advances both. Stops
    // at the first character it leaves to iconv (or at the end).
    void convert(Direction d, const unsigned char* in, std::size_t n, std::size_t* pos,
                 unsigned char* out, std::size_t room, std::size_t* written) const;

    // The same answers with UTF-16 on the other side, all or nothing: false
    // as soon as a character is one the tables leave to iconv (the caller
    // then goes through UTF-8 and iconv). `out` has room for n units / 2n
    // bytes; *written gets what was written.
    bool gbkToUtf16(const unsigned char* in, std::size_t n, unsigned short* out,
                    std::size_t* written) const;
    bool utf16ToGbk(const unsigned short* in, std::size_t n, unsigned char* out,
                    std::size_t* written) const;

private:
    // One character's bytes in the target encoding; len 0 = left to iconv.
    struct Bytes {
        uint8_t len;
        uint8_t b[3];
    };
    class Descriptor;

    GbkCodec();
    bool open();
    // Lead `lead`'s row of pairs (trail byte 0x00-0xFF), filled on first use.
    const Bytes* row(unsigned lead) const;
    const Bytes* entryAt(const unsigned char* in, std::size_t n, std::size_t i,
                         std::size_t& width) const;
    void fillRow(unsigned lead) const;
    // The GBK bytes of BMP character `cp` (one byte, or lead << 8 | trail);
    // kLeftToIconv when iconv has no one- or two-byte answer.
    uint16_t gbkOf(uint32_t cp) const;
    uint16_t askGbkOf(uint32_t cp) const;
    void toUtf8(const unsigned char* in, std::size_t n, std::size_t* pos, unsigned char* out,
                std::size_t room, std::size_t* written) const;
    void toGbk(const unsigned char* in, std::size_t n, std::size_t* pos, unsigned char* out,
               std::size_t room, std::size_t* written) const;

    static const uint16_t kUnknown = 0;
    static const uint16_t kLeftToIconv = 0xFFFF;  // no GBK pair has trail 0xFF

    std::unique_ptr<Descriptor> m_decoder;
    std::unique_ptr<Descriptor> m_encoder;
    mutable std::mutex m_fill;  // guards the descriptors and every fill
    Bytes m_single[256] = {};   // GBK one-byte sequences
    // Zeroed pages from the system, touched only where a row is filled.
    struct FreeDeleter {
        void operator()(void* p) const { std::free(p); }
    };
    std::unique_ptr<Bytes[], FreeDeleter> m_double;  // lead x trail, rows 0x81-0xFE used
    mutable uint8_t m_rowReady[256] = {};            // by lead; read and set atomically
    std::unique_ptr<uint16_t[], FreeDeleter> m_gbkOf;  // by BMP code point; atomically
};

}  // namespace norm_utility

#endif
