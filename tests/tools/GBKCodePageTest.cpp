#include "tools/GBKCodePage.h"

#include <gtest/gtest.h>

using zeg_tools::GBKCodePage;

namespace {

class GBKCodePageTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(gbk.open()); }
    GBKCodePage gbk;
};

TEST_F(GBKCodePageTest, DecodesCharacters) {
    char32_t cp = 0;
    EXPECT_TRUE(gbk.decode(0x81, 0x47, cp));
    EXPECT_EQ(cp, U'丟');
    EXPECT_TRUE(gbk.decode(0xA1, 0xA1, cp));
    EXPECT_EQ(cp, U'\u3000');
    EXPECT_TRUE(gbk.decode(0xA1, 0xAB, cp));
    EXPECT_EQ(cp, U'～');
}

TEST_F(GBKCodePageTest, RefusesWhatIsNoCharacter) {
    char32_t cp = 0;
    EXPECT_FALSE(gbk.decode(0x81, 0x7F, cp));  // iconv would skip 0x81 and keep 0x7F
    EXPECT_FALSE(gbk.decode(0xA3, 0xA0, cp));  // unassigned
    EXPECT_FALSE(gbk.decode(0xA1, 0x40, cp));  // user-defined area
    EXPECT_FALSE(gbk.decode(0xFE, 0x50, cp));  // assigned only after GBK
}

TEST_F(GBKCodePageTest, EncodesOnlyDoubleByteCharacters) {
    unsigned code = 0;
    EXPECT_TRUE(gbk.encode(U'丢', code));
    EXPECT_EQ(code, 0xB6AAu);
    EXPECT_FALSE(gbk.encode(U'A', code));
    EXPECT_FALSE(gbk.encode(U'€', code));  // a single byte in iconv's GBK
    EXPECT_FALSE(gbk.encode(U'𠇹', code));
    EXPECT_FALSE(gbk.encode(0x110000, code));
}

}  // namespace
