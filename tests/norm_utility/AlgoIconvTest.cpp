#include "norm_utility/AlgoIconv.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>

using norm_utility::AlgoIconv;

namespace {

// Converts with a fresh converter and returns the converted bytes.
std::string convert(const char* from, const char* to, const std::string& in) {
    AlgoIconv cd;
    EXPECT_EQ(cd.open(from, to), 0);
    std::vector<char> out;
    const int n = cd.conv(in.data(), static_cast<int>(in.size()), out);
    return std::string(out.data(), static_cast<std::size_t>(n));
}

// Undecodable bytes are skipped one at a time: a character GBK lacks, or
// a sequence cut by the end, goes byte by byte.
TEST(AlgoIconvConv, ConvertsAndSkipsUndecodableBytes) {
    const char* const cases[][4] = {
        {"utf-8", "gbk", "\xE4\xB8\xAD\xE6\x96\x87 ok", "\xD6\xD0\xCE\xC4 ok"},
        {"gbk", "utf-8", "\xD6\xD0\xCE\xC4 ok", "\xE4\xB8\xAD\xE6\x96\x87 ok"},
        {"utf-8", "gbk", "a\xFF" "b", "ab"},
        {"utf-8", "gbk", "\xFF\xFE\xE4\xB8\xAD\xFF", "\xD6\xD0"},
        {"utf-8", "gbk", "ab\xE4\xB8", "ab"},
        {"gbk", "utf-8", "a\x81", "a"},
        {"utf-8", "gbk", "x\xF0\x9F\x98\x80y", "xy"},
    };
    for (const auto& c : cases) EXPECT_EQ(convert(c[0], c[1], c[2]), c[3]) << c[2];
}

TEST(AlgoIconvConv, OutputGrowsToTwiceTheInputPlusOneAndNeverShrinks) {
    AlgoIconv cd;
    ASSERT_EQ(cd.open("utf-8", "gbk"), 0);
    std::vector<char> out;
    cd.conv("abcd", 4, out);
    EXPECT_EQ(out.size(), 9u);
    out.assign(100, 'z');
    EXPECT_EQ(cd.conv("ab", 2, out), 2);
    EXPECT_EQ(out.size(), 100u);
    EXPECT_EQ(std::string(out.data()), "ab");
}

TEST(AlgoIconvConv, StopsWhenTheOutputIsFullAndStillTerminates) {
    AlgoIconv cd;
    ASSERT_EQ(cd.open("utf-8", "UCS-4LE"), 0);
    std::vector<char> out;
    // Room is 2 * 3 + 1 = 7 bytes: one four-byte character fits.
    EXPECT_EQ(cd.conv("abc", 3, out), 4);
    EXPECT_EQ(out[4], 0);
    // Exactly filling a larger vector still leaves room for the zero byte.
    out.assign(8, 'z');
    EXPECT_EQ(cd.conv("ab", 2, out), 8);
    ASSERT_GE(out.size(), 9u);
    EXPECT_EQ(out[8], 0);
}

TEST(AlgoIconvConv, AnyBytesOfAnyLengthStayInBounds) {
    std::mt19937 rng(testing::UnitTest::GetInstance()->random_seed());
    AlgoIconv toGbk, toUtf8;
    ASSERT_EQ(toGbk.open("utf-8", "gbk"), 0);
    ASSERT_EQ(toUtf8.open("gbk", "utf-8"), 0);
    std::vector<char> out;
    for (int round = 0; round < 2000; ++round) {
        std::string in(rng() % 600, '\0');
        for (char& c : in) c = static_cast<char>(rng() % 4 == 0 ? 0x80 + rng() % 0x80 : rng());
        for (AlgoIconv* cd : {&toGbk, &toUtf8}) {
            const int n = cd->conv(in.data(), static_cast<int>(in.size()), out);
            ASSERT_GE(n, 0);
            ASSERT_LT(static_cast<std::size_t>(n), out.size());
            ASSERT_EQ(out[static_cast<std::size_t>(n)], 0);
        }
    }
}

TEST(AlgoIconvOpen, UnknownCharsetLeavesTheObjectClosed) {
    AlgoIconv cd;
    EXPECT_EQ(cd.open("no-such-charset", "gbk"), -1);
    EXPECT_FALSE(cd.isOpen());
    std::vector<char> out;
    EXPECT_EQ(cd.conv("abc", 3, out), 0);
    EXPECT_EQ(out[0], 0);
    EXPECT_EQ(cd.open("utf-8", "gbk"), 0);
    EXPECT_EQ(cd.open("gbk", "no-such-charset"), -1);
    EXPECT_FALSE(cd.isOpen());
    cd.close();
    cd.close();
}

struct Freer {
    void operator()(char* p) const { std::free(p); }
};

// A length of zero means the string's length; conversion stops at the
// first bad byte without the skip-and-retry of conv().
TEST(AlgoIconvConvCharset, ConvertsInOneCall) {
    struct Case {
        const char *from, *to, *in;
        int length, result;
        std::string out;
    };
    const Case cases[] = {
        {"utf-8", "gbk", "\xE4\xB8\xAD!", 4, 4, "\xD6\xD0!"},
        {"gbk", "utf-8", "\xD6\xD0", 0, 2, "\xE4\xB8\xAD"},
        {"utf-8", "gbk", "ab\xFF" "cd", 5, 2, "ab"},
    };
    for (const Case& c : cases) {
        char* raw = nullptr;
        int outLength = 0;
        EXPECT_EQ(AlgoIconv::convCharset(c.from, c.to, c.in, c.length, &raw, &outLength), c.result);
        std::unique_ptr<char, Freer> out(raw);
        ASSERT_EQ(outLength, static_cast<int>(c.out.size())) << c.in;
        EXPECT_EQ(std::string(out.get()), c.out);
    }
}

// IsUTF8 guesses from the share of good multibyte bytes (the trail byte of
// a pair is not checked); isUTF8 walks strictly and refuses two-byte
// characters.
TEST(AlgoIconvDetect, GuessAndStrictWalk) {
    std::string mostly;  // 32 good of 33: passes only as the count is over 30
    for (int i = 0; i < 16; ++i) mostly += "\xC3\xA9";
    const struct {
        std::string text;
        bool guess, strict;
    } cases[] = {
        {"", false, true},
        {"abc", false, true},
        {"\xE4\xB8\xAD\xE6\x96\x87\xE5\xAD\x97", true, true},
        {"x\xC3\xFF", true, false},
        {"\xD6\xD0\xCE\xC4\xB0", false, false},  // GBK: 4 of 5 is 80 percent
        {mostly + "\xFF", true, false},
        {"\xC3\xA9\xC3\xA9\xFF", false, false},
        {"\xC3\xA9", true, false},
        {"\xE4\xB8", false, false},
        {"a\xF0\x9F\x98\x80z", false, true},
        {"\xF0\x9F\x98", false, false},
        {"\x80", false, false},
        {"\xF8\x80\x80\x80", false, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(AlgoIconv::IsUTF8(c.text), c.guess) << c.text;
        EXPECT_EQ(AlgoIconv::isUTF8(c.text), c.strict) << c.text;
    }
}

}  // namespace
