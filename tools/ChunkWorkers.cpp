#include "tools/ChunkWorkers.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace zeg_tools {

ChunkWorkers::ChunkWorkers(unsigned threads) : m_threads(threads < 1 ? 1 : threads) {
    m_workers.reserve(m_threads - 1);
    for (unsigned slice = 1; slice < m_threads; ++slice)
        m_workers.emplace_back(&ChunkWorkers::_work, this, slice);
}

ChunkWorkers::~ChunkWorkers() {
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_start.notify_all();
    for (std::thread& worker : m_workers) worker.join();
}

bool ChunkWorkers::parseThreads(const std::string& text, unsigned& threads) {
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (errno != 0 || end == text.c_str() || *end != '\0' || value < 1 ||
        value > static_cast<long>(kMaxThreads))
        return false;
    threads = static_cast<unsigned>(value);
    return true;
}

void ChunkWorkers::run(std::size_t count, const Job& job) {
    _start(count, 0, job);
    _runSlice(0);
    _finish();
}

void ChunkWorkers::runShared(std::size_t count, std::size_t block,
                             const std::function<void()>& lead, const Job& job) {
    _start(count, block < 1 ? 1 : block, job);
    try {
        lead();
    } catch (...) {
        _keepError();
    }
    _runBlocks(0);
    _finish();
}

void ChunkWorkers::_start(std::size_t count, std::size_t block, const Job& job) {
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_job = &job;
        m_count = count;
        m_block = block;
        m_nextBlock.store(0, std::memory_order_relaxed);
        m_pending = m_threads - 1;
        m_error = nullptr;
        ++m_round;
    }
    m_start.notify_all();
}

void ChunkWorkers::_finish() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_done.wait(lock, [this] { return m_pending == 0; });
    m_job = nullptr;
    if (m_error) std::rethrow_exception(m_error);
}

void ChunkWorkers::_work(unsigned slice) {
    uint64_t seen = 0;
    for (;;) {
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_start.wait(lock, [&] { return m_stop || m_round != seen; });
            if (m_stop) return;
            seen = m_round;
        }
        if (m_block == 0)
            _runSlice(slice);
        else
            _runBlocks(slice);
        std::lock_guard<std::mutex> lock(m_mutex);
        if (--m_pending == 0) m_done.notify_one();
    }
}

void ChunkWorkers::_runSlice(unsigned slice) {
    // m_job and m_count do not change while a round runs.
    const std::size_t begin = m_count * slice / m_threads;
    const std::size_t end = m_count * (slice + 1) / m_threads;
    try {
        if (begin < end) (*m_job)(slice, begin, end);
    } catch (...) {
        _keepError();
    }
}

void ChunkWorkers::_runBlocks(unsigned thread) {
    const std::size_t blocks = (m_count + m_block - 1) / m_block;
    for (;;) {
        const std::size_t k = m_nextBlock.fetch_add(1, std::memory_order_relaxed);
        if (k >= blocks) return;
        const std::size_t begin = k * m_block;
        try {
            (*m_job)(thread, begin, std::min(m_count, begin + m_block));
        } catch (...) {
            _keepError();
        }
    }
}

void ChunkWorkers::_keepError() {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_error) m_error = std::current_exception();
}

}  // namespace zeg_tools
