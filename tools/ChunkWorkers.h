#ifndef ZEG_TOOLS_CHUNKWORKERS_H
#define ZEG_TOOLS_CHUNKWORKERS_H

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace zeg_tools {

// Shares the items of a chunk among threads: small blocks of them go to
// whichever thread is free, so that a slow or busy thread holds no one up.
// A round returns when every item is done, so the caller writes results in
// input order. Thread k (0 to threads - 1, 0 the caller's) is always the same
// thread, so a job may keep per-thread state.
// The workers live as long as the object: what a library keeps per thread
// (a normaliser's worker) is built once, not once a chunk.
// Not copyable; runShared() is called from one thread at a time.
class ChunkWorkers {
public:
    using Job = std::function<void(unsigned thread, std::size_t begin, std::size_t end)>;

    // REQUIRES: threads >= 1.
    explicit ChunkWorkers(unsigned threads);
    ~ChunkWorkers();
    ChunkWorkers(const ChunkWorkers&) = delete;
    ChunkWorkers& operator=(const ChunkWorkers&) = delete;

    // The most threads a tool's --threads may ask for.
    static const unsigned kMaxThreads = 64;
    // A --threads value: a decimal 1 to kMaxThreads. False for anything else.
    static bool parseThreads(const std::string& text, unsigned& threads);

    // Calls job(thread, begin, end) on blocks of at most `block` items that
    // cover [0, count) exactly once, in no set order. The caller runs `lead`
    // first (reading and writing, say) while the workers start; then it
    // takes blocks too. The first exception of `lead` or a block is rethrown
    // after all ended.
    // REQUIRES: block >= 1.
    void runShared(std::size_t count, std::size_t block, const std::function<void()>& lead,
                   const Job& job);

private:
    // Hands the current round to the workers.
    void _start(std::size_t count, std::size_t block, const Job& job);
    // Waits for the workers to end the round; rethrows its first exception.
    void _finish();
    void _work(unsigned thread);
    // Runs blocks of the current round on `thread` until none is left.
    void _runBlocks(unsigned thread);
    void _keepError();

    const unsigned m_threads;
    std::vector<std::thread> m_workers;
    std::mutex m_mutex;
    std::condition_variable m_start;
    std::condition_variable m_done;
    const Job* m_job = nullptr;
    std::size_t m_count = 0;
    std::size_t m_block = 1;
    std::atomic<std::size_t> m_nextBlock{0};
    uint64_t m_round = 0;
    unsigned m_pending = 0;
    bool m_stop = false;
    std::exception_ptr m_error;
};

}  // namespace zeg_tools

#endif
