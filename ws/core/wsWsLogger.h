#ifndef ZEG_WS_CORE_WSWSLOGGER_H
#define ZEG_WS_CORE_WSWSLOGGER_H

#include "ws/core/wsLogger.h"

namespace ws {

// Error codes returned by the segmenter's loaders; printErr turns each into
// its fixed message. Any other code has no message.
enum WsErrorCode {
    WS_ERR_OPEN_FILE = -1,        // "Can not open file '<arg>'"
    WS_ERR_FILE_TOO_SMALL = -2,   // "File size too small"
    WS_ERR_VERSION = -3,          // "the '<arg>' dictionary version is error"
    WS_ERR_READ = -4,             // "read data error"
    WS_ERR_TEXT = -5,             // the caller's text
    WS_ERR_MEMORY = -6,           // "Out of Memory"
    WS_ERR_WRITE = -7,            // "Write data error"
    WS_ERR_WRITE_HEADER = -8,     // "Write header error"
    WS_ERR_WORD_TOO_LONG = -9,    // "word is too long ... line: <arg>"
    WS_ERR_KEY_TO_UTF16 = -10,    // "the key <arg> convert to utf-16 failed ."
    WS_ERR_KEY_EXISTS = -11,      // "the key <arg> has exsited in double-array trie ."
    WS_ERR_PHRASE = -12,          // "the phrase is error"
    WS_ERR_KEY_LENGTH = -13,      // "key1Len > keyLen"
};

// The segmenter's process-wide logger: a default Logger (errors only, to
// standard error) built on first use and destroyed at exit. Every segmenter
// component reports through it. Thread safety as Logger.
class WsLogger : public Logger {
public:
    ~WsLogger() override;

    static WsLogger* getWsLogger();

    // Writes the fixed message of `code` (-13 .. -1) as an error; `arg` fills
    // the message's "%s" (for WS_ERR_TEXT, `text` does). Codes marked in the
    // table with a position are written with `file` and `line`.
    // Other codes write nothing.
    void printErr(const char* arg, int code, const char* file, int line, const char* text);
};

}  // namespace ws

#endif
