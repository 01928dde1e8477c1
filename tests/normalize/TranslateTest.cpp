#include "normalize/Translate.h"

#include <gtest/gtest.h>

#include <random>

#include "normalize/WordLists.h"

using normalize::gStopWords;
using normalize::Translate;

namespace {

// GBK of a few characters used below.
const std::string kDiu = "\x81\x47";         // 丟, traditional
const std::string kDiuSimple = "\xB6\xAA";   // 丢
const std::string kLao = "\xB0\x41";         // 癆
const std::string kLaoSimple = "\xF0\xEC";   // 痨
const std::string kYu = "\xB0\x4B";          // 癒
const std::string kYuSimple = "\xD3\xFA";    // 愈
const std::string kA = "\xB0\xA1";           // 啊, simplified already
const std::string kDe = "\xB5\xC4";          // 的
const std::string kWo = "\xCE\xD2";          // 我
const std::string kShu = "\xCA\xE9";         // 书
const std::string kFullA = "\xA3\xC1";       // Ａ
const std::string kFullB = "\xA3\xC2";       // Ｂ
const std::string kFullSmallC = "\xA3\xE3";  // ｃ
const std::string kIdeographicSpace = "\xA1\xA1";
const std::string kFullTilde = "\xA1\xAB";   // ～, outside row 0xA3
const std::string kFullDollar = "\xA1\xE7";  // ＄, outside row 0xA3
const std::string kBox = "\xA1\xF5";         // □

TEST(GBKClassifiersTest, Boundaries) {
    using namespace normalize;
    for (int c : {0x81, 0xFD}) EXPECT_TRUE(isGBK1(c)) << c;
    for (int c : {0x80, 0xFE}) EXPECT_FALSE(isGBK1(c)) << c;
    for (int c : {0x40, 0x80, 0xFE}) EXPECT_TRUE(isGBK2(c)) << c;
    for (int c : {0x3F, 0x7F, 0xFF}) EXPECT_FALSE(isGBK2(c)) << c;
    for (int c : {0xA1, 0xFE}) EXPECT_TRUE(isChineseCharacter(0xA3, c)) << c;
    for (int c : {0xA0, 0xFF}) EXPECT_FALSE(isChineseCharacter(0xA3, c)) << c;
    EXPECT_FALSE(isChineseCharacter(0xA2, 0xC1));
    EXPECT_TRUE(isChineseSpace(0xA1, 0xA1));
    EXPECT_FALSE(isChineseSpace(0xA1, 0xA2));
}

class TranslateTest : public ::testing::Test {
protected:
    TranslateTest() { setStopWords({}); }
    ~TranslateTest() override { setStopWords({}); }

    static void setStopWords(std::set<std::string> words) {
        gStopWords = std::move(words);
        normalize::wordListsChanged();
    }
};

// Mode bits: 2 upper case, 4 lower case, 8 full width to half, 16
// traditional to simplified, 32 stop characters to spaces.
TEST_F(TranslateTest, EachModeBitAsDocumented) {
    const std::string letters = kFullA + kFullB + kFullSmallC;
    const std::string zeroLed = kFullTilde + kFullDollar;
    struct Case {
        std::string in;
        int mode;
        std::string out;
    };
    const Case cases[] = {
        {letters, 8, "ABc"},
        {letters, 8 | 4, "abc"},
        {letters, 8 | 2, "ABC"},
        {letters, 8 | 4 | 2, "abc"},
        {letters, 16 | 4 | 2, letters},
        {"@AZ[`az{", 4, "@az[`az{"},  // ASCII letters only, both ends
        {"@AZ[`az{", 2, "@AZ[`AZ{"},
        {"\xA3\xA4\xA3\xFE\xA3\xB1", 8, "$~1"},  // the row keeps seven bits
        {kWo + kIdeographicSpace + kShu, 8, kWo + " " + kShu},
        {kIdeographicSpace, 16 | 4 | 2, kIdeographicSpace},
        {kDiu + kLao + kYu + kA, 16, kDiuSimple + kLaoSimple + kYuSimple + kA},
        {kDiu + kLao + kYu, 8 | 4 | 2, kDiu + kLao + kYu},
        {zeroLed, 16, zeroLed},  // zero-led cells need full to half
        {zeroLed, 16 | 8, "~$"},
        {zeroLed, 8, "~$"},
        {"x\xB0\x61y", 2, "X\xB0\x61Y"},  // a trail byte 'a' is no letter
        {"X\xB0\x41Y", 4, "x\xB0\x41y"},
        {"\x81\x7F" + kDiu, 16, "\x81\x7F" + kDiuSimple},  // 0x7F is no trail byte
        {"\x81\x7F" "a", 16 | 2, "\x81\x7F" "A"},
        {"a\x81", 2, "A\x81"},
        {"\xA3\xA0", 16, kBox},  // unassigned pairs
        {"\xA3\xA0", 8 | 4 | 2, "\xA3\xA0"},
        {"\xFE\x61", 16 | 2, "\xFE\x41"},  // lead 0xFE: two single bytes
        {"\xFE\x40", 16, "\xFE\x40"},
        {std::string("ab\0cd", 5), 0, "ab"},
        {"", 62, ""},
    };
    for (const Case& c : cases) EXPECT_EQ(Translate(c.in, c.mode), c.out) << c.mode << " " << c.in;
}

TEST_F(TranslateTest, StopCharactersBecomeOneSpaceEach) {
    setStopWords({kDe, "a"});
    EXPECT_EQ(Translate(kWo + kDe + kShu, 32), kWo + " " + kShu);
    EXPECT_EQ(Translate(kDe + kDe + "a" + kWo, 32), "   " + kWo);
    EXPECT_EQ(Translate(kWo + kDe, 16), kWo + kDe);
}

TEST_F(TranslateTest, StopWordsMatchTheTranslatedCharacterOnly) {
    setStopWords({kDiuSimple, "a", kWo + kDe, "ab"});
    EXPECT_EQ(Translate(kDiu + kFullA, 32 | 16 | 8 | 4), "  ");
    EXPECT_EQ(Translate(kDiu + kFullA, 32), kDiu + kFullA);
    EXPECT_EQ(Translate(kWo + kDe + "b", 32), kWo + kDe + "b");  // longer words never match
}

TEST_F(TranslateTest, StopListsLongAndChangedAgreeWithTheSet) {
    std::set<std::string> words = {kDe, "a", std::string("b\0", 2)};
    std::string filler = "\xB0\xA1";
    for (int k = 0; k < 600; ++k) words.insert(filler += "x");
    setStopWords(words);
    const std::string query = kWo + kDe + "ab" + kFullA;
    EXPECT_EQ(Translate(query, 32 | 8 | 4), kWo + "  b ");
    // Same size, other words: the index must not answer from the old list.
    words.erase(kDe);
    words.insert(kWo);
    setStopWords(words);
    EXPECT_EQ(Translate(query, 32 | 8 | 4), " " + kDe + " b ");
}

TEST_F(TranslateTest, ModeZeroAndUnusedBitsChangeNothing) {
    std::mt19937 random(static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed()));
    std::uniform_int_distribution<int> byte(1, 255);
    setStopWords({kDe, "a", " "});
    for (int round = 0; round < 200; ++round) {
        std::string query(static_cast<std::size_t>(round % 40), 'x');
        for (char& c : query) c = static_cast<char>(byte(random));
        EXPECT_EQ(Translate(query, 0), query);
        EXPECT_EQ(Translate(query, 1 | 64 | 128 | 1024), query);
    }
}

}  // namespace
