#include "tools/ChunkWorkers.h"

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
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_job = &job;
        m_count = count;
        m_pending = m_threads - 1;
        m_error = nullptr;
        ++m_round;
    }
    m_start.notify_all();
    _runSlice(0);
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
        _runSlice(slice);
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
        std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_error) m_error = std::current_exception();
    }
}

}  // namespace zeg_tools
