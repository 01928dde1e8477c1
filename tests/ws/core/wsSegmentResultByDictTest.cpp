#include "ws/core/wsSegmentResultByDict.h"

#include <gtest/gtest.h>

using ws::SegmentResultByDict;

namespace {

TEST(SegmentResultByDict, ReinitResetsNodesUpToTheNewLengthOnly) {
    SegmentResultByDict lattice;
    ASSERT_TRUE(lattice.init(8));
    unsigned char record[4] = {};
    for (double& s : lattice.scores) s = 1.5;
    for (unsigned int& p : lattice.prev) p = 0;
    for (ws::BasicWordPosition& p : lattice.positions) p = {3, record};
    lattice.valid = 1;

    ASSERT_TRUE(lattice.init(4));
    EXPECT_EQ(lattice.capacity, 8u);
    EXPECT_EQ(lattice.valid, 0u);
    EXPECT_EQ(lattice.scores[4], -1e300);
    EXPECT_EQ(lattice.prev[4], 3u);
    EXPECT_EQ(lattice.positions[3].value, nullptr);
    // Node n + 1 and the positions past n are the previous text's.
    EXPECT_EQ(lattice.scores[5], 1.5);
    EXPECT_EQ(lattice.prev[5], 0u);
    EXPECT_EQ(lattice.positions[4].value, record);
}

}  // namespace
