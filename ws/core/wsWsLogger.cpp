#include "ws/core/wsWsLogger.h"

namespace ws {

namespace {

struct ErrorMessage {
    const char* format;
    bool withPosition;
};

// Indexed by -code - 1.
const ErrorMessage kMessages[] = {
    {"Can not open file '%s'", true},
    {"File size too small", true},
    {"the '%s' dictionary version is error", true},
    {"read data error", true},
    {"%s", true},
    {"Out of Memory", true},
    {"Write data error", true},
    {"Write header error", true},
    {"word is too long\n\tline: %s\n", false},
    {"the key %s convert to utf-16 failed .", false},
    {"the key %s has exsited in double-array trie .", false},
    {"the phrase is error", true},
    {"key1Len > keyLen", true},
};

const int kMessageCount = static_cast<int>(sizeof kMessages / sizeof kMessages[0]);

}  // namespace

WsLogger::~WsLogger() = default;

WsLogger* WsLogger::getWsLogger() {
    static WsLogger logger;
    return &logger;
}

void WsLogger::printErr(const char* arg, int code, const char* file, int line, const char* text) {
    if (code >= 0 || code < -kMessageCount) return;
    const ErrorMessage& m = kMessages[-code - 1];
    const char* fill = code == WS_ERR_TEXT ? text : arg;
    if (fill == nullptr) fill = "";
    // Messages without "%s" ignore the extra argument.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-extra-args"
    if (m.withPosition)
        errorPos(file != nullptr ? file : "", line, m.format, fill);
    else
        error(m.format, fill);
#pragma GCC diagnostic pop
}

}  // namespace ws
