#include "tools/ZegDict.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "support/DefaultData.h"
#include "support/TempDir.h"
#include "ws/dict/wsPhraseDict.h"

namespace {

struct Outcome {
    int code;
    std::string out, err;
};

Outcome run(const std::vector<std::string>& args) {
    std::ostringstream out, err;
    const int code = zeg_tools::ZegDict(out, err).run(args);
    return {code, out.str(), err.str()};
}

TEST(ZegDict, HelpListsSubCommandsAndTheirOptions) {
    const Outcome top = run({"--help"});
    EXPECT_EQ(top.code, 0);
    EXPECT_NE(top.out.find("core  compile a word list"), std::string::npos) << top.out;
    const Outcome core = run({"core", "--help"});
    EXPECT_EQ(core.code, 0);
    EXPECT_EQ(core.out.rfind("usage: zeg-dict core --input WORDS --output DICT", 0), 0u);
}

TEST(ZegDict, UsageErrorsAreOneLineAndExitTwo) {
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{}, "zeg-dict: missing sub-command (see zeg-dict --help)\n"},
        {{"link"}, "zeg-dict: unknown sub-command 'link' (see zeg-dict --help)\n"},
        {{"core", "--input", "a", "--output"},
         "zeg-dict: option --output needs a value (see zeg-dict core --help)\n"},
        {{"core", "--inptu", "a"},
         "zeg-dict: unknown option '--inptu' (see zeg-dict core --help)\n"},
        {{"core", "words.txt"},
         "zeg-dict: unexpected argument 'words.txt' (see zeg-dict core --help)\n"},
        {{"core", "--input=a", "--output", "b"},
         "zeg-dict: missing --properties (see zeg-dict core --help)\n"},
        {{"core", "--strict=yes"},
         "zeg-dict: unknown option '--strict=yes' (see zeg-dict core --help)\n"},
    };
    for (const auto& c : cases) {
        const Outcome r = run(c.first);
        EXPECT_EQ(r.code, 2);
        EXPECT_EQ(r.err, c.second);
        EXPECT_EQ(r.out, "");
    }
}

TEST(ZegDict, CoreRunsTheCompiler) {
    zeg_test::TempDir dir;
    const std::string words = dir.write("w.txt", "一 2 m\n");
    const Outcome ok = run({"core", "--input=" + words, "--output", dir.file("d"), "--properties",
                        dir.file("p"), "--strict"});
    EXPECT_EQ(ok.code, 0) << ok.err;
    const Outcome bad = run({"core", "--input", dir.file("none"), "--output", dir.file("d"),
                         "--properties", dir.file("p")});
    EXPECT_EQ(bad.code, 1);
}

// Measuring a pipe by seeking it used to fail the stream: an empty
// dictionary and exit 0.
TEST(ZegDict, CoreReadsAPipeToTheEnd) {
    zeg_test::TempDir dir;
    const std::string command = "printf '一 2 m\\n二\\n' | " + std::string(ZEG_DICT_TOOL) +
                                " core --input /dev/stdin --output " + dir.file("d") +
                                " --properties " + dir.file("p") + " 2>" + dir.file("err");
    EXPECT_EQ(std::system(command.c_str()), 0);
    std::ifstream err(dir.file("err"));
    std::string line;
    std::getline(err, line);
    EXPECT_EQ(line, "zeg-dict core: /dev/stdin: 2 words");
}

// An output renamed over an input replaced it with what was made of it;
// links are found too.
TEST(ZegDict, OutputsNeverReplaceAnInput) {
    zeg_test::TempDir dir;
    const std::string words = dir.write("w.txt", "一 2 m\n");
    const std::string props = dir.write("p.txt", "1\tm\n");
    const std::string link = dir.file("link.txt"), hard = dir.file("hard.txt");
    ASSERT_EQ(::symlink(words.c_str(), link.c_str()), 0);
    ASSERT_EQ(::link(words.c_str(), hard.c_str()), 0);
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"core", "--input", words, "--output", words, "--properties", dir.file("q.txt")},
         "--output names the same file as --input"},
        {{"core", "--input", words, "--output", props, "--properties", props},
         "--output names the same file as --properties"},
        {{"core", "--input", link, "--output", words, "--properties", props}, "--input"},
        {{"core", "--input", words, "--output", hard, "--properties", props}, "--input"},
        {{"charfreq", "--input", words, "--output", link}, "--input"},
        {{"reversible", "--input", hard, "--output", words}, "--input"},
    };
    for (const auto& c : cases) {
        const Outcome r = run(c.first);
        EXPECT_EQ(r.code, 2) << c.second;
        EXPECT_NE(r.err.find(c.second), std::string::npos) << r.err;
    }
    EXPECT_EQ(zeg_test::TempDir::read(words), "一 2 m\n");
    EXPECT_EQ(zeg_test::TempDir::read(props), "1\tm\n");
}

// An endless line (/dev/zero) once grew memory without bound: every reader
// stops at the first line over its bound and says where.
TEST(ZegDict, EndlessInputsStopAtTheFirstOverlongLine) {
    zeg_test::TempDir dir;
    const std::string words = dir.write("w.txt", "一 2 m\n");
    const Outcome core = run({"core", "--input", "/dev/zero", "--output", dir.file("d"),
                              "--properties", dir.file("p")});
    EXPECT_EQ(core.code, 1);
    EXPECT_NE(core.err.find("/dev/zero:1: longer than 65536 bytes"), std::string::npos) << core.err;
    const Outcome props = run({"core", "--input", words, "--output", dir.file("d"),
                               "--properties", "/dev/zero"});
    EXPECT_EQ(props.code, 1);
    EXPECT_NE(props.err.find("/dev/zero:1: longer than"), std::string::npos) << props.err;
    EXPECT_EQ(run({"charfreq", "--input", "/dev/zero", "--output", dir.file("f")}).code, 1);
    EXPECT_EQ(run({"reversible", "--input", "/dev/zero", "--output", dir.file("r")}).code, 1);
    EXPECT_EQ(run({"pos-train", "--input", "/dev/zero", "--output-dir", dir.path()}).code, 1);
}

// A table with an unusable line writes nothing, not a table without it.
TEST(ZegDict, PhraseCompilesOnlyWholeTables) {
    zeg_test::TempDir dir;
    const std::string out = dir.file("p.dict");
    const Outcome ok = run({"phrase", "--input", dir.write("ok.txt", "研究生命 研究 生命\n"),
                            "--output", out});
    EXPECT_EQ(ok.code, 0) << ok.err;
    EXPECT_EQ(ok.err, "zeg-dict: 1 phrases\n");
    ws::PhraseDict dict;
    EXPECT_EQ(dict.loadDict(out.c_str()), 0);
    testing::internal::CaptureStderr();
    const Outcome bad = run({"phrase", "--input", dir.write("bad.txt", "研究生命 研究\n"),
                             "--output", dir.file("q.dict")});
    const Outcome missing = run({"phrase", "--input", dir.file("none"), "--output", out});
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(missing.err, "zeg-dict: phrase: cannot read " + dir.file("none") +
                               ": No such file or directory\n");
    EXPECT_EQ(bad.code, 1);
    EXPECT_EQ(bad.err, "zeg-dict: phrase: 1 unusable lines in " + dir.file("bad.txt") +
                           "; nothing written\n");
    EXPECT_EQ(dir.list(), (std::vector<std::string>{"bad.txt", "ok.txt", "p.dict"}));
    EXPECT_EQ(missing.code, 1);
}

}  // namespace
