#include "ws/core/wsLogger.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/TempDir.h"

using ws::Logger;

namespace {

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

TEST(Logger, DefaultWritesErrorsOnlyWithEmptyTimeBrackets) {
    Logger log;
    testing::internal::CaptureStderr();
    log.warn("w");
    log.info("i");
    log.debug("d");
    log.trace("t");
    log.warnPos("x.cpp", 1, "w");
    log.error("plain %d", 7);
    log.errorPos("wsInterfaceImp.cpp", 2034, "utf16 to utf8 fail!\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[] [-ERROR]: plain 7\n"
              "[] [-ERROR] wsInterfaceImp.cpp:2034: utf16 to utf8 fail!\n\n");
}

TEST(Logger, LevelGatesEachMessage) {
    Logger log("seg", "", Logger::LEVEL_DEBUG, Logger::LEVEL_DEBUG);
    testing::internal::CaptureStderr();
    log.trace("t");
    log.debug("d");
    log.infoPos("f.cpp", 3, "i");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[] [seg-DEBUG]: d\n[] [seg-INFO] f.cpp:3: i\n");
}

TEST(Logger, FileOutputAddsNoNewline) {
    zeg_test::TempDir dir;
    const std::string path = dir.file("ws.log");
    Logger log("n", path, Logger::LEVEL_INFO, Logger::LEVEL_INFO);
    testing::internal::CaptureStderr();
    log.info("one");
    log.errorPos("a.cpp", 9, "two\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(readFile(path), "[] [n-INFO]: one[] [n-ERROR] a.cpp:9: two\n");
}

TEST(Logger, UnopenableFileFallsBackToStandardError) {
    zeg_test::TempDir dir;
    const std::string bad = dir.file("no/such/dir/ws.log");
    testing::internal::CaptureStderr();
    Logger log("n", bad, Logger::LEVEL_ERROR, Logger::LEVEL_ERROR);
    log.error("still here");
    EXPECT_FALSE(log.init("m", bad, Logger::LEVEL_ERROR, Logger::LEVEL_ERROR));
    log.error("again");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "open log file failed: " + bad + "\n[] [n-ERROR]: still here\n" +
                  "open log file failed: " + bad + "\n[] [m-ERROR]: again\n");
}

TEST(Logger, OpenStreamSwitchesOnlyOnSuccess) {
    zeg_test::TempDir dir;
    Logger log;
    EXPECT_EQ(log.openStream(""), 0);
    EXPECT_EQ(log.openStream(dir.file("missing/x.log")), -1);
    testing::internal::CaptureStderr();
    log.error("to stderr");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "[] [-ERROR]: to stderr\n");

    ASSERT_EQ(log.openStream(dir.file("a.log")), 0);
    log.error("a");
    EXPECT_EQ(log.openStream(""), 0);
    log.error("still a");
    ASSERT_EQ(log.openStream(dir.file("b.log")), 0);
    log.error("b");
    EXPECT_EQ(log.openStream(dir.file("missing/y.log")), -1);  // keeps b.log
    log.error("still b");
    EXPECT_EQ(readFile(dir.file("a.log")), "[] [-ERROR]: a[] [-ERROR]: still a");
    EXPECT_EQ(readFile(dir.file("b.log")), "[] [-ERROR]: b[] [-ERROR]: still b");
}

}  // namespace
