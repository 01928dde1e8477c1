#include "ws/core/wsEncodeConverter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

typedef std::vector<unsigned char> Bytes;
typedef std::vector<unsigned short> Units;

Bytes encodeOne(unsigned short c) {
    unsigned char out[3] = {};
    const int n = EncodeConverter::utf16ToUtf8(&c, out);
    return Bytes(out, out + n);
}

// Decodes `in` as a run into a buffer of `room` units. The input lives in a
// heap block of exactly its size, so the sanitizer build catches any read
// past the end.
Units decodeRun(const Bytes& in, unsigned long room) {
    Units out(room + 1, 0xBEEF);
    const int n = EncodeConverter::utf8ToUtf16(in.data(), in.size(), out.data(), room);
    EXPECT_EQ(out[room], 0xBEEF) << "wrote past outSize";
    return Units(out.begin(), out.begin() + n);
}

const unsigned short R = EncodeConverter::REPLACEMENT_CHAR;

// What a run must give, character by character through the one-character
// form: a character cut by the end reads as padded with NUL and consumes
// only what is left.
Units decodeByCharacter(const Bytes& in, unsigned long room) {
    Units out;
    for (std::size_t p = 0; p < in.size() && out.size() < room;) {
        unsigned char padded[3] = {};
        std::copy(in.begin() + p, in.begin() + std::min(in.size(), p + 3), padded);
        unsigned short unit = 0;
        const int used = EncodeConverter::utf8ToUtf16(padded, &unit);
        if (used == 0) break;
        out.push_back(unit);
        p += std::min<std::size_t>(static_cast<std::size_t>(used), in.size() - p);
    }
    return out;
}

TEST(EncodeConverter, EncodesEachLengthClassAtItsBounds) {
    EXPECT_EQ(encodeOne(0x00), Bytes({0x00}));
    EXPECT_EQ(encodeOne(0x7F), Bytes({0x7F}));
    EXPECT_EQ(encodeOne(0x80), Bytes({0xC2, 0x80}));
    EXPECT_EQ(encodeOne(0x7FF), Bytes({0xDF, 0xBF}));
    EXPECT_EQ(encodeOne(0x800), Bytes({0xE0, 0xA0, 0x80}));
    EXPECT_EQ(encodeOne(0x4E2D), Bytes({0xE4, 0xB8, 0xAD}));  // 中
    EXPECT_EQ(encodeOne(0xFFFF), Bytes({0xEF, 0xBF, 0xBF}));
}

TEST(EncodeConverter, DecodesOneCharacterAndReportsBytesConsumed) {
    struct Case {
        Bytes in;
        int consumed;
        unsigned short unit;
    };
    const Case cases[] = {
        {{0x41, 0xFF, 0xFF}, 1, 0x41},
        {{0xC2, 0x80, 0xFF}, 2, 0x80},
        {{0xE4, 0xB8, 0xAD}, 3, 0x4E2D},
        {{0xED, 0xA0, 0xBD}, 3, 0xD83D},
        {{0xC0, 0x80, 0x00}, 2, 0x0000},       // overlong forms are not refused
        {{0xE4, 0x41, 0x41}, 3, R},            // malformed: full length consumed
        {{0xE4, 0xB8, 0x41}, 3, R},
        {{0xC3, 0x41, 0x41}, 2, R},
        {{0xE4, 0x00}, 3, R},                  // reading stops at the NUL
    };
    for (const Case& c : cases) {
        unsigned short unit = 0;
        EXPECT_EQ(EncodeConverter::utf8ToUtf16(c.in.data(), &unit), c.consumed);
        EXPECT_EQ(unit, c.unit);
    }
}

TEST(EncodeConverter, EveryCodeUnitRoundTripsThroughTheRuns) {
    Units all(0x10000);
    for (unsigned i = 0; i < all.size(); ++i) all[i] = static_cast<unsigned short>(i);
    Bytes utf8(3 * all.size() + 1);
    const int bytes = EncodeConverter::utf16ToUtf8(all.data(), all.size(), utf8.data(), utf8.size());
    EXPECT_EQ(bytes, 0x80 + 2 * (0x800 - 0x80) + 3 * (0x10000 - 0x800));
    utf8.resize(static_cast<std::size_t>(bytes));
    EXPECT_TRUE(EncodeConverter::isUTF8(utf8.data(), utf8.size()));
    EXPECT_EQ(decodeRun(utf8, all.size() + 1), all);
}

TEST(EncodeConverter, EncodeRunStopsAtTheOutputLimit) {
    const Units text = {0x4E2D, 0x4E2D, 0x61};
    unsigned char out[16];
    std::fill(out, out + 16, 0xAA);
    EXPECT_EQ(EncodeConverter::utf16ToUtf8(text.data(), 3, out, 3), 0);
    EXPECT_EQ(out[0], 0xAA) << "outSize 3 must write nothing";
    EXPECT_EQ(EncodeConverter::utf16ToUtf8(text.data(), 3, out, 0), 0);
    EXPECT_EQ(EncodeConverter::utf16ToUtf8(text.data(), 0, out, 16), 0);
    // Units are taken while fewer than outSize - 3 bytes are written.
    EXPECT_EQ(EncodeConverter::utf16ToUtf8(text.data(), 3, out, 4), 3);
    EXPECT_EQ(EncodeConverter::utf16ToUtf8(text.data(), 3, out, 7), 6);
    EXPECT_EQ(EncodeConverter::utf16ToUtf8(text.data(), 3, out, 9), 6);
    EXPECT_EQ(EncodeConverter::utf16ToUtf8(text.data(), 3, out, 10), 7);
    // Sizes are read as signed 32-bit values: these are negative.
    EXPECT_EQ(EncodeConverter::utf16ToUtf8(text.data(), 3, out, 0x80000003UL), 0);
    EXPECT_EQ(EncodeConverter::utf16ToUtf8(text.data(), 3, out, 0xFFFFFFFFUL), 0);
}

TEST(EncodeConverter, DecodeRunStopsAtBadLeadOrFullOutput) {
    EXPECT_EQ(decodeRun({0xF0, 0x9F, 0x98, 0x80}, 8), Units());
    EXPECT_EQ(decodeRun({0x61, 0xF0, 0x9F, 0x98, 0x80, 0x62}, 8), Units({0x61}));
    EXPECT_EQ(decodeRun({0x61, 0x80, 0x62}, 8), Units({0x61}));
    EXPECT_EQ(decodeRun({0x61, 0xE4, 0x41, 0x41, 0x62}, 8), Units({0x61, R, 0x62}));
    EXPECT_EQ(decodeRun({0x61, 0x62, 0x63}, 2), Units({0x61, 0x62}));
    EXPECT_EQ(decodeRun({0x61}, 0), Units());
    EXPECT_EQ(decodeRun({}, 4), Units());
    unsigned short out[4];
    const unsigned char abc[] = {0x61, 0x62, 0x63};
    EXPECT_EQ(EncodeConverter::utf8ToUtf16(abc, 3, out, 0x100000000UL), 0);
    EXPECT_EQ(EncodeConverter::utf8ToUtf16(abc, 3, out, 0x80000000UL), 0);
}

TEST(EncodeConverter, ValidatesAndCountsWithTheInvertedLength) {
    struct Case {
        Bytes in;
        bool valid;
        long len;
    };
    const Case cases[] = {
        {{}, true, 0},
        {{0x61, 0x62, 0x63}, true, 0},
        {{0xE4, 0xB8, 0xAD, 0xC2, 0x80, 0x61}, true, 0},
        {{0x61, 0x62, 0x80}, false, 2},
        {{0x61, 0xE4, 0x41, 0x41}, false, 1},
        {{0x61, 0xE4, 0xB8}, false, 1},  // runs past the end
        {{0xF0, 0x9F, 0x98, 0x80}, false, 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(EncodeConverter::isUTF8(c.in.data(), c.in.size()), c.valid);
        EXPECT_EQ(EncodeConverter::getUTF8Len(c.in.data(), c.in.size()), c.len);
        const EncodeConverter::Utf8String s(c.in.begin(), c.in.end());
        EXPECT_EQ(EncodeConverter::isUTF8(s), c.valid);
        EXPECT_EQ(EncodeConverter::getUTF8Len(s), c.len);
    }
}

TEST(EncodeConverter, RandomBytesNeverReadOrWriteOutOfBounds) {
    std::mt19937 rng(static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed()));
    // Mostly well-formed lead/continuation patterns, with stray bytes.
    const unsigned char alphabet[] = {0x41, 0x00, 0x80, 0xBF, 0xC3, 0xDF, 0xE4, 0xEF, 0xF0, 0xFF};
    for (int round = 0; round < 20000; ++round) {
        Bytes in(rng() % 24);
        for (unsigned char& b : in) b = alphabet[rng() % sizeof alphabet];
        const unsigned long room = rng() % (in.size() + 2);
        ASSERT_EQ(decodeRun(in, room), decodeByCharacter(in, room)) << round;
        const Units units = decodeRun(in, in.size() + 1);
        EXPECT_LE(units.size(), in.size());
        if (EncodeConverter::isUTF8(in.data(), in.size())) {
            EXPECT_EQ(EncodeConverter::getUTF8Len(in.data(), in.size()), 0);
        }
    }
}

}  // namespace
