#include "normalize/NormalizeIntf.h"

#include <cstdio>

#include "norm_utility/ErrorLine.h"
#include "normalize/Implement.h"

namespace normalize {

using norm_utility::writeErrorLine;

namespace {

// The Implement one thread normalises with, for one init of one facade.
struct ThreadImplement {
    const NormalizeIntf* owner = nullptr;
    unsigned long generation = 0;
    Implement* implement = nullptr;
    std::unique_ptr<Implement> owned;  // null for the Implement init built
};

thread_local ThreadImplement t_implement;

}  // namespace

NormalizeIntf* NormalizeIntf::m_pInstance = nullptr;

NormalizeIntf* NormalizeIntf::getInstance() {
    if (m_pInstance == nullptr) m_pInstance = new NormalizeIntf();
    return m_pInstance;
}

NormalizeIntf::NormalizeIntf() = default;

NormalizeIntf::~NormalizeIntf() = default;

bool NormalizeIntf::init(const std::string& configFile) {
    m_initialized.store(false, std::memory_order_release);
    const unsigned long generation = m_generation.fetch_add(1) + 1;
    t_implement = ThreadImplement();
    m_implement.reset();
    m_failure.clear();
    try {
        m_implement = std::make_unique<Implement>();
    } catch (...) {
        // Memory is likely short here, so the line is written without building a string.
        std::fputs("[NormalizeIntf::init] new Implement operation failed.\n", stderr);
        std::fflush(stderr);
        return false;
    }
    norm_utility::ErrorLineCapture capture;
    if (!m_implement->init(configFile)) {
        writeErrorLine("[NormalizeIntf::init] Implement initialization failed.");
        m_failure = capture.lines();
        return false;
    }
    t_implement.owner = this;
    t_implement.generation = generation;
    t_implement.implement = m_implement.get();
    m_initialized.store(true, std::memory_order_release);
    return true;
}

Implement* NormalizeIntf::_threadImplement() {
    const unsigned long generation = m_generation.load(std::memory_order_acquire);
    if (t_implement.owner == this && t_implement.generation == generation)
        return t_implement.implement;
    ThreadImplement mine;
    try {
        mine.owned = std::make_unique<Implement>();
    } catch (...) {
        std::fputs("[NormalizeIntf::doNormalize] new Implement operation failed.\n", stderr);
        std::fflush(stderr);
        return nullptr;
    }
    if (!mine.owned->initWorker()) {
        writeErrorLine("[NormalizeIntf::doNormalize] cannot set up this thread's Implement.");
        return nullptr;
    }
    mine.owner = this;
    mine.generation = generation;
    mine.implement = mine.owned.get();
    t_implement = std::move(mine);
    return t_implement.implement;
}

Implement* NormalizeIntf::_readyImplement(const std::string& input) {
    if (!isInitialized()) {
        writeErrorLine("[NormalizeIntf::doNormalize] interface is not initialized. input is [" +
                       input + "]");
        return nullptr;
    }
    return _threadImplement();
}

int NormalizeIntf::_reported(int result, const std::string& input) {
    if (result != 0)
        writeErrorLine("[NormalizeIntf::doNormalize] doNormalize failed for input [" + input + "]");
    return result;
}

int NormalizeIntf::doNormalize(const std::string& input, int mode, std::string& output,
                               std::vector<std::string>& words, bool inputIsGbk,
                               bool outputIsGbk) {
    Implement* implement = _readyImplement(input);
    if (implement == nullptr) return -1;
    return _reported(implement->doNormalize(input, mode, output, words, inputIsGbk, outputIsGbk),
                     input);
}

int NormalizeIntf::doNormalize(const std::string& input, int mode, std::string& output,
                               bool inputIsGbk, bool outputIsGbk) {
    Implement* implement = _readyImplement(input);
    if (implement == nullptr) return -1;
    return _reported(implement->doNormalize(input, mode, output, inputIsGbk, outputIsGbk), input);
}

}  // namespace normalize
