// zeg-segment as a user runs it over the default data.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/DefaultData.h"
#include "support/ToolRun.h"

using testing::HasSubstr;

namespace {

class ZegSegmentTest : public ::testing::Test {
protected:
    zeg_test::ToolRun run(const std::string& settings, const std::string& input) {
        const std::string conf =
            dir.write("seg.conf", "#include \"" ZEG_SEGMENTER_CONFIG "\"\n" + settings);
        return zeg_test::runTool(dir, ZEG_SEGMENT_TOOL, "--config " + conf, input);
    }
    zeg_test::TempDir dir;
};

TEST_F(ZegSegmentTest, ReportsALineItCannotSegmentAndKeepsTheLinesAligned) {
    const zeg_test::ToolRun r = run("", "ab\n\xff\xfe\n\xf0\x9f\x98\x80\ncd\n");
    EXPECT_EQ(r.out, "ab \n\n\ncd \n");
    EXPECT_THAT(r.err, HasSubstr("line 2: cannot segment"));
    EXPECT_THAT(r.err, HasSubstr("line 3: cannot segment"));
    EXPECT_EQ(r.status, 1);
}

// The text output was written with fputs: a NUL cut the rest of its line.
TEST_F(ZegSegmentTest, NulBytesAreWordsOfTheirOwn) {
    const zeg_test::ToolRun r = run("", std::string("ab\0cd\n\0\n", 8));
    EXPECT_EQ(r.out, std::string("ab \0 cd \n\0 \n", 12));
    EXPECT_EQ(r.status, 0);
}

// A long line is segmented in pieces cut where the segmenter's own chunker
// cuts, so it comes out as its sentences would one by one.
TEST_F(ZegSegmentTest, ALongLineSegmentsLikeItsSentences) {
    const std::string sentences[] = {"我们在北京大学学习，", "今天天气很好。", "abc 123!"};
    std::string line, expected;
    for (const std::string& s : sentences) {
        const zeg_test::ToolRun one = run("", s + "\n");
        ASSERT_EQ(one.status, 0);
        expected += one.out.substr(0, one.out.size() - 1);
        line += s;
    }
    const int copies = 10000;  // some 400 KB, several pieces
    std::string many, all;
    for (int i = 0; i < copies; ++i) {
        many += line;
        all += expected;
    }
    const zeg_test::ToolRun r = run("", many + "\n" + line + "\n");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(r.out == all + "\n" + expected + "\n") << r.out.size() << " bytes";
}

// Threads share batches of lines out; a line longer than the window ends a
// batch and streams through alone, also right after another or at the end. The output, the reports
// and the exit status are the single-threaded ones whatever the chunking.
TEST_F(ZegSegmentTest, ThreadsChangeNothing) {
    const std::string odd[] = {"我们在北京大学学习", "ab\xff\xfe", "\xf0\x9f\x98\x80 北京",
                               std::string("a\0b", 3), "", "今天天气很好。abc 123!"};
    std::string longLine;
    for (int i = 0; i < 8000; ++i) longLine += "我们在北京大学学习，";
    std::string input;
    for (int i = 0; i < 7000; ++i) {
        if (i == 100) input += longLine + "\n" + longLine + "\n";
        if (i == 5000) input += longLine + "\n";
        input += odd[i % 6] + "\n";
    }
    input += longLine + "\n没有换行";
    const std::string conf = dir.write("seg.conf", "#include \"" ZEG_SEGMENTER_CONFIG "\"\n");
    const zeg_test::ToolRun one = zeg_test::runTool(dir, ZEG_SEGMENT_TOOL, "--config " + conf, input);
    EXPECT_EQ(one.status, 1);
    for (const char* threads : {" --threads 2", " --threads 3"}) {
        const zeg_test::ToolRun many =
            zeg_test::runTool(dir, ZEG_SEGMENT_TOOL, "--config " + conf + threads, input);
        EXPECT_EQ(many.status, one.status) << threads;
        EXPECT_TRUE(many.out == one.out) << threads;
        EXPECT_EQ(many.err, one.err) << threads;
    }
    const zeg_test::ToolRun bad =
        zeg_test::runTool(dir, ZEG_SEGMENT_TOOL, "--config " + conf + " --threads 0", "a\n");
    EXPECT_EQ(bad.status, 2);
    EXPECT_THAT(bad.err, HasSubstr("bad thread count '0'"));
}

// zeg-segment held some 110 bytes per byte of a line (1.16 GB for 10 MB).
TEST_F(ZegSegmentTest, MemoryDoesNotGrowWithTheLine) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer's quarantine holds freed memory";
#endif
    const auto peakKb = [&](const std::string& input) {
        dir.write("seg.conf", "#include \"" ZEG_SEGMENTER_CONFIG "\"\n");
        return zeg_test::peakMemoryKb(dir, ZEG_SEGMENT_TOOL, "--config " + dir.file("seg.conf"),
                                      input);
    };
    std::string line;
    while (line.size() < (10u << 20)) line += "word" + std::to_string(line.size() % 997) + " ";
    const long small = peakKb("word\n"), large = peakKb(line + "\n");
    ASSERT_GT(small, 0);
    ASSERT_GT(large, 0);
    EXPECT_LT(large - small, 30 * 1024) << small << " kB for a short line, " << large
                                        << " kB for 10 MB";
}

// With threads, batches reuse their slots; a slot that once held a long line
// must not keep its memory, or an input with long lines here and there
// grows memory slot by slot (36 MB more for this input).
TEST_F(ZegSegmentTest, ThreadedMemoryDoesNotGrowWithLongLinesInManySlots) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer's quarantine holds freed memory";
#endif
    const std::string conf = dir.write("seg.conf", "#include \"" ZEG_SEGMENTER_CONFIG "\"\n");
    const auto peakKb = [&](const std::string& input) {
        return zeg_test::peakMemoryKb(dir, ZEG_SEGMENT_TOOL, "--config " + conf + " --threads 2",
                                      input);
    };
    std::string line, input;
    while (line.size() < 40000) line += "word" + std::to_string(line.size() % 997) + " ";
    uint32_t x = 12345;
    for (int k = 0; k < 300; ++k) {
        x = x * 1103515245u + 12345u;
        for (uint32_t tiny = (x >> 8) % 4000; tiny > 0; --tiny) input += "a\n";
        input += line + "\n";
    }
    const long small = peakKb("word\n"), large = peakKb(input);
    ASSERT_GT(small, 0);
    ASSERT_GT(large, 0);
    EXPECT_LT(large - small, 16 * 1024) << small << " kB for a short line, " << large << " kB";
}

TEST_F(ZegSegmentTest, RemovedSpacesAreMappedBackOntoTheInput) {
    const zeg_test::ToolRun r = run("ENABLE_REMOVE_SPACE = true\n", "  ab  cd \n   \n");
    EXPECT_EQ(r.out, "ab   cd \n\n");
    EXPECT_EQ(r.status, 0);
#if ZEG_DICTIONARY_CASES
    EXPECT_EQ(run("ENABLE_REMOVE_SPACE = true\n", "北 京\n").out, "北 京 \n");
    EXPECT_EQ(run("", "北 京\n").out, "北   京 \n");
#endif
}

TEST_F(ZegSegmentTest, PosTagsTheCutOrTheGivenWords) {
    const std::string conf = dir.write("seg.conf", "#include \"" ZEG_SEGMENTER_CONFIG "\"\n");
    const auto tagged = [&](const std::string& flags, const std::string& input) {
        return zeg_test::runTool(dir, ZEG_SEGMENT_TOOL, flags + " --config " + conf, input);
    };
    EXPECT_EQ(tagged("--pos --presegmented", "江 泽民\t发表\n\n").out, "江/nr 泽民/nr 发表/v \n\n");
#if ZEG_DICTIONARY_CASES
    EXPECT_EQ(tagged("--pos", "我爱北京\n").out, "我/r 爱/v 北京/ns \n");
#endif
    EXPECT_EQ(tagged("--presegmented", "").status, 2);
    EXPECT_EQ(tagged("--pos --weights", "").status, 2);
}

}  // namespace
