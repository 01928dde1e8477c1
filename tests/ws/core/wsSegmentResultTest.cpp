#include "ws/core/wsSegmentResult.h"

#include <gtest/gtest.h>

namespace {

TEST(SegmentResult, ReinitMakesThePrefixSingleCharactersAndKeepsListMemory) {
    ws::SegmentResult result;
    ASSERT_TRUE(result.init(4));
    unsigned char record[4] = {};
    for (ws::SegmentResult::Cell& c : result.cells)
        c = {2, {1, 1}, 2, 5, ws::WS_PROPERTY_PER_RULE, 3, 7, record};

    ASSERT_TRUE(result.init(2));
    EXPECT_EQ(result.capacity, 4u);
    const ws::SegmentResult::Cell& c = result.cells[1];
    EXPECT_EQ(c.len, 1);
    EXPECT_TRUE(c.subWords.empty());
    EXPECT_GE(c.subWords.capacity(), 2u);  // emptied, not freed: the next word needs no allocation
    EXPECT_EQ(c.partNum + c.attr + c.tag, 0);
    EXPECT_EQ(c.prop, ws::WS_PROPERTY_WORD);
    EXPECT_EQ(c.wordId, -1);
    EXPECT_EQ(c.value, nullptr);
    EXPECT_EQ(result.cells[2].wordId, 7);
}

}  // namespace
