#include "ws/core/wsSegmentResultByDict.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

using ws::SegmentResultByDict;

namespace {

std::uint64_t bits(double d) {
    std::uint64_t b;
    std::memcpy(&b, &d, sizeof b);
    return b;
}

TEST(SegmentResultByDict, InitLeavesOnlyNodeZeroReached) {
    SegmentResultByDict lattice;
    ASSERT_TRUE(lattice.init(0));  // no positions, but node 0 must exist
    EXPECT_EQ(lattice.scores.at(0), 0.0);
    ASSERT_TRUE(lattice.init(5));
    ASSERT_EQ(lattice.scores.size(), 7u);
    ASSERT_EQ(lattice.prev.size(), 7u);
    EXPECT_EQ(lattice.scores[0], 0.0);
    EXPECT_EQ(lattice.prev[0], 0u);
    for (unsigned int k = 1; k <= 5; ++k) {
        EXPECT_EQ(bits(lattice.scores[k]), 0xFE37E43C8800759Cu) << "node " << k;
        EXPECT_EQ(lattice.prev[k], k - 1) << "node " << k;
    }
    EXPECT_EQ(lattice.positions[4].len, 1);
}

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
