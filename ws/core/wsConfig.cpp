#include "ws/core/wsConfig.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "ws/core/wsLineReader.h"
#include "ws/core/wsStringUtil.h"

namespace ws {

namespace {

// Carriage return is not a blank here: files with CRLF line ends keep the
// '\r' at the end of their values.
const char* const kLineBlanks = " \t\a\n";
const std::string kInclude = "#include";
// A configuration line is a key and a path or two; a longer one is no
// configuration (and an endless one would never end).
const std::size_t kLineBuffer = 65536;

std::string trimBlanks(const std::string& text) {
    const std::string::size_type first = text.find_first_not_of(kLineBlanks);
    if (first == std::string::npos) return std::string();
    const std::string::size_type last = text.find_last_not_of(kLineBlanks);
    return text.substr(first, last - first + 1);
}

}  // namespace

Config::Config() = default;

Config::Config(const char* path) {
    // Kept for callers that cannot go on without their configuration.
    if (!_load(path)) std::exit(-1);
}

Config::~Config() = default;

bool Config::init(const char* path) {
    m_includeDepth = 0;
    m_includeCount = 0;
    return _load(path);
}

std::string Config::getString(const std::string& key, const std::string& def) const {
    return _getVariable(key, def);
}

bool Config::getBool(const std::string& key, bool def) const {
    return _getVariable(key, def ? "true" : "false") == "true";
}

long Config::getLong(const std::string& key, long def) const {
    return std::strtol(_getVariable(key, std::to_string(def)).c_str(), nullptr, 10);
}

double Config::getDouble(const std::string& key, double def) const {
    return std::strtod(_getVariable(key, std::to_string(def)).c_str(), nullptr);
}

void Config::setString(const std::string& key, const std::string& value) {
    _setVariable(key, value);
}

void Config::setLong(const std::string& key, long value) {
    _setVariable(key, std::to_string(value));
}

void Config::setDouble(const std::string& key, double value) {
    _setVariable(key, std::to_string(value));
}

void Config::setBool(const std::string& key, bool value) {
    _setVariable(key, value ? "true" : "false");
}

void Config::listAll() const {
    std::cout << "The item number is " << m_items.size() << "\n";
    for (const auto& item : m_items) {
        std::string value = item.second;
        _replaceSub(value);
        std::cout << item.first << " = " << value << "\n";
    }
    std::cout.flush();
}

bool Config::_load(const char* path) {
    LineReader in(kLineBuffer);
    if (!in.open(path)) {
        std::cerr << "can't open file " << (path != nullptr ? path : "(null)") << std::endl;
        return false;
    }
    std::string line;
    for (unsigned lineNo = 1; in.next(line); ++lineNo) {
        if (in.cut(line)) {
            std::cerr << path << ":" << lineNo << ": longer than " << kLineBuffer - 1 << " bytes"
                      << std::endl;
            return false;
        }
        if (line.back() == '\n') line.pop_back();
        if (!_loadLine(line)) break;
    }
    return !in.failed();
}

bool Config::_loadLine(const std::string& line) {
    const IncludeResult include = _procInclude(line);
    if (include == INCLUDE_FAILED) return false;
    if (include == INCLUDE_HANDLED) return true;
    std::string key;
    std::string value;
    if (_seperatString(line, key, value) != SPLIT_OK) return true;
    if (key[0] == '$') {
        m_variables[key] = value;
    } else {
        m_items[key] = value;
    }
    return true;
}

Config::IncludeResult Config::_procInclude(const std::string& line) {
    std::string rest;
    stripSpace(line, rest);
    if (rest.empty()) return INCLUDE_HANDLED;
    if (!startwith(kInclude, rest)) return NOT_INCLUDE;
    std::string path = rest.substr(kInclude.size());
    const std::string::size_type open = rest.find('"', kInclude.size());
    if (open != std::string::npos) {
        const std::string::size_type close = rest.find('"', open + 1);
        if (close != std::string::npos) path = rest.substr(open + 1, close - open - 1);
    }
    if (m_includeDepth >= kMaxIncludeDepth) {
        std::cerr << "can't include file " << path << ": more than " << kMaxIncludeDepth
                  << " nested includes" << std::endl;
        return INCLUDE_FAILED;
    }
    if (++m_includeCount > kMaxIncludes) {
        std::cerr << "can't include file " << path << ": more than " << kMaxIncludes
                  << " includes" << std::endl;
        return INCLUDE_FAILED;
    }
    ++m_includeDepth;
    const bool loaded = _load(path.c_str());
    --m_includeDepth;
    return loaded ? INCLUDE_HANDLED : INCLUDE_FAILED;
}

int Config::_seperatString(const std::string& line, std::string& key, std::string& value) {
    const std::string::size_type equals = line.find('=');
    if (equals == std::string::npos) return SPLIT_NO_ASSIGNMENT;
    const std::string keyPart = line.substr(0, equals);
    if (keyPart.find_first_not_of(kLineBlanks) == std::string::npos) return SPLIT_EMPTY_KEY;
    // Only a comment marker in the very first column counts.
    if (keyPart[0] == '#' || keyPart.compare(0, 2, "//") == 0) return SPLIT_COMMENT;
    key = trimBlanks(keyPart);
    value = trimBlanks(line.substr(equals + 1));
    return SPLIT_OK;
}

std::string Config::_getVariable(const std::string& key, const std::string& def) const {
    const auto item = m_items.find(key);
    if (item == m_items.end()) return def;
    std::string value = item->second;
    _replaceSub(value);
    return value;
}

void Config::_setVariable(const std::string& key, const std::string& value) {
    if (!key.empty() && key[0] == '$') {
        m_variables[key] = value;
    } else {
        m_items[key] = value;
    }
}

void Config::_replaceSub(std::string& text) const {
    for (const auto& variable : m_variables) {
        if (!substituteOne(variable.first, variable.second, text)) {
            std::cerr << "variable " << variable.first << " contains itself; not substituted"
                      << std::endl;
        }
    }
}

// Replaces each occurrence of `name`, resuming the search one character
// after the start of the last replacement. A value holding its own name past
// its first character would be replaced forever: that is detected when a
// match falls entirely inside the value just inserted, and `text` is then
// left as it was before this variable (false).
bool Config::substituteOne(const std::string& name, const std::string& value,
                           std::string& text) {
    std::string::size_type at = text.find(name);
    if (at == std::string::npos) return true;
    const std::string original = text;
    while (at != std::string::npos) {
        text.replace(at, name.size(), value);
        const std::string::size_type next = text.find(name, at + 1);
        if (next != std::string::npos && next + name.size() <= at + value.size()) {
            text = original;
            return false;
        }
        at = next;
    }
    return true;
}

}  // namespace ws
