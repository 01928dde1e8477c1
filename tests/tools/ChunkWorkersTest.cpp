#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include "tools/ChunkWorkers.h"

using zeg_tools::ChunkWorkers;

namespace {

// Blocks go to whichever thread is free: each item once, each call with
// a thread index and at most a block, and the lead on the caller's thread
// while the workers are already at it.
TEST(ChunkWorkers, SharedRoundsCoverEveryItemOnceAndRunTheLeadFirst) {
    for (unsigned threads : {1u, 2u, 5u}) {
        ChunkWorkers workers(threads);
        for (std::size_t count : {0u, 1u, 7u, 64u, 1000u}) {
            std::vector<std::atomic<int>> hits(count);
            std::atomic<bool> badCall{false};
            bool leadRan = false;
            const std::thread::id caller = std::this_thread::get_id();
            workers.runShared(
                count, 7, [&] { leadRan = std::this_thread::get_id() == caller; },
                [&](unsigned thread, std::size_t begin, std::size_t end) {
                    if (thread >= threads || end - begin > 7 || begin % 7 != 0) badCall = true;
                    if (thread == 0 && std::this_thread::get_id() != caller) badCall = true;
                    for (std::size_t i = begin; i < end; ++i) ++hits[i];
                });
            EXPECT_TRUE(leadRan);
            EXPECT_FALSE(badCall.load());
            for (std::size_t i = 0; i < count; ++i)
                ASSERT_EQ(hits[i].load(), 1)
                    << threads << " threads, item " << i << " of " << count;
        }
    }
}

TEST(ChunkWorkers, ALeadsOrABlocksExceptionReachesTheCallerAfterTheRound) {
    ChunkWorkers workers(2);
    std::atomic<std::size_t> done{0};
    const auto count = [&](unsigned, std::size_t begin, std::size_t end) { done += end - begin; };
    EXPECT_THROW(workers.runShared(
                     100, 10, [] { throw std::runtime_error("lead"); }, count),
                 std::runtime_error);
    EXPECT_EQ(done.load(), 100u);  // the blocks ran all the same
    EXPECT_THROW(workers.runShared(
                     100, 10, [] {},
                     [](unsigned, std::size_t begin, std::size_t) {
                         if (begin == 50) throw std::runtime_error("block");
                     }),
                 std::runtime_error);
    done = 0;
    workers.runShared(
        100, 10, [] {}, count);
    EXPECT_EQ(done.load(), 100u);
}

}  // namespace
