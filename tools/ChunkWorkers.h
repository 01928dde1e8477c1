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

// Splits the items of a chunk among threads: with run(), the calling thread
// and threads - 1 workers each take one contiguous slice; with runShared(),
// small blocks go to whichever thread is free. Both return when every item
// is done, so the caller writes results in input order.
// Slice k (0 to threads - 1, in item order) always runs on the same thread,
// slice 0 on the caller's, so a job may keep per-slice state.
// The workers live as long as the object: what a library keeps per thread
// (a normaliser's worker) is built once, not once a chunk.
// Not copyable; run() and runShared() are called from one thread at a time.
class ChunkWorkers {
public:
    using Job = std::function<void(unsigned slice, std::size_t begin, std::size_t end)>;

    // REQUIRES: threads >= 1.
    explicit ChunkWorkers(unsigned threads);
    ~ChunkWorkers();
    ChunkWorkers(const ChunkWorkers&) = delete;
    ChunkWorkers& operator=(const ChunkWorkers&) = delete;

    unsigned threads() const { return m_threads; }

    // The most threads a tool's --threads may ask for.
    static const unsigned kMaxThreads = 64;
    // A --threads value: a decimal 1 to kMaxThreads. False for anything else.
    static bool parseThreads(const std::string& text, unsigned& threads);

    // Calls job on slices that cover [0, count) exactly once. The first
    // exception a slice throws is rethrown here, after all slices ended.
    void run(std::size_t count, const Job& job);

    // Like run(), but the items go out in blocks of `block`, each to the
    // first thread free, so that a slow or busy thread holds no one up: the
    // job's first argument is the thread (0 the caller's), not a slice, and
    // blocks come in no set order. The caller runs `lead` first (reading and
    // writing, say) while the workers start; then it takes blocks too. The
    // first exception of `lead` or a block is rethrown after all ended.
    // REQUIRES: block >= 1.
    void runShared(std::size_t count, std::size_t block, const std::function<void()>& lead,
                   const Job& job);

private:
    // Hands the current round to the workers.
    void _start(std::size_t count, std::size_t block, const Job& job);
    // Waits for the workers to end the round; rethrows its first exception.
    void _finish();
    void _work(unsigned slice);
    // Runs `slice` of the current chunk and keeps its exception, if any.
    void _runSlice(unsigned slice);
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
    std::size_t m_block = 0;  // 0: slices; else the block size
    std::atomic<std::size_t> m_nextBlock{0};
    uint64_t m_round = 0;
    unsigned m_pending = 0;
    bool m_stop = false;
    std::exception_ptr m_error;
};

}  // namespace zeg_tools

#endif
