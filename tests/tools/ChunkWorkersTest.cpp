#include "tools/ChunkWorkers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <vector>

using zeg_tools::ChunkWorkers;

namespace {

TEST(ChunkWorkers, EveryItemOnceInEveryRound) {
    for (unsigned threads : {1u, 2u, 5u}) {
        ChunkWorkers workers(threads);
        for (std::size_t count : {0u, 1u, 4u, 5u, 1000u}) {
            std::vector<std::atomic<int>> hits(count);
            std::vector<long> firstOf(threads, -1);
            workers.run(count, [&](unsigned slice, std::size_t begin, std::size_t end) {
                for (std::size_t i = begin; i < end; ++i) ++hits[i];
                firstOf[slice] = static_cast<long>(begin);
            });
            // Slices follow the items: slice k's items come before slice k + 1's.
            long last = -1;
            for (long first : firstOf) {
                if (first < 0) continue;  // an empty slice does not run
                EXPECT_GT(first, last);
                last = first;
            }
            for (std::size_t i = 0; i < count; ++i)
                ASSERT_EQ(hits[i].load(), 1) << threads << " threads, item " << i << " of " << count;
        }
    }
}

TEST(ChunkWorkers, ASlicesExceptionReachesTheCallerAndTheWorkersCarryOn) {
    ChunkWorkers workers(3);
    const auto failLast = [](unsigned, std::size_t, std::size_t end) {
        if (end == 30) throw std::runtime_error("last slice");
    };
    EXPECT_THROW(workers.run(30, failLast), std::runtime_error);
    std::atomic<std::size_t> sum{0};
    workers.run(30, [&](unsigned, std::size_t begin, std::size_t end) { sum += end - begin; });
    EXPECT_EQ(sum.load(), 30u);
}

}  // namespace
