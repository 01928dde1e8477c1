#include "norm_utility/FileConfiguration.h"

#include <cctype>
#include <cerrno>
#include <cstring>
#include <ctime>

#include "norm_utility/StdioFile.h"
#include "norm_utility/YException.h"

namespace norm_utility {

namespace {

// Bytes of 0x80 and above belong to multibyte characters and are never blank.
bool isBlank(unsigned char c) { return c < 0x80 && std::isspace(c); }

const char* skipBlanks(const char* p) {
    while (*p != '\0' && isBlank(static_cast<unsigned char>(*p))) ++p;
    return p;
}

const char* valueEnd(const char* begin) {
    const char* end = std::strchr(begin, '\r');
    if (end == nullptr) end = std::strchr(begin, '\n');
    return end != nullptr ? end : begin + std::strlen(begin);
}

}  // namespace

std::string FileConfiguration::configFileName;

FileConfiguration::FileConfiguration() {
    if (!initialize()) {
        const int err = errno;
        throw YException("Cannot open configuration file " + configFileName + ": " +
                         std::strerror(err));
    }
}

FileConfiguration::~FileConfiguration() = default;

bool FileConfiguration::initialize() {
    m_values.clear();
    std::map<std::string, std::string> loaded;
    const bool ok = readFile(loaded);
    const int err = errno;
    if (ok) m_values.swap(loaded);
    setLastLoadTime(time(nullptr));
    errno = err;
    return ok;
}

bool FileConfiguration::readFile(std::map<std::string, std::string>& into) {
    StdioFile file;
    if (!file.open(configFileName.c_str())) return false;
    char line[2048];
    std::string section, key, value;
    while (file.readLine(line, sizeof line)) {
        if (getPairs(line, section, key, value)) into.emplace(section + key, value);
    }
    if (file.failed()) {
        if (errno == 0) errno = EIO;
        return false;
    }
    return true;
}

bool FileConfiguration::getPairs(const char* line, std::string& section, std::string& key,
                                 std::string& value) {
    if (line == nullptr || *line == '\0') return false;
    const char* p = skipBlanks(line);
    if (*p == '\0' || *p == '#' || *p == ';') return false;
    if (*p == '[') {
        const char* close = std::strchr(p, ']');
        if (close != nullptr) section.assign(p, close + 1);
        return false;
    }
    // The search starts one past the first character, so a leading '=' is
    // part of the key.
    const char* eq = std::strchr(p + 1, '=');
    if (eq == nullptr) return false;
    const char* keyEnd = eq;
    while (keyEnd > p && isBlank(static_cast<unsigned char>(keyEnd[-1]))) --keyEnd;
    key.assign(p, keyEnd);
    const char* v = skipBlanks(eq + 1);
    value.assign(v, valueEnd(v));
    return true;
}

std::string FileConfiguration::composeKey(const char* section, const char* key) {
    const char* s = section != nullptr ? section : "";
    const char* k = key != nullptr ? key : "";
    if (*s == '[') return std::string(s) + k;
    std::string composed;
    composed.reserve(std::strlen(s) + std::strlen(k) + 2);
    composed.append("[").append(s).append("]").append(k);
    return composed;
}

void FileConfiguration::setDefaultValue(const char* section, const char* key, const char* value) {
    m_defaults.emplace(composeKey(section, key), value != nullptr ? value : "");
}

void FileConfiguration::setDefaultValue(const char* key, const char* value) {
    setDefaultValue("", key, value);
}

const std::string& FileConfiguration::getValue(const char* section, const char* key) {
    const std::string composed = composeKey(section, key);
    auto it = m_values.find(composed);
    if (it != m_values.end()) return it->second;
    it = m_defaults.find(composed);
    if (it != m_defaults.end()) return it->second;
    throw YException(composed + " is missed in configuration file.");
}

const std::string& FileConfiguration::getValue(const char* key) { return getValue("", key); }

}  // namespace norm_utility
