#include "normalize/GBKTable.h"

#include <gtest/gtest.h>

#include <map>

using normalize::GBKTableOffset;
using normalize::kGBKTableBytes;
using normalize::tbGBK_T2GBK_S;

namespace {

unsigned cell(unsigned code) {
    const int at = GBKTableOffset(code >> 8, code & 0xFF);
    return tbGBK_T2GBK_S[at] * 256u + tbGBK_T2GBK_S[at + 1];
}

// Calls f(code) for every pair the table has a cell for.
template <typename F>
void forEachPair(F f) {
    for (unsigned b1 = 0x81; b1 <= 0xFE; ++b1)
        for (unsigned b2 = 0x40; b2 <= 0xFE; ++b2) f(b1 * 256 + b2);
}

TEST(GBKTableTest, OffsetsCoverTheTableRowByRow) {
    EXPECT_EQ(kGBKTableBytes, 48132);
    EXPECT_EQ(GBKTableOffset(0x81, 0x40), 0);
    EXPECT_EQ(GBKTableOffset(0x81, 0xFE), 380);
    EXPECT_EQ(GBKTableOffset(0x82, 0x40), 382);
    EXPECT_EQ(GBKTableOffset(0xFE, 0xFE), kGBKTableBytes - 2);
}

TEST(GBKTableTest, KnownCells) {
    EXPECT_EQ(cell(0x8147), 0xB6AAu);  // 丟 -> 丢
    EXPECT_EQ(cell(0xB041), 0xF0ECu);  // 癆 -> 痨
    EXPECT_EQ(cell(0xB04B), 0xD3FAu);  // 癒 -> 愈
    // A character listed first as itself takes its next form; variants
    // OpenCC lacks take ours, followed to the end of the chain (徬 彷 仿).
    EXPECT_EQ(cell(0xB274), 0xC1CBu);  // 瞭 -> 了
    EXPECT_EQ(cell(0xB8B2), 0xB8B4u);  // 覆 -> 复
    EXPECT_EQ(cell(0xBDE5), 0xBDE8u);  // 藉 -> 借
    EXPECT_EQ(cell(0x8FB7), 0xB7F0u);  // 彿 -> 佛
    EXPECT_EQ(cell(0xE1DD), 0xB7C2u);  // 彷 -> 仿
    EXPECT_EQ(cell(0x9364), 0xB1B3u);  // 揹 -> 背
    EXPECT_EQ(cell(0x8FCF), 0xB7C2u);  // 徬 -> 仿
    EXPECT_EQ(cell(0xB0A1), 0xB0A1u);  // 啊
    EXPECT_EQ(cell(0xA1A1), 0xA1A1u);  // ideographic space
    EXPECT_EQ(cell(0xA1F5), 0xA1F5u);  // □ itself
    EXPECT_EQ(cell(0xA3A0), 0xA1F5u);  // unassigned
    EXPECT_EQ(cell(0xFE50), 0xA1F5u);  // assigned only after GBK
}

TEST(GBKTableTest, SimplifiedFormsStayAsTheyAre) {
    // Translating twice must give what translating once gives.
    forEachPair([](unsigned code) {
        const unsigned target = cell(code);
        if (target >= 0x100 && target != code && target != 0xA1F5) {
            EXPECT_EQ(cell(target), target) << std::hex << code << " -> " << target;
        }
    });
}

}  // namespace
