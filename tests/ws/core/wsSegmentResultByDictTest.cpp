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
    ASSERT_TRUE(lattice.init(5));
    EXPECT_EQ(lattice.capacity, 5u);
    ASSERT_EQ(lattice.positions.size(), 5u);
    ASSERT_EQ(lattice.scores.size(), 7u);
    ASSERT_EQ(lattice.prev.size(), 7u);
    EXPECT_EQ(lattice.scores[0], 0.0);
    EXPECT_EQ(lattice.prev[0], 0u);
    for (unsigned int k = 1; k <= 5; ++k) {
        EXPECT_EQ(bits(lattice.scores[k]), 0xFE37E43C8800759Cu) << "node " << k;
        EXPECT_EQ(lattice.prev[k], k - 1) << "node " << k;
    }
    for (const ws::BasicWordPosition& p : lattice.positions) {
        EXPECT_EQ(p.len, 1);
        EXPECT_EQ(p.value, nullptr);
    }
    EXPECT_EQ(lattice.valid, 0u);
}

TEST(SegmentResultByDict, ReinitResetsNodesUpToTheNewLengthOnly) {
    SegmentResultByDict lattice;
    ASSERT_TRUE(lattice.init(8));
    unsigned char record[4] = {};
    for (double& s : lattice.scores) s = 1.5;
    for (unsigned int& p : lattice.prev) p = 0;
    for (ws::BasicWordPosition& p : lattice.positions) p = {3, record};
    lattice.valid = 1;
    const double* scores = lattice.scores.data();

    ASSERT_TRUE(lattice.init(4));
    EXPECT_EQ(lattice.capacity, 8u);
    EXPECT_EQ(lattice.scores.data(), scores);
    EXPECT_EQ(lattice.valid, 0u);
    EXPECT_EQ(lattice.scores[4], -1e300);
    EXPECT_EQ(lattice.prev[4], 3u);
    EXPECT_EQ(lattice.positions[3].len, 1);
    // Node n + 1 and the positions past n are the previous text's.
    EXPECT_EQ(lattice.scores[5], 1.5);
    EXPECT_EQ(lattice.prev[5], 0u);
    EXPECT_EQ(lattice.positions[4].len, 3);
    EXPECT_EQ(lattice.positions[4].value, record);
}

TEST(SegmentResultByDict, InitOfNothingStillHasNodeZero) {
    SegmentResultByDict lattice;
    ASSERT_TRUE(lattice.init(0));
    ASSERT_GE(lattice.scores.size(), 1u);
    EXPECT_EQ(lattice.scores[0], 0.0);
    EXPECT_EQ(lattice.capacity, 0u);
}

}  // namespace
