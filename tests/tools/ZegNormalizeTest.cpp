// zeg-normalize as a user runs it: arguments, exit codes, one line out per
// line in. (That each line is exactly what Java gets is checked by the Java
// suite, which runs the tool beside the JNI library.)
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/DefaultData.h"
#include "support/TempDir.h"
#include "support/ToolRun.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

using zeg_test::ToolRun;

class ZegNormalizeTest : public ::testing::Test {
protected:
    ToolRun run(const std::string& arguments, const std::string& input = "") {
        return zeg_test::runTool(dir, ZEG_NORMALIZE_TOOL, arguments, input);
    }

    zeg_test::TempDir dir;
};

TEST_F(ZegNormalizeTest, HelpDescribesTheToolAndExitsZero) {
    const ToolRun r = run("--help");
    EXPECT_EQ(r.status, 0);
    EXPECT_THAT(r.out, StartsWith("usage: zeg-normalize --config FILE"));
    EXPECT_THAT(r.out, HasSubstr("128 segment"));
}

TEST_F(ZegNormalizeTest, BadArgumentsGiveOneLineAndExitTwo) {
    const std::string config = std::string("--config ") + ZEG_DEFAULT_CONFIG;
    for (const std::string& arguments :
         {std::string(""), std::string("--mode 4"), config + " --mode", config + " --mode 4x",
          config + " --mode 99999999999", config + " --verbose", std::string("--config"),
          config + " --threads 0", config + " --threads 65", config + " --threads two"}) {
        const ToolRun r = run(arguments, "abc\n");
        EXPECT_EQ(r.status, 2) << arguments;
        EXPECT_THAT(r.err, testing::MatchesRegex("zeg-normalize: [^\n]* \\(see zeg-normalize --help\\)\n"))
            << arguments;
        EXPECT_EQ(r.out, "") << arguments;
    }
}

// As through Java: the library judges the mode, one (empty) line per line.
TEST_F(ZegNormalizeTest, ModeZeroOrBelowGivesEmptyLinesAndTheLibrarysMessage) {
    for (const char* mode : {"0", "-4"}) {
        const ToolRun r = run(std::string("--config ") + ZEG_DEFAULT_CONFIG + " --mode " + mode,
                              "abc\nd\n");
        EXPECT_EQ(r.status, 0) << mode;
        EXPECT_EQ(r.out, "\n\n") << mode;
        EXPECT_THAT(r.err, HasSubstr(std::string("invalid input parameter [") + mode +
                                     "] for query [abc]"));
    }
}

// The pipeline hands an over-long query back unchanged: the tool must too,
// characters outside the basic plane included (Java holds them as pairs).
TEST_F(ZegNormalizeTest, OverLongInputIsEchoedIntact) {
    const std::string ini = zeg_test::TempDir::read(ZEG_DEFAULT_CONFIG);
    const std::string config =
        dir.write("short.ini", ini.substr(0, ini.find("MAX_INPUT_LENGTH")) + "MAX_INPUT_LENGTH=4\n");
    const std::string line = "\xF0\x9F\x98\x80 Ｈｅｌｌｏ 北京";
    const ToolRun r = run("--config " + config, line + "\n");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, line + "\n");
}

// Java counts the guard in modified UTF-8: six bytes for a character
// outside the basic plane (four in the line).
TEST_F(ZegNormalizeTest, TheGuardCountsAsJavaDoes) {
    std::string emoji;
    for (int i = 0; i < 85; ++i) emoji += "\xF0\x9F\x98\x80";
    const ToolRun r = run(std::string("--mode 4 --config ") + ZEG_DEFAULT_CONFIG,
                          emoji + "X\n" + emoji + "\xF0\x9F\x98\x80X\n");
    EXPECT_EQ(r.out, "x\n\n");  // 511 bytes pass, 517 do not
}

TEST_F(ZegNormalizeTest, ConfigurationThatFailsShowsTheLibrarysMessagesAndExitsOne) {
    const std::string path = dir.file("absent.ini");
    const ToolRun r = run("--config " + path, "abc\n");
    EXPECT_EQ(r.status, 1);
    EXPECT_THAT(r.err, HasSubstr("[Implement::init] Load configuration file " + path + " failed."));
    EXPECT_THAT(r.err, HasSubstr("[NormalizeIntf::init] Implement initialization failed."));
    EXPECT_EQ(r.out, "");
}

TEST_F(ZegNormalizeTest, EveryLineInGivesOneLineOut) {
    std::string input = "Hello World\r\n";
    input += std::string("a\0b\n", 4);
    input += "\xFF\xFE\n\n";
    input += std::string(100000, 'x') + "\n";
    input += std::string(511, 'Y') + "\n";
    input += std::string(512, 'y') + "\n";
    input += "ＡＢＣ 的";  // no final line feed
    const ToolRun r = run(std::string("--config=") + ZEG_DEFAULT_CONFIG + " --mode=4", input);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "helloworld\nab\n\n\n\n" + std::string(511, 'y') + "\n\nＡＢＣ的\n");
}

// Threads share the lines out in chunks: whatever the chunking, the output
// is the single-threaded one, line for line (several chunks and a short
// last one, exactly two chunks, odd lines included).
TEST_F(ZegNormalizeTest, ThreadsChangeNothingInTheOutput) {
    const std::string odd[] = {"Hello World\r",       std::string("a\0b", 3),     "\xFF\xFE",   "",
                               std::string(600, 'x'), "軟體 ＡＢ 北京大學生 mp3", "😀 的 iPhone"};
    const std::string config = std::string("--config ") + ZEG_DEFAULT_CONFIG;
    for (int lines : {9000, 8192}) {
        std::string input;
        for (int i = 0; i < lines; ++i) input += odd[i % 7] + std::to_string(i % 13) + "\n";
        if (lines == 9000) input += "ＡＢＣ 的";  // no final line feed
        const ToolRun one = run(config, input);
        ASSERT_EQ(one.status, 0) << one.err;
        for (const char* threads : {" --threads 2", " --threads 3"}) {
            const ToolRun many = run(config + threads, input);
            EXPECT_EQ(many.status, 0) << many.err;
            EXPECT_TRUE(many.out == one.out) << lines << " lines," << threads;
        }
    }
}

TEST_F(ZegNormalizeTest, DefaultModeIsTheUsualOne) {
    const std::string config = std::string("--config ") + ZEG_DEFAULT_CONFIG;
    const std::string input = "大学 北京\n北京 大学\nＥＭＡＩＬ\n电子邮件\n";
    const ToolRun usual = run(config, input);
    EXPECT_EQ(usual.status, 0) << usual.err;
    EXPECT_EQ(usual.out, run(config + " --mode 252", input).out);
    std::istringstream lines(usual.out);
    std::string a, b, c, d;
    std::getline(lines, a);
    std::getline(lines, b);
    std::getline(lines, c);
    std::getline(lines, d);
    EXPECT_EQ(a, b);
    EXPECT_EQ(c, d);
    EXPECT_NE(a, "");
}

TEST_F(ZegNormalizeTest, ProgressReportsLinesPerSecond) {
    const ToolRun r = run(std::string("--config ") + ZEG_DEFAULT_CONFIG + " --progress", "a\nb\n");
    EXPECT_EQ(r.status, 0);
    EXPECT_THAT(r.err,
                testing::ContainsRegex("zeg-normalize: 2 lines in [0-9.]+ s, [0-9]+ lines/s\n"));
}

}  // namespace
