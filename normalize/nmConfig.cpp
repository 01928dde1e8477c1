#include "normalize/nmConfig.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "norm_utility/AlgoConfig.h"
#include "norm_utility/AlgoUtil.h"
#include "norm_utility/ErrorLine.h"
#include "norm_utility/YException.h"

namespace normalize {

using norm_utility::AlgoConfig;
using norm_utility::writeErrorLine;
using norm_utility::YException;

const char* const nmConfig::SECTION_NAME = "SERVER";
const char* const nmConfig::OPTION_WS_CONFIG = "WS_CONFIG";
const char* const nmConfig::OPTION_NORMALIZE_STOP_FILE = "STOP_FILE";
const char* const nmConfig::OPTION_NORMALIZE_SYNONYMS_FILE = "SYNONYMS_FILE";
const char* const nmConfig::OPTION_MAX_INPUT_LENGTH = "MAX_INPUT_LENGTH";
nmConfig* nmConfig::m_pInstance = nullptr;

namespace {

AlgoConfig& configuration() {
    if (AlgoConfig::configurationInstance == nullptr)
        AlgoConfig::configurationInstance = new AlgoConfig();
    return *AlgoConfig::configurationInstance;
}

[[noreturn]] void reportAndThrow(const std::string& message) {
    writeErrorLine(message);
    throw YException(message);
}

}  // namespace

nmConfig* nmConfig::getInstance() {
    if (m_pInstance == nullptr) m_pInstance = new nmConfig();
    return m_pInstance;
}

nmConfig::nmConfig() { setInitValue(); }

nmConfig::~nmConfig() = default;

void nmConfig::setInitValue() {
    m_initialised = false;
    m_configFileName.clear();
    m_wsConfig.clear();
    m_stopFile.clear();
    m_synonymsFile.clear();
    m_maxInputLength = MAX_INPUT_LENGTH_DEFAULT;
}

void nmConfig::init(const std::string& configFile) {
    setInitValue();
    loadConfiguration(configFile);
    setConfigFileName(configFile);
    setwsConfig(readPathOption(OPTION_WS_CONFIG, "[nmConfig::init] get ws config failed: "));
    setStopFile(
        readPathOption(OPTION_NORMALIZE_STOP_FILE, "[nmConfig::init] get stop file failed: "));
    setSynonymsFile(readPathOption(OPTION_NORMALIZE_SYNONYMS_FILE,
                                   "[nmConfig::init] get synonyms file failed: "));
    setMaxInputLength(readMaxInputLength());
    m_initialised = true;
}

void nmConfig::loadConfiguration(const std::string& configFile) {
    try {
        norm_utility::FileConfiguration::configFileName = configFile;
        AlgoConfig& config = configuration();
        config.initialize();
        config.setLastLoadTime(time(nullptr));
    } catch (const YException& e) {
        writeErrorLine("[nmConfig::init] failed while loading configuration file [" + configFile +
                       "]: " + e.GetMsg());
        throw;
    }
}

std::string nmConfig::readPathOption(const char* option, const char* failurePrefix) {
    try {
        std::string path = configuration().getValue(SECTION_NAME, option);
        norm_utility::AlgoUtil::trim(path);
        if (path.empty())
            reportAndThrow(std::string("Cannot get option ") + option + " from section [" +
                           SECTION_NAME + "].");
        if (access(path.c_str(), F_OK) != 0)
            reportAndThrow(std::string("The given ") + option + " : " + path + " does not exist.");
        return path;
    } catch (const YException& e) {
        writeErrorLine(failurePrefix + std::string(e.GetMsg()));
        throw;
    }
}

int nmConfig::readMaxInputLength() {
    try {
        const std::string& text = configuration().getValue(SECTION_NAME, OPTION_MAX_INPUT_LENGTH);
        const int length = static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
        if (length <= 0) {
            char message[1024];
            std::snprintf(message, sizeof message, "Invalid value for option [%s} in section [%s].",
                          OPTION_MAX_INPUT_LENGTH, SECTION_NAME);
            writeErrorLine(std::string("[nmConfig::init] ") + message);
            throw YException(message);
        }
        return length;
    } catch (const YException& e) {
        writeErrorLine(std::string("[nmConfig::init] get max input length failed: ") + e.GetMsg());
        throw;
    }
}

void nmConfig::requireInitialised() const {
    if (!m_initialised) throw YException("configuration not initialized");
}

const std::string& nmConfig::getConfigFileName() const {
    requireInitialised();
    return m_configFileName;
}

const std::string& nmConfig::getwsConfig() const {
    requireInitialised();
    return m_wsConfig;
}

const std::string& nmConfig::getStopFile() const {
    requireInitialised();
    return m_stopFile;
}

const std::string& nmConfig::getSynonymsFile() const {
    requireInitialised();
    return m_synonymsFile;
}

int nmConfig::getMaxInputLength() const {
    requireInitialised();
    return m_maxInputLength;
}

}  // namespace normalize
