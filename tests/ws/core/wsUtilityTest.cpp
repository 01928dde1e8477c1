#include "ws/core/wsUtility.h"

#include <gtest/gtest.h>

#include <sstream>

using ws::Utility;

namespace {

typedef std::vector<std::string> Fields;

TEST(Utility, CharacterClassesHaveExactBounds) {
    for (unsigned short c : {0x20, 0x09, 0x0D, 0x0A}) EXPECT_TRUE(Utility::isSpaceChar(c)) << c;
    for (unsigned short c : {0x0B, 0x0C, 0xA0, 0x3000, 0x00}) EXPECT_FALSE(Utility::isSpaceChar(c)) << c;
    EXPECT_TRUE(Utility::isQuanSpaceChar(0x3000));
    EXPECT_FALSE(Utility::isQuanSpaceChar(0x20));
    EXPECT_FALSE(Utility::isQuanSpaceChar(0x3001));
    EXPECT_FALSE(Utility::isHanziChar(0xFF));
    EXPECT_TRUE(Utility::isHanziChar(0x100));
    EXPECT_TRUE(Utility::isHanziChar(0x3042));  // hiragana counts too
    EXPECT_FALSE(Utility::isQuanAlphaNum(0xFF00));
    EXPECT_TRUE(Utility::isQuanAlphaNum(0xFF01));
    EXPECT_TRUE(Utility::isQuanAlphaNum(0xFFFF));
}

TEST(Utility, SplitLineDropsEmptyFieldsAndReplacesOutput) {
    Fields out = {"stale"};
    Utility::splitLine(" a  b ", " ", out);
    EXPECT_EQ(out, Fields({"a", "b"}));
    Utility::splitLine("x.so;y.so  z.so", " ;", out);
    EXPECT_EQ(out, Fields({"x.so", "y.so", "z.so"}));
    Utility::splitLine("   ", " ", out);
    EXPECT_TRUE(out.empty());
    Utility::splitLine("abc", "", out);
    EXPECT_EQ(out, Fields({"abc"}));
}

TEST(Utility, SplitGranRegroupsPiecesAlongTheCoarseFields) {
    Fields out;
    // 北京大学 图书馆 over 北京 大学 图书 馆
    Utility::splitGran("\xE5\x8C\x97\xE4\xBA\xAC\xE5\xA4\xA7\xE5\xAD\xA6 "
                       "\xE5\x9B\xBE\xE4\xB9\xA6\xE9\xA6\x86",
                       "\xE5\x8C\x97\xE4\xBA\xAC \xE5\xA4\xA7\xE5\xAD\xA6 "
                       "\xE5\x9B\xBE\xE4\xB9\xA6 \xE9\xA6\x86",
                       " ", out);
    EXPECT_EQ(out, Fields({"\xE5\x8C\x97\xE4\xBA\xAC", "\xE5\xA4\xA7\xE5\xAD\xA6", " ",
                           "\xE5\x9B\xBE\xE4\xB9\xA6", "\xE9\xA6\x86"}));
    Utility::splitGran("ab  cd", "a b c d", " ", out);
    EXPECT_EQ(out, Fields({"a", "b", "  ", "c", "d"}));
    // Trailing delimiters end the walk: pieces beyond the fields are dropped.
    Utility::splitGran("ab ", "a b c", " ", out);
    EXPECT_EQ(out, Fields({"a", "b"}));
    // A piece longer than its field still goes whole.
    Utility::splitGran("a bc", "ab c", " ", out);
    EXPECT_EQ(out, Fields({"ab", " ", "c"}));
}

}  // namespace
