// AlgoIconv's GBK <-> UTF-8 conversions take their characters from tables;
// these tests hold them to glibc's iconv, run with the skip-a-byte loop the
// converter has always used, byte for byte: on every one- and two-byte
// sequence, every BMP character, cut and malformed input, and output room
// that runs out part way.
#include <gtest/gtest.h>
#include <iconv.h>

#include <random>
#include <string>
#include <thread>
#include <vector>

#include "norm_utility/AlgoIconv.h"
#include "norm_utility/GbkCodec.h"

using norm_utility::AlgoIconv;

namespace {

// The reference: iconv alone, skipping an undecodable byte and going on,
// stopping when the room (the output's size, at least 2n + 1) is full.
class Reference {
public:
    Reference(const char* from, const char* to) : m_cd(iconv_open(to, from)) {}
    ~Reference() { iconv_close(m_cd); }
    std::string conv(const std::string& text, std::vector<char>& output) const {
        if (output.size() < 2 * text.size() + 1) output.resize(2 * text.size() + 1);
        iconv(m_cd, nullptr, nullptr, nullptr, nullptr);
        char* in = const_cast<char*>(text.data());
        size_t inLeft = text.size();
        char* out = output.data();
        size_t outLeft = output.size();
        while (inLeft > 0) {
            if (iconv(m_cd, &in, &inLeft, &out, &outLeft) != static_cast<size_t>(-1)) break;
            if (errno == E2BIG) break;
            ++in;
            --inLeft;
        }
        return std::string(output.data(), output.size() - outLeft);
    }

private:
    iconv_t m_cd;
};

struct Direction {
    const char* from;
    const char* to;
};

class GbkCodecTest : public ::testing::TestWithParam<Direction> {
protected:
    GbkCodecTest() : m_reference(GetParam().from, GetParam().to) {
        EXPECT_EQ(m_converter.open(GetParam().from, GetParam().to), 0);
    }

    // Both ways from an output of `room` bytes; the first difference.
    ::testing::AssertionResult same(const std::string& text, size_t room = 0) {
        std::vector<char> mine(room), theirs(room);
        const int n = m_converter.conv(text.data(), static_cast<int>(text.size()), mine);
        const std::string got(mine.data(), static_cast<size_t>(n));
        const std::string want = m_reference.conv(text, theirs);
        if (got == want) return ::testing::AssertionSuccess();
        std::string hex;
        for (unsigned char c : text) hex += " " + std::to_string(c);
        return ::testing::AssertionFailure() << "input bytes" << hex << ": " << got.size()
                                             << " bytes instead of " << want.size();
    }

    AlgoIconv m_converter;
    Reference m_reference;
};

std::string utf8(uint32_t cp) {
    std::string s;
    if (cp < 0x80) {
        s += static_cast<char>(cp);
    } else if (cp < 0x800) {
        s += static_cast<char>(0xC0 | cp >> 6);
        s += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        s += static_cast<char>(0xE0 | cp >> 12);
        s += static_cast<char>(0x80 | (cp >> 6 & 0x3F));
        s += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        s += static_cast<char>(0xF0 | cp >> 18);
        s += static_cast<char>(0x80 | (cp >> 12 & 0x3F));
        s += static_cast<char>(0x80 | (cp >> 6 & 0x3F));
        s += static_cast<char>(0x80 | (cp & 0x3F));
    }
    return s;
}

TEST_P(GbkCodecTest, EveryOneAndTwoByteSequenceAlone) {
    for (unsigned a = 0; a < 256; ++a) {
        ASSERT_TRUE(same(std::string(1, static_cast<char>(a))));
        for (unsigned b = 0; b < 256; ++b)
            ASSERT_TRUE(same({static_cast<char>(a), static_cast<char>(b)}));
    }
}

// Each BMP character (surrogates included, as bytes), alone and between
// letters, and a character beyond the BMP.
TEST_P(GbkCodecTest, EveryBmpCharacterAsUtf8) {
    for (uint32_t cp = 0; cp < 0x10000; ++cp) {
        const std::string c = utf8(cp);
        ASSERT_TRUE(same(c));
        ASSERT_TRUE(same("a" + c + "b"));
    }
    EXPECT_TRUE(same("x" + utf8(0x1F600) + "y"));
}

// Three-byte sequences with every lead and second byte and a spread of
// third bytes: cut, overlong, surrogate and stray forms.
TEST_P(GbkCodecTest, ThreeByteSequences) {
    const unsigned thirds[] = {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0xA0, 0xBF, 0xC0, 0xE4, 0xFF};
    for (unsigned a = 0x80; a < 256; ++a)
        for (unsigned b = 0; b < 256; ++b)
            for (unsigned c : thirds)
                ASSERT_TRUE(same({static_cast<char>(a), static_cast<char>(b), static_cast<char>(c)}));
}

// Texts drawn from valid and broken pieces of both encodings.
TEST_P(GbkCodecTest, RandomMixtures) {
    std::mt19937 rng(7);
    const std::vector<std::string> pieces = {
        "a", " ", "Z9", "\xD6\xD0", "\xCE\xC4", "\x81\x40", "\xFE\xFE", "\xA1\xA1", "\x80", "\xFF",
        "\x81", "\xD6", "\xE4\xB8\xAD", "\xE6\x96\x87", "\xE4\xB8", "\xED\xA0\x80", "\xC0\xAF",
        "\xF0\x9F\x98\x80", "\xE2\x82\xAC", "\xEF\xBC\xA1", std::string(1, '\0'), "\xC2\xB7",
        "\x80\x80\x80"};
    for (int round = 0; round < 100000; ++round) {
        std::string text;
        const int n = 1 + static_cast<int>(rng() % 8);
        for (int k = 0; k < n; ++k) text += pieces[rng() % pieces.size()];
        ASSERT_TRUE(same(text));
    }
}

// Characters that grow in conversion (the one-byte euro sign becomes three
// bytes) fill the room part way; so does output left bigger by an earlier
// call.
TEST_P(GbkCodecTest, RoomRunningOut) {
    const std::string texts[] = {std::string(40, '\x80'), "ab" + std::string(30, '\x80') + "\xD6\xD0",
                                 "\xE4\xB8\xAD\xE6\x96\x87" + std::string(20, '\x80')};
    for (const std::string& text : texts)
        for (size_t room = 0; room < 4 * text.size() + 4; ++room) ASSERT_TRUE(same(text, room));
}

// The tables fill as characters are first met: threads meeting the same
// characters at once must each get iconv's bytes. Both ways at once, all
// two-byte GBK sequences and all BMP characters, four threads.
TEST(GbkCodecThreads, FillingWhileConverting) {
    std::string gbk, text;
    for (unsigned a = 0x81; a < 0xFF; ++a)
        for (unsigned b = 0x40; b < 0xFF; ++b) gbk += {static_cast<char>(a), static_cast<char>(b)};
    for (uint32_t cp = 1; cp < 0x10000; ++cp) text += utf8(cp);
    std::vector<char> scratch;
    const std::string wantUtf8 = Reference("gbk", "utf-8").conv(gbk, scratch);
    const std::string wantGbk = Reference("utf-8", "gbk").conv(text, scratch);
    std::vector<int> same(4, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            AlgoIconv decoder, encoder;
            if (decoder.open("gbk", "utf-8") != 0 || encoder.open("utf-8", "gbk") != 0) return;
            std::vector<char> out;
            // Half the threads start from the other end of the input.
            const std::string& first = t % 2 == 0 ? gbk : text;
            AlgoIconv& firstConverter = t % 2 == 0 ? decoder : encoder;
            const std::string& second = t % 2 == 0 ? text : gbk;
            AlgoIconv& secondConverter = t % 2 == 0 ? encoder : decoder;
            int n = firstConverter.conv(first.data(), static_cast<int>(first.size()), out);
            const std::string a(out.data(), static_cast<size_t>(n));
            n = secondConverter.conv(second.data(), static_cast<int>(second.size()), out);
            const std::string b(out.data(), static_cast<size_t>(n));
            same[t] = t % 2 == 0 ? a == wantUtf8 && b == wantGbk : a == wantGbk && b == wantUtf8;
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(same, std::vector<int>(4, 1));
}

// The UTF-16 side answers for a character only what iconv gives for its
// UTF-8, and says no wherever iconv's answer is not one character: on every
// one- and two-byte GBK sequence and on every BMP unit.
TEST(GbkCodecUtf16, AgreesWithIconvOrDeclines) {
    const norm_utility::GbkCodec* codec = norm_utility::GbkCodec::instance();
    ASSERT_NE(codec, nullptr);
    const Reference decoder("gbk", "utf-8"), encoder("utf-8", "gbk");
    std::vector<char> scratch(64);  // room for growth: 0x80 is three bytes in UTF-8
    unsigned short units[2];
    unsigned char bytes[8];
    size_t n = 0;
    int taken = 0;
    for (unsigned a = 0; a < 256; ++a) {
        for (unsigned b = 0; b < 257; ++b) {  // 256: the lead alone
            const std::string gbk = b == 256
                                        ? std::string(1, static_cast<char>(a))
                                        : std::string{static_cast<char>(a), static_cast<char>(b)};
            const auto* in = reinterpret_cast<const unsigned char*>(gbk.data());
            if (!codec->gbkToUtf16(in, gbk.size(), units, &n)) continue;
            std::string got;
            for (size_t k = 0; k < n; ++k) got += utf8(units[k]);
            ASSERT_EQ(got, decoder.conv(gbk, scratch)) << a << " " << b;
            ++taken;
        }
    }
    EXPECT_GT(taken, 20000);
    taken = 0;
    for (uint32_t cp = 0; cp < 0x10000; ++cp) {
        const unsigned short unit = static_cast<unsigned short>(cp);
        if (!codec->utf16ToGbk(&unit, 1, bytes, &n)) continue;
        ASSERT_EQ(std::string(reinterpret_cast<char*>(bytes), n), encoder.conv(utf8(cp), scratch))
            << cp;
        ++taken;
    }
    EXPECT_GT(taken, 20000);
}

INSTANTIATE_TEST_SUITE_P(BothWays, GbkCodecTest,
                         ::testing::Values(Direction{"gbk", "utf-8"}, Direction{"utf-8", "gbk"},
                                           Direction{"GBK", "UTF8"}));

}  // namespace
