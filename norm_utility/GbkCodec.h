#ifndef ZEG_NORM_UTILITY_GBKCODEC_H
#define ZEG_NORM_UTILITY_GBKCODEC_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace norm_utility {

// Table-driven GBK <-> UTF-8 for the characters iconv converts one at a
// time, so that a query's conversions do not go through iconv's generic
// machinery. The tables are iconv's own answers: built once per process by
// asking glibc's converter about every one- and two-byte GBK sequence and
// every BMP character, so a converted character is always what iconv gives.
// What the tables do not cover (invalid or cut sequences, characters beyond
// the BMP, NUL) is left to iconv by the caller.
// Thread safety: instance() builds under the static-initialisation lock;
// the tables are then only read.
class GbkCodec {
public:
    enum Direction { kGbkToUtf8, kUtf8ToGbk };

    // The process's codec; null when iconv lacks GBK or memory ran out.
    static const GbkCodec* instance();

    // Converts from in[*pos] while the tables know the next character and
    // its bytes fit in `room` bytes at out[*written]; advances both. Stops
    // at the first character it leaves to iconv (or at the end).
    void convert(Direction d, const unsigned char* in, std::size_t n, std::size_t* pos,
                 unsigned char* out, std::size_t room, std::size_t* written) const;

private:
    // One character's bytes in the target encoding; len 0 = left to iconv.
    struct Bytes {
        uint8_t len;
        uint8_t b[3];
    };

    GbkCodec() = default;
    bool build();
    void toUtf8(const unsigned char* in, std::size_t n, std::size_t* pos, unsigned char* out,
                std::size_t room, std::size_t* written) const;
    void toGbk(const unsigned char* in, std::size_t n, std::size_t* pos, unsigned char* out,
               std::size_t room, std::size_t* written) const;

    Bytes m_single[256] = {};       // GBK one-byte sequences
    std::vector<Bytes> m_double;    // GBK lead 0x81-0xFE x trail 0x00-0xFF
    std::vector<uint16_t> m_gbkOf;  // BMP code point -> GBK (see build)
};

}  // namespace norm_utility

#endif
