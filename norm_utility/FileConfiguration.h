#ifndef ZEG_NORM_UTILITY_FILECONFIGURATION_H
#define ZEG_NORM_UTILITY_FILECONFIGURATION_H

#include <map>
#include <string>

#include "norm_utility/BaseConfiguration.h"

namespace norm_utility {

// An INI-like file: "[SECTION]" headers, "KEY = value" lines, comments that
// start a line with '#' or ';'. Values are stored under the composed key
// "[SECTION]KEY"; programmatic defaults answer for keys the file lacks.
// Every instance reads the one static configFileName.
// Thread safety: none; reloads must not overlap with reads.
class FileConfiguration : public BaseConfiguration {
public:
    // The file every instance reads; set it before constructing one.
    static std::string configFileName;

    // Reads configFileName. Throws YException "Cannot open configuration
    // file <path>: <strerror>" when it cannot be read.
    FileConfiguration();
    ~FileConfiguration() override;

    // Empties the file values, then reads configFileName again. False when
    // the file cannot be opened or read (the file values stay empty; the
    // defaults remain). Stamps the load time either way.
    bool initialize() override;

    // Inserts a default unless one is already set for the composed key.
    virtual void setDefaultValue(const char* section, const char* key, const char* value);
    virtual void setDefaultValue(const char* key, const char* value);

    // The file value, else the default. Throws YException
    // "<composed key> is missed in configuration file." when neither exists.
    virtual const std::string& getValue(const char* section, const char* key);
    virtual const std::string& getValue(const char* key);

    // Parses one line. True only for an option line (key and value set); a
    // section header replaces `section` (brackets included) and gives false.
    static bool getPairs(const char* line, std::string& section, std::string& key,
                         std::string& value);

    // "[" + section + "]" + key, or section + key when section starts with "[".
    static std::string composeKey(const char* section, const char* key);

private:
    bool readFile(std::map<std::string, std::string>& into);

    std::map<std::string, std::string> m_values;
    std::map<std::string, std::string> m_defaults;
};

}  // namespace norm_utility

#endif
