#ifndef ZEG_WS_CORE_WSLOGGER_H
#define ZEG_WS_CORE_WSLOGGER_H

#include <cstdarg>
#include <cstdio>
#include <string>

#include "ws/core/wsFile.h"

namespace ws {

// The segmenter's levelled logger. A message of level L is written only when
// the logger's level is at least L; it goes to the log file when one is open,
// else to standard error. Each message is cut at 4095 bytes.
// Output line: "[<time text>] [<name>-<LEVEL>] <file>:<line>: <message>"
// (the time text stays empty). On standard error a newline is appended; in a
// file the message's own newline, if any, ends the line.
// Thread safety: writes take no lock; concurrent messages may interleave
// between prefix and text. Not copyable (owns its log file).
class Logger {
public:
    enum Level { LEVEL_ERROR = 2, LEVEL_WARN = 3, LEVEL_INFO = 4, LEVEL_DEBUG = 5, LEVEL_TRACE = 6 };

    // Errors only, to standard error.
    Logger();
    // Opens `path` for appending when it is not empty; on failure complains
    // on standard error and writes there instead.
    Logger(const std::string& name, const std::string& path, int level, int fileLevel);
    virtual ~Logger();
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    // Sets name and levels; opens `path` for appending when it is not empty
    // (false, with a complaint on standard error, when that fails; output
    // then goes to standard error).
    bool init(const std::string& name, const std::string& path, int level, int fileLevel);

    // Switches output to `path` (appending). 0 on success or for an empty
    // path (nothing changes); -1 when the file cannot be opened (nothing
    // changes either).
    int openStream(const std::string& path);

    void error(const char* fmt, ...) __attribute__((format(printf, 2, 3)));
    void warn(const char* fmt, ...) __attribute__((format(printf, 2, 3)));
    void info(const char* fmt, ...) __attribute__((format(printf, 2, 3)));
    void debug(const char* fmt, ...) __attribute__((format(printf, 2, 3)));
    void trace(const char* fmt, ...) __attribute__((format(printf, 2, 3)));

    // As above, with the caller's source file name (no directory) and line.
    void errorPos(const char* file, int line, const char* fmt, ...)
        __attribute__((format(printf, 4, 5)));
    void warnPos(const char* file, int line, const char* fmt, ...)
        __attribute__((format(printf, 4, 5)));
    void infoPos(const char* file, int line, const char* fmt, ...)
        __attribute__((format(printf, 4, 5)));
    void debugPos(const char* file, int line, const char* fmt, ...)
        __attribute__((format(printf, 4, 5)));
    void tracePos(const char* file, int line, const char* fmt, ...)
        __attribute__((format(printf, 4, 5)));

    int getLevel() const { return m_level; }

    // A default logger of its own, separate from the segmenter's; built on
    // first use, destroyed at exit.
    static Logger* getLogger();

private:
    static const int kBufferSize = 4096;

    bool openFile(const std::string& path);
    void write(const char* levelName, const char* file, int line, const char* fmt, va_list args);

    int m_level = LEVEL_ERROR;
    int m_fileLevel = LEVEL_ERROR;
    File m_stream;
    std::string m_name;
    bool m_flag = true;
    char m_timeText[64] = {};
};

}  // namespace ws

#endif
