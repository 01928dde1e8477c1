#include "norm_utility/AlgoUtil.h"

#include <gtest/gtest.h>

using norm_utility::AlgoUtil;

namespace {

std::string trimmed(std::string s) {
    AlgoUtil::trim(s);
    return s;
}

std::vector<std::string> split(const std::string& s, const std::string& sep) {
    std::vector<std::string> fields{"stale"};
    AlgoUtil::split2(s, sep, fields);
    return fields;
}

using Fields = std::vector<std::string>;

TEST(AlgoUtil, TrimRemovesAsciiBlanksOnly) {
    EXPECT_EQ(trimmed(" \t\r\n\v\fa b\r\n"), "a b");
    EXPECT_EQ(trimmed("   "), "");
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed("\xA1\xA1x\xA1\xA1"), "\xA1\xA1x\xA1\xA1");  // GBK ideographic space stays
}

TEST(AlgoUtil, Split2CutsTrimsAndDropsEmptyFields) {
    EXPECT_EQ(split("abc\x01XYZ\r\n", "\x01"), (Fields{"abc", "XYZ"}));
    EXPECT_EQ(split("a\x01 b \x01\x01 c", "\x01"), (Fields{"a", "b", "c"}));
    EXPECT_EQ(split("\x01 b", "\x01"), (Fields{"b"}));
    EXPECT_EQ(split("\n", "\x01"), Fields{});
    EXPECT_EQ(split("a::b", "::"), (Fields{"a", "b"}));
    EXPECT_EQ(split(" a b ", ""), (Fields{"a b"}));
}

TEST(AlgoUtil, StringToupperFoldsAsciiLettersOnly) {
    std::string s = "abz AZ 09 \xB0\xA1 \xE4\xB8\xAD";
    AlgoUtil::stringToupper(s);
    EXPECT_EQ(s, "ABZ AZ 09 \xB0\xA1 \xE4\xB8\xAD");
}

}  // namespace
