#include "ws/core/wsLogger.h"

#include <utility>

namespace ws {

#define WS_LOGGER_FORWARD(method, level, name)              \
    void Logger::method(const char* fmt, ...) {             \
        if (m_level < (level)) return;                      \
        va_list args;                                       \
        va_start(args, fmt);                                \
        write(name, nullptr, 0, fmt, args);          \
        va_end(args);                                       \
    }                                                       \
    void Logger::method##Pos(const char* file, int line, const char* fmt, ...) { \
        if (m_level < (level)) return;                      \
        va_list args;                                       \
        va_start(args, fmt);                                \
        write(name, file, line, fmt, args);          \
        va_end(args);                                       \
    }

WS_LOGGER_FORWARD(error, LEVEL_ERROR, "ERROR")
WS_LOGGER_FORWARD(warn, LEVEL_WARN, "WARN")
WS_LOGGER_FORWARD(info, LEVEL_INFO, "INFO")
WS_LOGGER_FORWARD(debug, LEVEL_DEBUG, "DEBUG")
WS_LOGGER_FORWARD(trace, LEVEL_TRACE, "TRACE")

#undef WS_LOGGER_FORWARD

Logger::Logger() = default;

Logger::Logger(const std::string& name, const std::string& path, int level, int fileLevel)
    : m_level(level), m_fileLevel(fileLevel), m_name(name) {
    if (!path.empty()) openFile(path);
}

Logger::~Logger() = default;

bool Logger::init(const std::string& name, const std::string& path, int level, int fileLevel) {
    m_level = level;
    m_fileLevel = fileLevel;
    m_name = name;
    return path.empty() || openFile(path);
}

// Replaces the destination; a failed open falls back to standard error.
bool Logger::openFile(const std::string& path) {
    if (m_stream.open(path.c_str(), "a+")) return true;
    std::fprintf(stderr, "open log file failed: %s\n", path.c_str());
    return false;
}

int Logger::openStream(const std::string& path) {
    if (path.empty()) return 0;
    File stream;
    if (!stream.open(path.c_str(), "a+")) return -1;
    m_stream = std::move(stream);
    return 0;
}

void Logger::write(const char* levelName, const char* file, int line, const char* fmt,
                   va_list args) {
    char message[kBufferSize];
    std::vsnprintf(message, sizeof message, fmt != nullptr ? fmt : "", args);
    char prefix[kBufferSize];
    if (file != nullptr)
        std::snprintf(prefix, sizeof prefix, "[%s-%s] %s:%d", m_name.c_str(), levelName, file, line);
    else
        std::snprintf(prefix, sizeof prefix, "[%s-%s]", m_name.c_str(), levelName);
    std::FILE* out = m_stream ? m_stream.get() : stderr;
    std::fprintf(out, "[%s] %s: ", m_timeText, prefix);
    std::fprintf(out, m_stream ? "%s" : "%s\n", message);
    std::fflush(out);
}

Logger* Logger::getLogger() {
    static Logger logger;
    return &logger;
}

}  // namespace ws
