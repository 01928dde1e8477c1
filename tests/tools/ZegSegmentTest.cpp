// zeg-segment as a user runs it over the default data.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
