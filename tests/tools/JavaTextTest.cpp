#include "tools/JavaText.h"

#include <gtest/gtest.h>

#include <random>

using zeg_tools::decodeUtf8AsJava;
using zeg_tools::encodeUtf8AsJava;
using zeg_tools::fromModifiedUtf8;
using zeg_tools::isJavaNeutralUtf8;
using zeg_tools::toModifiedUtf8;

namespace {

const char16_t R = 0xFFFD;

TEST(JavaTextTest, WellFormedUtf8Decodes) {
    EXPECT_EQ(decodeUtf8AsJava("ab"), u"ab");
    EXPECT_EQ(decodeUtf8AsJava(std::string("a\0b", 3)), std::u16string(u"a\0b", 3));
    EXPECT_EQ(decodeUtf8AsJava("é中"), u"é中");
    EXPECT_EQ(decodeUtf8AsJava("\xF0\x9F\x98\x80"), u"\U0001F600");
    EXPECT_EQ(decodeUtf8AsJava("\xF4\x8F\xBF\xBF"), u"\U0010FFFF");
}

// One U+FFFD per maximal invalid prefix; an encoded surrogate is one
// U+FFFD; a sequence cut short by the end of the text is one U+FFFD.
TEST(JavaTextTest, MalformedUtf8BecomesReplacementCharactersAsJavaDoes) {
    const struct {
        const char* bytes;
        std::u16string expected;
    } cases[] = {
        {"\xFF", {R}},
        {"\x80\xBF", {R, R}},
        {"\xC0\x80", {R, R}},
        {"\xC1\xBF", {R, R}},
        {"\xC3(", {R, u'('}},
        {"\xC3", {R}},
        {"\xE0\x80\x80", {R, R, R}},
        {"\xE0\xA0", {R}},
        {"\xE4\xB8", {R}},
        {"\xE4\xB8x", {R, u'x'}},
        {"\xE4x\xB8", {R, u'x', R}},
        {"\xED\xA0\x80", {R}},
        {"\xED\xBF\xBFx", {R, u'x'}},
        {"\xF0\x80\x80\x80", {R, R, R, R}},
        {"\xF0\x9F\x98", {R}},
        {"\xF0\x9F", {R}},
        {"\xF0\x9F\x98x", {R, u'x'}},
        {"\xF0\x9Fx", {R, u'x'}},
        {"\xF0x", {R, u'x'}},
        {"\xF4\x90\x80\x80", {R, R, R, R}},
        {"\xF4\x90", {R, R}},
        {"\xF5\x80\x80\x80", {R, R, R, R}},
        {"\xF8\x88\x80\x80\x80", {R, R, R, R, R}},
    };
    for (const auto& c : cases) EXPECT_EQ(decodeUtf8AsJava(c.bytes), c.expected) << c.bytes;
}

TEST(JavaTextTest, EncodingWritesLoneSurrogatesAsQuestionMarks) {
    EXPECT_EQ(encodeUtf8AsJava(u"a\U0001F600b"), "a\xF0\x9F\x98\x80" "b");
    EXPECT_EQ(encodeUtf8AsJava(std::u16string{0xD800, u'x', 0xDC00}), "?x?");
    EXPECT_EQ(encodeUtf8AsJava(std::u16string{0xDC00, 0xD800}), "??");
    EXPECT_EQ(encodeUtf8AsJava(std::u16string(u"\0", 1)), std::string("\0", 1));
    EXPECT_EQ(encodeUtf8AsJava(u"é中\uFFFF"), "é中\uFFFF");
}

TEST(JavaTextTest, ModifiedUtf8WritesNulAndSurrogatesApart) {
    EXPECT_EQ(toModifiedUtf8(std::u16string(u"a\0b", 3)), "a\xC0\x80" "b");
    EXPECT_EQ(toModifiedUtf8(u"\U0001F600"), "\xED\xA0\xBD\xED\xB8\x80");
    EXPECT_EQ(toModifiedUtf8(std::u16string{0xDC00}), "\xED\xB0\x80");
    EXPECT_EQ(toModifiedUtf8(u"é中"), "é中");
}

TEST(JavaTextTest, ModifiedUtf8RoundTrips) {
    const std::u16string texts[] = {
        u"", u"abc", std::u16string(u"\0x\0", 3), u"é中\U0001F600", {0xD800}, {0xDFFF, 0xD800},
    };
    for (const std::u16string& text : texts)
        EXPECT_EQ(fromModifiedUtf8(toModifiedUtf8(text)), text);
    EXPECT_EQ(fromModifiedUtf8("\xFF" "a\xE4\xB8"), (std::u16string{R, u'a', R, R}));
}

// Neutral text survives both round trips unchanged; every other string
// changes in at least one of them (so the check may not say "neutral").
TEST(JavaTextTest, NeutralUtf8IsExactlyWhatTheRoundTripsKeep) {
    for (const char* plain : {"", "abc", "é中\uFFFF", "\u0800\uD7FF\uE000"})
        EXPECT_TRUE(isJavaNeutralUtf8(plain)) << plain;
    std::mt19937 rng(static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed()));
    const unsigned char interesting[] = {0x00, 'a', 0x7F, 0x80, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1,
                                         0xC2, 0xDF, 0xE0, 0xE4, 0xED, 0xEF, 0xF0, 0xF4, 0xFF};
    for (int round = 0; round < 200000; ++round) {
        std::string s(rng() % 5, '\0');
        for (char& c : s) c = static_cast<char>(interesting[rng() % sizeof interesting]);
        const bool kept = toModifiedUtf8(decodeUtf8AsJava(s)) == s &&
                          encodeUtf8AsJava(fromModifiedUtf8(s)) == s;
        ASSERT_EQ(isJavaNeutralUtf8(s), kept) << testing::PrintToString(s);
    }
}

}  // namespace
