#include "tools/ChunkWorkers.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace zeg_tools {

ChunkWorkers::ChunkWorkers(unsigned threads) : m_threads(threads < 1 ? 1 : threads) {
    m_workers.reserve(m_threads - 1);
    for (unsigned thread = 1; thread < m_threads; ++thread)
        m_workers.emplace_back(&ChunkWorkers::_work, this, thread);
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

void ChunkWorkers::_work(unsigned thread) {
    uint64_t seen = 0;
    for (;;) {
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_start.wait(lock, [&] { return m_stop || m_round != seen; });
            if (m_stop) return;
            seen = m_round;
        }
        _runBlocks(thread);
        std::lock_guard<std::mutex> lock(m_mutex);
        if (--m_pending == 0) m_done.notify_one();
    }
}

void ChunkWorkers::_runBlocks(unsigned thread) {
    // m_job, m_count and m_block do not change while a round runs.
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
