#include "ws/core/wsSegmentResult.h"

#include <gtest/gtest.h>

using ws::SegmentResult;

namespace {

TEST(SegmentResult, ReinitMakesThePrefixSingleCharactersAndKeepsListMemory) {
    SegmentResult result;
    ASSERT_TRUE(result.init(4));
    unsigned char record[4] = {};
    for (SegmentResult::Cell& c : result.cells) {
        c.len = 2;
        c.subWords.assign({1, 1});
        c.partNum = 2;
        c.attr = 5;
        c.prop = ws::WS_PROPERTY_PER_RULE;
        c.tag = 3;
        c.wordId = 7;
        c.value = record;
    }

    ASSERT_TRUE(result.init(2));
    EXPECT_EQ(result.capacity, 4u);
    const SegmentResult::Cell& reset = result.cells[1];
    EXPECT_EQ(reset.len, 1);
    EXPECT_TRUE(reset.subWords.empty());
    EXPECT_GE(reset.subWords.capacity(), 2u);  // emptied, not freed: the next word needs no allocation
    EXPECT_EQ(reset.partNum, 0);
    EXPECT_EQ(reset.attr, 0);
    EXPECT_EQ(reset.prop, ws::WS_PROPERTY_WORD);
    EXPECT_EQ(reset.tag, 0);
    EXPECT_EQ(reset.wordId, -1);
    EXPECT_EQ(reset.value, nullptr);
    EXPECT_EQ(result.cells[2].len, 2);
    EXPECT_EQ(result.cells[2].wordId, 7);
}

TEST(SegmentResult, GrowsToExactlyTheLongestTextWithFreshCells) {
    SegmentResult result;
    ASSERT_TRUE(result.init(3));
    result.cells[0].len = 3;
    ASSERT_TRUE(result.init(7));
    EXPECT_EQ(result.capacity, 7u);
    EXPECT_EQ(result.cells.size(), 7u);
    for (const SegmentResult::Cell& c : result.cells) {
        EXPECT_EQ(c.len, 1);
        EXPECT_EQ(c.prop, ws::WS_PROPERTY_WORD);
        EXPECT_EQ(c.wordId, -1);
    }
}

}  // namespace
