#ifndef ZEG_TOOLS_CHUNKWORKERS_H
#define ZEG_TOOLS_CHUNKWORKERS_H

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

// Splits the items of a chunk among threads: the calling thread and
// threads - 1 workers each take one contiguous slice, and run() returns
// when every slice is done, so the caller writes results in input order.
// Slice k (0 to threads - 1, in item order) always runs on the same thread,
// slice 0 on the caller's, so a job may keep per-slice state.
// The workers live as long as the object: what a library keeps per thread
// (a normaliser's worker) is built once, not once a chunk.
// Not copyable; run() is called from one thread at a time.
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

private:
    void _work(unsigned slice);
    // Runs `slice` of the current chunk and keeps its exception, if any.
    void _runSlice(unsigned slice);

    const unsigned m_threads;
    std::vector<std::thread> m_workers;
    std::mutex m_mutex;
    std::condition_variable m_start;
    std::condition_variable m_done;
    const Job* m_job = nullptr;
    std::size_t m_count = 0;
    uint64_t m_round = 0;
    unsigned m_pending = 0;
    bool m_stop = false;
    std::exception_ptr m_error;
};

}  // namespace zeg_tools

#endif
