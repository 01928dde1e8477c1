#include "tools/GBKTableBuilder.h"

#include <gtest/gtest.h>

#include "normalize/GBKTable.h"

using zeg_tools::buildGBKTable;
using zeg_tools::CellCounts;
using zeg_tools::countCells;
using zeg_tools::GBKCodePage;
using zeg_tools::T2SMap;
using zeg_tools::writeGBKTableSource;

namespace {

class GBKTableBuilderTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(gbk.open()); }

    bool build(const T2SMap& t2s) { return buildGBKTable(gbk, t2s, table, error); }

    unsigned cell(unsigned code) const {
        const int at = normalize::GBKTableOffset(code >> 8, code & 0xFF);
        return table[at] * 256u + table[at + 1];
    }

    GBKCodePage gbk;
    std::vector<unsigned char> table;
    std::string error;
};

TEST_F(GBKTableBuilderTest, MapsOnlyWhenBothFormsAreInGBK) {
    ASSERT_TRUE(build({{U'丟', U'丢'}, {U'俓', U'𠇹'}, {U'乾', U'乾'}, {U'𠇹', U'丢'}}))
        << error;
    EXPECT_EQ(cell(0x8147), 0xB6AAu);  // 丟 -> 丢
    EXPECT_EQ(cell(0x825C), 0x825Cu);  // 俓: its simplified form is not in GBK
    EXPECT_EQ(cell(0xC7AC), 0xC7ACu);  // 乾 is its own first form
    EXPECT_EQ(cell(0xB6AA), 0xB6AAu);
}

TEST_F(GBKTableBuilderTest, FollowsChainsToTheirEnd) {
    ASSERT_TRUE(build({{U'薴', U'苧'}, {U'苧', U'苎'}})) << error;
    EXPECT_EQ(cell(0xCB66), 0xDCD1u);
    EXPECT_EQ(cell(0xC672), 0xDCD1u);
}

TEST_F(GBKTableBuilderTest, RefusesLoopsAndKeepsTheOldTable) {
    table = {1, 2, 3};
    EXPECT_FALSE(build({{U'丟', U'丢'}, {U'丢', U'丟'}}));
    EXPECT_NE(error.find("loops"), std::string::npos) << error;
    EXPECT_EQ(table, (std::vector<unsigned char>{1, 2, 3}));
}

TEST_F(GBKTableBuilderTest, SpecialCellsComeFromTheCodePageAlone) {
    ASSERT_TRUE(build({}));
    EXPECT_EQ(table.size(), static_cast<std::size_t>(normalize::kGBKTableBytes));
    EXPECT_EQ(cell(0xA1AB), unsigned('~'));
    EXPECT_EQ(cell(0xA1E7), unsigned('$'));
    EXPECT_EQ(cell(0xA3C1), 0xA3C1u);  // Ａ: folded by Translate, not by the table
    EXPECT_EQ(cell(0x817F), 0xA1F5u);
    EXPECT_EQ(cell(0xA3A0), 0xA1F5u);
    const CellCounts counts = countCells(table);
    EXPECT_EQ(counts.simplified, 0);
    EXPECT_EQ(counts.ascii, 2);
    EXPECT_EQ(counts.identity + counts.nonCharacters + counts.ascii, 126 * 191);
}

TEST_F(GBKTableBuilderTest, SourceListsEveryCellRowByRow) {
    ASSERT_TRUE(build({{U'丟', U'丢'}})) << error;
    const std::string source = writeGBKTableSource(table);
    EXPECT_NE(source.find("const unsigned char tbGBK_T2GBK_S[kGBKTableBytes] = {\n"
                          "    // 0x81\n"
                          "    0x81,0x40, 0x81,0x41, 0x81,0x42, 0x81,0x43, 0x81,0x44, 0x81,0x45, "
                          "0x81,0x46, 0xB6,0xAA,\n"),
              std::string::npos);
    // Row 0x81 ends with 191 % 8 = 7 cells on its last line.
    EXPECT_NE(source.find("\n    0x81,0xF8, 0x81,0xF9, 0x81,0xFA, 0x81,0xFB, 0x81,0xFC, 0x81,0xFD, "
                          "0x81,0xFE,\n    // 0x82\n"),
              std::string::npos);
    EXPECT_NE(source.find("0xA1,0xF5,\n};\n\n}  // namespace normalize\n"), std::string::npos);
}

}  // namespace
