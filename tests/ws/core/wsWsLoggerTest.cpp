#include "ws/core/wsWsLogger.h"

#include <gtest/gtest.h>

using ws::WsLogger;

namespace {

std::string printed(int code, const char* arg = "ARG", const char* text = "TEXT") {
    testing::internal::CaptureStderr();
    WsLogger::getWsLogger()->printErr(arg, code, "wsDATDict.cpp", 42, text);
    return testing::internal::GetCapturedStderr();
}

TEST(WsLogger, PrintErrWritesTheFixedMessageOfEachCode) {
    const std::string at = "[] [-ERROR] wsDATDict.cpp:42: ";
    const std::string bare = "[] [-ERROR]: ";
    EXPECT_EQ(printed(-1), at + "Can not open file 'ARG'\n");
    EXPECT_EQ(printed(-2), at + "File size too small\n");
    EXPECT_EQ(printed(-3), at + "the 'ARG' dictionary version is error\n");
    EXPECT_EQ(printed(-4), at + "read data error\n");
    EXPECT_EQ(printed(-5), at + "TEXT\n");
    EXPECT_EQ(printed(-6), at + "Out of Memory\n");
    EXPECT_EQ(printed(-7), at + "Write data error\n");
    EXPECT_EQ(printed(-8), at + "Write header error\n");
    EXPECT_EQ(printed(-9), bare + "word is too long\n\tline: ARG\n\n");
    EXPECT_EQ(printed(-10), bare + "the key ARG convert to utf-16 failed .\n");
    EXPECT_EQ(printed(-11), bare + "the key ARG has exsited in double-array trie .\n");
    EXPECT_EQ(printed(-12), at + "the phrase is error\n");
    EXPECT_EQ(printed(-13), at + "key1Len > keyLen\n");
}

}  // namespace
