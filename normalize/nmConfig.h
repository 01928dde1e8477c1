#ifndef ZEG_NORMALIZE_NMCONFIG_H
#define ZEG_NORMALIZE_NMCONFIG_H

#include <string>

namespace normalize {

// The normaliser's four settings, read from section "SERVER" of the
// configuration file and checked once. Getters refuse to answer (throw
// YException "configuration not initialized") until init has succeeded.
// Created on first use and never deleted. Thread safety: none; init runs
// once at start-up.
class nmConfig {
public:
    static const char* const SECTION_NAME;
    static const char* const OPTION_WS_CONFIG;
    static const char* const OPTION_NORMALIZE_STOP_FILE;
    static const char* const OPTION_NORMALIZE_SYNONYMS_FILE;
    static const char* const OPTION_MAX_INPUT_LENGTH;
    static const int MAX_INPUT_LENGTH_DEFAULT = 10000;

    static nmConfig* getInstance();

    nmConfig();
    virtual ~nmConfig();
    nmConfig(const nmConfig&) = delete;
    nmConfig& operator=(const nmConfig&) = delete;

    // Loads and checks every option. Each failure is written to standard
    // error and leaves as a YException carrying the underlying message; the
    // object then stays uninitialised with the options stored so far.
    void init(const std::string& configFile);
    bool isInitOK() const { return m_initialised; }

    const std::string& getConfigFileName() const;
    const std::string& getwsConfig() const;
    const std::string& getStopFile() const;
    const std::string& getSynonymsFile() const;
    int getMaxInputLength() const;

    void setConfigFileName(const std::string& value) { m_configFileName = value; }
    void setwsConfig(const std::string& value) { m_wsConfig = value; }
    void setStopFile(const std::string& value) { m_stopFile = value; }
    void setSynonymsFile(const std::string& value) { m_synonymsFile = value; }
    void setMaxInputLength(int value) { m_maxInputLength = value; }

    // Back to the state before init: uninitialised, empty paths, default length.
    void setInitValue();

private:
    static nmConfig* m_pInstance;

    void requireInitialised() const;
    void loadConfiguration(const std::string& configFile);
    std::string readPathOption(const char* option, const char* failurePrefix);
    int readMaxInputLength();

    bool m_initialised = false;
    std::string m_configFileName;
    std::string m_wsConfig;
    std::string m_stopFile;
    std::string m_synonymsFile;
    int m_maxInputLength = MAX_INPUT_LENGTH_DEFAULT;
};

}  // namespace normalize

#endif
