#include "ws/algo/wsRuleText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/TempDir.h"

using ws::RuleText;

namespace {

TEST(RuleText, ReadJoinsLinesAndPiecesWithOneLineFeedEach) {
    zeg_test::TempDir dir;
    std::string content = "old";
    ASSERT_TRUE(RuleText::read(dir.write("a.txt", "one\r\n\ntwo").c_str(), content));
    EXPECT_EQ(content, "one\r\n\ntwo\n");

    const std::string longLine(1500, 'x');
    ASSERT_TRUE(RuleText::read(dir.write("b.txt", longLine + "\n" + "y\n").c_str(), content));
    EXPECT_EQ(content, longLine.substr(0, 1023) + "\n" + longLine.substr(1023) + "\ny\n");

    ASSERT_TRUE(RuleText::read(dir.write("c.txt", std::string("a\0b", 3)).c_str(), content));
    EXPECT_EQ(content, std::string("a\0b\n", 4));

    ASSERT_TRUE(RuleText::read(dir.write("d.txt", "").c_str(), content));
    EXPECT_EQ(content, "");
    EXPECT_FALSE(RuleText::read(dir.file("missing").c_str(), content));
    EXPECT_FALSE(RuleText::read(dir.mkdir("folder").c_str(), content));
    EXPECT_FALSE(RuleText::read("/dev/null", content));
}

TEST(RuleText, BetweenTakesTheFirstKeyAndTheNextEndMark) {
    std::string members = "old";
    EXPECT_EQ(RuleText::between("a=1end#b=2end#a=3end#", "a=", "end#", members), 0);
    EXPECT_EQ(members, "1");
    EXPECT_EQ(RuleText::between("b=\nend#", "b=", "end#", members), 0);
    EXPECT_EQ(members, "\n");
    EXPECT_EQ(RuleText::between("b=end#", "a=", "end#", members), -1);
    EXPECT_EQ(RuleText::between("a=12", "a=", "end#", members), -2);
    EXPECT_EQ(members, "\n");
}

TEST(RuleText, ConversionStopsAtAByteThatStartsNoCharacter) {
    std::vector<unsigned short> out{1};
    EXPECT_EQ(RuleText::appendUtf16("a中", out), 2);
    EXPECT_EQ(RuleText::appendUtf16("b\x80" "c", out), 1);
    EXPECT_EQ(RuleText::appendUtf16("", out), 0);
    EXPECT_EQ(out, (std::vector<unsigned short>{1, 'a', 0x4E2D, 'b'}));
}

}  // namespace
