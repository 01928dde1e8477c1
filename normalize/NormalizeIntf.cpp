#include "normalize/NormalizeIntf.h"

#include <cstdio>

#include "norm_utility/ErrorLine.h"
#include "normalize/Implement.h"

namespace normalize {

using norm_utility::writeErrorLine;

NormalizeIntf* NormalizeIntf::m_pInstance = nullptr;

NormalizeIntf* NormalizeIntf::getInstance() {
    if (m_pInstance == nullptr) m_pInstance = new NormalizeIntf();
    return m_pInstance;
}

NormalizeIntf::NormalizeIntf() = default;

NormalizeIntf::~NormalizeIntf() = default;

bool NormalizeIntf::init(const std::string& configFile) {
    m_initialized = false;
    m_implement.reset();
    try {
        m_implement = std::make_unique<Implement>();
    } catch (...) {
        // Memory is likely short here, so the line is written without building a string.
        std::fputs("[NormalizeIntf::init] new Implement operation failed.\n", stderr);
        std::fflush(stderr);
        return false;
    }
    if (!m_implement->init(configFile)) {
        writeErrorLine("[NormalizeIntf::init] Implement initialization failed.");
        return false;
    }
    m_initialized = true;
    return true;
}

int NormalizeIntf::doNormalize(const std::string& input, int mode, std::string& output,
                               std::vector<std::string>& words, bool inputIsGbk,
                               bool outputIsGbk) {
    if (!m_initialized) {
        writeErrorLine("[NormalizeIntf::doNormalize] interface is not initialized. input is [" +
                       input + "]");
        return -1;
    }
    const int result =
        m_implement->doNormalize(input, mode, output, words, inputIsGbk, outputIsGbk);
    if (result != 0)
        writeErrorLine("[NormalizeIntf::doNormalize] doNormalize failed for input [" + input + "]");
    return result;
}

int NormalizeIntf::doNormalize(const std::string& input, int mode, std::string& output,
                               bool inputIsGbk, bool outputIsGbk) {
    std::vector<std::string> words;
    return doNormalize(input, mode, output, words, inputIsGbk, outputIsGbk);
}

}  // namespace normalize
