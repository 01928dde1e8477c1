#include "ws/algo/wsRuleText.h"

#include <gtest/gtest.h>

#include <string>

#include "support/TempDir.h"

using ws::RuleText;

namespace {

// The key-and-end-mark search and the conversion are tested through
// NumberRecognizer::getmiddle and the chunker.
TEST(RuleText, ReadJoinsLinesAndPiecesWithOneLineFeedEach) {
    zeg_test::TempDir dir;
    std::string content = "old";
    ASSERT_TRUE(RuleText::read(dir.write("a.txt", "one\r\n\ntwo").c_str(), content));
    EXPECT_EQ(content, "one\r\n\ntwo\n");

    const std::string longLine(1500, 'x');
    ASSERT_TRUE(RuleText::read(dir.write("b.txt", longLine + "\n" + "y\n").c_str(), content));
    EXPECT_EQ(content, longLine.substr(0, 1023) + "\n" + longLine.substr(1023) + "\ny\n");

    ASSERT_TRUE(RuleText::read(dir.write("c.txt", "").c_str(), content));
    EXPECT_EQ(content, "");
    EXPECT_FALSE(RuleText::read(dir.file("missing").c_str(), content));
}

}  // namespace
