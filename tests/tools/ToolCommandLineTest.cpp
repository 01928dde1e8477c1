// What every tool does alike: --version with the data fingerprint, one-line
// usage errors, write errors reported with exit 1.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <fstream>
#include <sstream>

#include "support/DefaultData.h"
#include "support/TempDir.h"

using testing::MatchesRegex;

namespace {

struct Tool {
    const char* name;
    const char* path;
    std::string config;  // what --config takes
    std::string job;     // arguments of a run that writes to standard output
};

const Tool kTools[] = {
    {"zeg-normalize", ZEG_NORMALIZE_TOOL, ZEG_DEFAULT_CONFIG,
     std::string("--config ") + ZEG_DEFAULT_CONFIG},
    {"zeg-segment", ZEG_SEGMENT_TOOL, ZEG_SEGMENTER_CONFIG,
     std::string("--config ") + ZEG_SEGMENTER_CONFIG},
    {"zeg-dict", ZEG_DICT_TOOL, "", "--help"},
    {"zeg-person", ZEG_PERSON_TOOL, "", "--help"},
};

void PrintTo(const Tool& tool, std::ostream* os) { *os << tool.name; }

class ToolCommandLine : public ::testing::TestWithParam<Tool> {
protected:
    std::string slurp(const std::string& path) const {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream all;
        all << in.rdbuf();
        return all.str();
    }

    // Runs the tool; `out` may name another destination (/dev/full).
    int run(const std::string& arguments, std::string out = "") {
        if (out.empty()) out = dir.file("out");
        const std::string in = dir.write("in", "北京大学\n");
        const std::string command = std::string(GetParam().path) + " " + arguments + " <" + in +
                                    " >" + out + " 2>" + dir.file("err");
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string out() const { return slurp(dir.file("out")); }
    std::string err() const { return slurp(dir.file("err")); }

    zeg_test::TempDir dir;
};

TEST_P(ToolCommandLine, VersionNamesTheLibraryAndFingerprintsTheData) {
    const Tool& tool = GetParam();
    ASSERT_EQ(run("--version"), 0) << err();
    EXPECT_THAT(out(), MatchesRegex(std::string(tool.name) + " [0-9]+\\.[0-9]+\\.[0-9]+(, .*)?\n"));
    if (tool.config.empty()) return;
    ASSERT_EQ(run("--version --config=" + tool.config), 0) << err();
    const std::string first = out();
    EXPECT_THAT(first, MatchesRegex(".* [0-9.]+, data [0-9a-f]{16} \\([0-9]+ files\\)\n"));

    // A setting changed in an including file counts; so does a data file.
    std::string copy =
        dir.write("seg.conf", "#include \"" ZEG_SEGMENTER_CONFIG "\"\nSEG_TYPE = 0\n");
    const std::string changed =
        dir.write("changed.conf", "#include \"" + copy + "\"\nSEG_TYPE = 1\n");
    if (tool.config == ZEG_DEFAULT_CONFIG) {
        const std::string ini = zeg_test::TempDir::read(ZEG_DEFAULT_CONFIG);
        const size_t at = ini.find("WS_CONFIG=");
        const auto withSegmenter = [&](const std::string& name, const std::string& path) {
            return dir.write(
                name, ini.substr(0, at) + "WS_CONFIG=" + path + ini.substr(ini.find('\n', at)));
        };
        copy = withSegmenter("copy.ini", copy);
        withSegmenter("changed.ini", changed);
        ASSERT_EQ(run("--version --config " + copy), 0) << err();
        const std::string same = out();
        ASSERT_EQ(run("--version --config " + dir.file("changed.ini")), 0) << err();
        EXPECT_NE(out(), same);
    } else {
        ASSERT_EQ(run("--version --config " + copy), 0) << err();
        const std::string same = out();
        EXPECT_EQ(same, first) << "an including file that changes nothing";
        ASSERT_EQ(run("--version --config " + changed), 0) << err();
        EXPECT_NE(out(), same);
        dir.write("alnum.txt", "x");
        ASSERT_EQ(run("--version --config " +
                      dir.write("data.conf", "#include \"" + copy + "\"\nALNUM_DICTIONARY = " +
                                                 dir.file("alnum.txt") + "\n")),
                  0);
        EXPECT_NE(out(), same);
    }
    EXPECT_EQ(run("--version --config " + dir.file("absent")), 1);
}

TEST_P(ToolCommandLine, UsageErrorsAreOneLineWithTheHint) {
    const std::string name = GetParam().name;
    EXPECT_EQ(run("--no-such-option"), 2);
    const std::string e = err();
    EXPECT_THAT(e, MatchesRegex(name + ": .*'--no-such-option' \\(see " + name + ".*--help\\)\n"));
}

TEST_P(ToolCommandLine, WriteErrorsAreReportedWithExitOne) {
    EXPECT_EQ(run(GetParam().job, "/dev/full"), 1);
    EXPECT_NE(err(), "");
    if (GetParam().config.empty()) return;  // no --threads
    EXPECT_EQ(run(GetParam().job + " --threads 2", "/dev/full"), 1);
    EXPECT_NE(err(), "");
}

// With a standard stream closed, the first file a tool opened took its
// descriptor: zeg-segment <&- printed its dictionary as its input.
TEST_P(ToolCommandLine, ClosedStandardStreamsAreRefused) {
    const Tool& tool = GetParam();
    const std::string command = std::string(tool.path) + " " + tool.job;
    const auto status = [&](const std::string& redirects) {
        const int s = std::system((command + " " + redirects + " 2>" + dir.file("err")).c_str());
        return WIFEXITED(s) ? WEXITSTATUS(s) : -1;
    };
    EXPECT_EQ(status("</dev/null >&-"), 2);
    EXPECT_EQ(err(), std::string(tool.name) + ": standard output is closed\n");
    const bool filter = !tool.config.empty();
    EXPECT_EQ(status("<&- >" + dir.file("out")), filter ? 2 : 0);
    EXPECT_EQ(err(), filter ? std::string(tool.name) + ": standard input is closed\n" : "");
    if (!filter) return;
    EXPECT_EQ(out(), "");
    // A directory as input read as an empty one: exit 0, no word said.
    EXPECT_EQ(status("<" + dir.path() + " >" + dir.file("out")), 1);
    EXPECT_EQ(err(), std::string(tool.name) + ": cannot read standard input: Is a directory\n");
}

INSTANTIATE_TEST_SUITE_P(AllTools, ToolCommandLine, ::testing::ValuesIn(kTools),
                         [](const testing::TestParamInfo<Tool>& p) {
                             std::string n = p.param.name;
                             return n.substr(4);
                         });

}  // namespace
