#include "ws/core/wsStringUtil.h"

#include <gtest/gtest.h>

namespace {

const std::string::size_type npos = std::string::npos;

TEST(StringUtil, StripSpaceRemovesLeadingSpacesAndTabsOnly) {
    std::string out = "stale";
    EXPECT_EQ(ws::stripSpace(" \t ab c \t", out), 3);
    EXPECT_EQ(out, "ab c \t");
    EXPECT_EQ(ws::stripSpace("\r ab", out), 0);
    EXPECT_EQ(out, "\r ab");
    EXPECT_EQ(ws::stripSpace("   ", out), 3);
    EXPECT_EQ(out, "");
    EXPECT_EQ(ws::stripSpace("", out), 0);
}

TEST(StringUtil, RstripSpaceReturnsIndexOfLastKeptCharacter) {
    std::string out = "stale";
    EXPECT_EQ(ws::rstripSpace(" ab \t", out), 2);
    EXPECT_EQ(out, " ab");
    EXPECT_EQ(ws::rstripSpace("ab\r", out), 2);
    EXPECT_EQ(out, "ab\r");
    EXPECT_EQ(ws::rstripSpace(" \t", out), -1);
    EXPECT_EQ(out, "");
    EXPECT_EQ(ws::rstripSpace("", out), -1);
}

TEST(StringUtil, MatchAnchors) {
    EXPECT_EQ(ws::match("", "abc"), npos);
    EXPECT_EQ(ws::match("bc", "abcbc"), 1u);
    EXPECT_EQ(ws::match("^ab", "abc"), 0u);
    EXPECT_EQ(ws::match("^bc", "abc"), npos);
    EXPECT_EQ(ws::match("^abcd", "abc"), npos);
    EXPECT_EQ(ws::match("^", "abc"), 0u);
    EXPECT_EQ(ws::match("^ab$", "ab$x"), 0u);  // after '^' a '$' is literal
    EXPECT_EQ(ws::match("^ab$", "ab"), npos);
    EXPECT_EQ(ws::match("ab$", "cab"), 1u);
    // Only the first occurrence is tried against the end.
    EXPECT_EQ(ws::match("ab$", "abab"), npos);
    EXPECT_EQ(ws::match("$", ""), 0u);
    EXPECT_EQ(ws::match("$", "abc"), npos);
}

}  // namespace
