#include "tools/CoreDictCompiler.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <sstream>

#include "support/TempDir.h"
#include "ws/core/wsEncodeConverter.h"

using zeg_tools::CoreDictCompiler;
using zeg_tools::CoreDictOptions;

namespace {

class CoreDictCompilerTest : public ::testing::Test {
protected:
    int compile(const std::string& words, bool strict = false) {
        options.input = dir.write("words.txt", words);
        options.output = dir.file("out.dict");
        options.properties = dir.file("props.txt");
        options.strict = strict;
        std::ostringstream err;
        CoreDictCompiler compiler(options, err);
        const int rc = compiler.run();
        messages = err.str();
        return rc;
    }

    // "weight;P:id/weight..." of a word in the compiled dictionary.
    std::string entry(const ws::WsCoreDict& d, const std::string& utf8) {
        const auto units = EncodeConverter::utf8ToUtf16(
            EncodeConverter::Utf8String(utf8.begin(), utf8.end()));
        const int id = d.getWordId(units.data(), static_cast<unsigned>(units.size()));
        unsigned char* value = nullptr;
        float weight = 0;
        if (id < 0 || d.getValue(id, &value, weight) == 0) return "-";
        std::vector<ws::WordType> types;
        std::vector<int> gran;
        std::vector<ws::SemItem> sems;
        std::ostringstream s;
        s << weight << ";";
        d.getPropWght(value, types);
        for (const ws::WordType& t : types) s << t.type << "/" << t.weight << " ";
        unsigned char* usr = nullptr;
        s << d.getGran(value, gran) << d.getSemItems(value, sems) << d.getUsrValue(id, &usr);
        return s.str();
    }

    zeg_test::TempDir dir;
    CoreDictOptions options;
    std::string messages;
};

TEST_F(CoreDictCompilerTest, CompilesWeightsPropertiesAndTotals) {
    ASSERT_EQ(compile("北京 100 ns\n北京大学 20 nt\n大学 5\n的 ns\n"), 0) << messages;
    ws::WsCoreDict d;
    ASSERT_EQ(d.loadDict(options.output.c_str()), 0);
    std::ostringstream w100;
    w100 << static_cast<float>(std::log(100.0)) << ";1/100 000";
    EXPECT_EQ(entry(d, "北京"), w100.str());
    std::ostringstream w5;
    w5 << static_cast<float>(std::log(5.0)) << ";000";
    EXPECT_EQ(entry(d, "大学"), w5.str());
    EXPECT_EQ(entry(d, "的"), "0;1/1 000");
    EXPECT_EQ(entry(d, "北"), "-");
    EXPECT_EQ(d.getTotalFreq(), 126.0);
    EXPECT_EQ(zeg_test::TempDir::read(options.properties), "1\tns\n2\tnt\n");
    EXPECT_EQ(messages, "zeg-dict core: " + options.input + ": 4 words\n");
}

TEST_F(CoreDictCompilerTest, MalformedLinesAreReportedAndSkipped) {
    ASSERT_EQ(compile("一 1\n二 0\n一 2\n三 x y z\n四\n"), 0);
    const std::string in = options.input;
    EXPECT_EQ(messages, in + ":2: frequency must be positive, got '0'\n" + in +
                            ":3: duplicate word\n" + in +
                            ":4: too many fields (expected: word [frequency] [tag])\n"
                            "zeg-dict core: " + in + ": 2 words, 3 malformed lines skipped\n");
    ws::WsCoreDict d;
    ASSERT_EQ(d.loadDict(options.output.c_str()), 0);
    EXPECT_EQ(entry(d, "一"), "0;000");
    EXPECT_EQ(d.getTotalFreq(), 2.0);
}

TEST_F(CoreDictCompilerTest, StrictStopsAtTheFirstMalformedLineAndWritesNothing) {
    const std::string old = dir.write("out.dict", "old");
    ASSERT_EQ(compile("一 1 n\n二 0\n三\n", true), 1);
    EXPECT_EQ(messages, options.input + ":2: frequency must be positive, got '0'\n"
                        "zeg-dict core: stopped at the first malformed line (--strict)\n");
    EXPECT_EQ(zeg_test::TempDir::read(old), "old");
    EXPECT_EQ(dir.list(), (std::vector<std::string>{"out.dict", "words.txt"}));
}

TEST_F(CoreDictCompilerTest, ThePropertyTableIsExtendedAcrossRuns) {
    dir.write("props.txt", "1\tv\n");
    ASSERT_EQ(compile("跑 3 v\n书 2 n\n"), 0) << messages;
    EXPECT_EQ(zeg_test::TempDir::read(options.properties), "1\tv\n2\tn\n");
    ASSERT_EQ(compile("马 3 n\n"), 0) << messages;
    EXPECT_EQ(zeg_test::TempDir::read(options.properties), "1\tv\n2\tn\n");
    dir.write("props.txt", "1\tv\n1\tn\n");
    EXPECT_EQ(compile("马 3 n\n"), 1);
    EXPECT_EQ(messages, "zeg-dict core: " + options.properties + ":2: property id 1 appears twice\n");
}

TEST_F(CoreDictCompilerTest, UnreadableInputOrUnwritableOutputFailInOneLine) {
    options.input = dir.file("missing.txt");
    options.output = dir.file("out.dict");
    options.properties = dir.file("props.txt");
    std::ostringstream err;
    EXPECT_EQ(CoreDictCompiler(options, err).run(), 1);
    EXPECT_EQ(err.str(), "zeg-dict core: cannot read " + options.input +
                             ": No such file or directory\n");

    options.input = dir.write("words.txt", "一\n");
    options.output = dir.file("no/such/out.dict");
    err.str("");
    EXPECT_EQ(CoreDictCompiler(options, err).run(), 1);
    EXPECT_EQ(err.str(), "zeg-dict core: cannot write " + options.output +
                             ": No such file or directory\n");

    // A target that cannot be replaced: the temporary file goes away.
    options.output = dir.mkdir("out.dict");
    err.str("");
    EXPECT_EQ(CoreDictCompiler(options, err).run(), 1);
    EXPECT_EQ(err.str(), "zeg-dict core: cannot write " + options.output + ": Is a directory\n");
    EXPECT_EQ(dir.list(), (std::vector<std::string>{"out.dict", "props.txt", "words.txt"}));
}

TEST_F(CoreDictCompilerTest, AWriteThatFailsHalfWayLeavesNoFile) {
    // Files may not grow past 4 KiB for a moment: the dictionary (over
    // 64 KiB) fails part-way through.
    struct rlimit old;
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    void (*oldHandler)(int) = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = old;
    small.rlim_cur = 4096;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const int rc = compile("一 1\n");
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(rc, 1);
    EXPECT_EQ(messages, "zeg-dict core: cannot write " + options.output + ": File too large\n");
    EXPECT_EQ(dir.list(), (std::vector<std::string>{"words.txt"}));
}

}  // namespace
