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

TEST(AlgoIconvConv, ConvertsBetweenUtf8AndGbk) {
    EXPECT_EQ(convert("utf-8", "gbk", "\xE4\xB8\xAD\xE6\x96\x87 ok"), "\xD6\xD0\xCE\xC4 ok");
    EXPECT_EQ(convert("gbk", "utf-8", "\xD6\xD0\xCE\xC4 ok"), "\xE4\xB8\xAD\xE6\x96\x87 ok");
}

TEST(AlgoIconvConv, SkipsUndecodableBytesOneAtATime) {
    EXPECT_EQ(convert("utf-8", "gbk", "a\xFF" "b"), "ab");
    EXPECT_EQ(convert("utf-8", "gbk", "\xFF\xFE\xE4\xB8\xAD\xFF"), "\xD6\xD0");
    EXPECT_EQ(convert("utf-8", "gbk", "ab\xE4\xB8"), "ab");  // trailing incomplete sequence
    EXPECT_EQ(convert("gbk", "utf-8", "a\x81"), "a");
    // A character GBK lacks is dropped byte by byte: its bytes are invalid
    // one at a time too.
    EXPECT_EQ(convert("utf-8", "gbk", "x\xF0\x9F\x98\x80y"), "xy");
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

TEST(AlgoIconvDetect, IsUTF8GuessesFromTheShareOfMultibyteBytes) {
    EXPECT_FALSE(AlgoIconv::IsUTF8(""));
    EXPECT_FALSE(AlgoIconv::IsUTF8("abc"));
    EXPECT_TRUE(AlgoIconv::IsUTF8("\xE4\xB8\xAD\xE6\x96\x87\xE5\xAD\x97"));
    EXPECT_TRUE(AlgoIconv::IsUTF8("x\xC3\xFF"));          // trail byte of a pair is not checked
    EXPECT_FALSE(AlgoIconv::IsUTF8("\xD6\xD0\xCE\xC4\xB0"));  // GBK: 4 of 5 -> 80
    // 32 good bytes of 33 non-ASCII: 96 percent, passes only because the
    // multibyte count is over 30.
    std::string mostly;
    for (int i = 0; i < 16; ++i) mostly += "\xC3\xA9";
    EXPECT_TRUE(AlgoIconv::IsUTF8(mostly + "\xFF"));
    EXPECT_FALSE(AlgoIconv::IsUTF8("\xC3\xA9\xC3\xA9\xFF"));
}

TEST(AlgoIconvDetect, IsUtf8WalksStrictlyAndRejectsTwoByteCharacters) {
    EXPECT_TRUE(AlgoIconv::isUTF8(""));
    EXPECT_TRUE(AlgoIconv::isUTF8("abc"));
    EXPECT_FALSE(AlgoIconv::isUTF8("\xC3\xA9"));
    EXPECT_TRUE(AlgoIconv::isUTF8("\xE4\xB8\xAD"));
    EXPECT_FALSE(AlgoIconv::isUTF8("\xE4"));
    EXPECT_FALSE(AlgoIconv::isUTF8("\xE4\xB8"));
    EXPECT_TRUE(AlgoIconv::isUTF8("a\xF0\x9F\x98\x80z"));
    EXPECT_FALSE(AlgoIconv::isUTF8("\xF0\x9F\x98"));
    EXPECT_FALSE(AlgoIconv::isUTF8("\xC3"));
    EXPECT_FALSE(AlgoIconv::isUTF8("\x80"));
    EXPECT_FALSE(AlgoIconv::isUTF8("\xF8\x80\x80\x80"));
}

}  // namespace
