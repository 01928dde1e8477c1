#include "ws/dict/wsFamilyNameDict.h"

#include <gtest/gtest.h>

#include "support/TempDir.h"

using ws::FamilyNameDict;

namespace {

TEST(FamilyNameDictTest, EveryCharacterPassesBeforeALoad) {
    FamilyNameDict d;
    for (unsigned short c : {0, 0x7684, 0x738B, 0xFFFF}) EXPECT_TRUE(d.isChineseFamilyName(c));
}

struct LoadCase {
    const char* text;
    float threshold;
    bool loads;
    const char16_t* set;    // characters whose bit is set afterwards
    const char16_t* unset;  // characters whose bit is clear
};

class FamilyNameLoadTest : public testing::TestWithParam<LoadCase> {};

TEST_P(FamilyNameLoadTest, SetsTheBitsOfTheLinesAtTheThreshold) {
    const LoadCase& c = GetParam();
    zeg_test::TempDir dir;
    const std::string path = dir.write("family.txt", c.text);
    FamilyNameDict d;
    testing::internal::CaptureStderr();
    EXPECT_EQ(d.loadText(path.c_str(), 1.0f, c.threshold), c.loads);
    testing::internal::GetCapturedStderr();
    for (const char16_t* p = c.set; *p; ++p) EXPECT_TRUE(d.isChineseFamilyName(*p)) << c.text;
    for (const char16_t* p = c.unset; *p; ++p) EXPECT_FALSE(d.isChineseFamilyName(*p)) << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Lines, FamilyNameLoadTest,
    testing::Values(
        // A name alone takes the default 1.0, which meets the threshold 1.0.
        LoadCase{"王\n李\t3\n", 1.0f, true, u"王李", u"的"},
        // A compound name marks its first character.
        LoadCase{"欧阳\t5\n", 1.0f, true, u"欧", u"阳"},
        LoadCase{"王\t0.5\n李\t2\n", 1.0f, true, u"李", u"王"},
        // The empty line fails the load; names before it stay set.
        LoadCase{"王\t3\n\n李\t3\n", 1.0f, false, u"王", u"李的"},
        LoadCase{"王\t3\t7\n", 1.0f, false, u"", u"王"}));

TEST(FamilyNameDictTest, TheCheckWithdrawsLongCandidatesWithoutAFamilyName) {
    FamilyNameDict d;
    d.loadText(static_cast<std::FILE*>(nullptr), 1.0f);  // clears every bit
    d.setFamilyName(u'王');
    const unsigned short text[] = {u'王', u'小', u'明', u'说', u'好'};
    ws::NewWordBuffer buf(16, 0.0f);
    buf.init(5);
    buf.words[0].len = 3;  // starts with a family name: kept
    buf.words[3].len = 2;  // does not: withdrawn
    buf.words[4].len = 1;  // one character: left alone
    d.checkFamilyName(text, buf, 5);
    EXPECT_EQ(buf.words[0].len, 3);
    EXPECT_EQ(buf.words[3].len, 0);
    EXPECT_EQ(buf.words[4].len, 1);
}

}  // namespace
