#include "tools/OpenCCCharacters.h"

#include <gtest/gtest.h>

#include <sstream>

using zeg_tools::decodeOneUtf8;
using zeg_tools::readOpenCCCharacters;
using zeg_tools::T2SMap;

namespace {

bool read(const std::string& text, T2SMap& map, std::string& error) {
    std::istringstream in(text);
    return readOpenCCCharacters(in, map, error);
}

TEST(OpenCCCharactersTest, KeepsTheFirstSimplifiedFormOtherThanItself) {
    T2SMap map;
    std::string error;
    ASSERT_TRUE(read("丟\t丢\n\n瞭\t瞭 了\n鍊\t炼 链 𫔀\n乾\t乾\n", map, error)) << error;
    EXPECT_EQ(map, (T2SMap{{U'丟', U'丢'}, {U'瞭', U'了'}, {U'鍊', U'炼'}, {U'乾', U'乾'}}));
}

TEST(OpenCCCharactersTest, RejectsMalformedLinesAndKeepsTheOldMap) {
    const char* bad[] = {
        "丟 丢\n",        // no tab
        "丟丟\t丢\n",     // two characters
        "丟\t丢丢\n",     // a first form of two characters
        "瞭\t瞭 了了\n",  // the form taken, of two characters
        "丟\t\n",         // no form
        "丟\t丢\r\n",     // a carriage return
        "\xE4\xB8\t丢\n"  // truncated UTF-8
    };
    for (const char* line : bad) {
        T2SMap map{{U'a', U'b'}};
        std::string error;
        EXPECT_FALSE(read(std::string("乾\t干\n") + line, map, error)) << line;
        EXPECT_EQ(error.rfind("malformed line 2 [", 0), 0u) << error;
        EXPECT_EQ(map, (T2SMap{{U'a', U'b'}}));
    }
}

TEST(OpenCCCharactersTest, DecodesExactlyOneWellFormedSequence) {
    char32_t cp = 0;
    EXPECT_TRUE(decodeOneUtf8("a", cp));
    EXPECT_EQ(cp, U'a');
    EXPECT_TRUE(decodeOneUtf8("\xC2\xA0", cp));
    EXPECT_EQ(cp, U'\u00A0');
    EXPECT_TRUE(decodeOneUtf8("丢", cp));
    EXPECT_EQ(cp, U'丢');
    EXPECT_TRUE(decodeOneUtf8("𫔀", cp));
    EXPECT_EQ(cp, U'𫔀');
    for (const char* bad : {"", "ab", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80",
                            "\xF4\x90\x80\x80", "\xE4\xB8", "\xE4\x38\xA2", "\x80", "\xFF"})
        EXPECT_FALSE(decodeOneUtf8(bad, cp)) << bad;
}

}  // namespace
