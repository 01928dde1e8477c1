#include "normalize/nmSegment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/DefaultData.h"
#include "support/Gbk.h"
#include "support/TempDir.h"

using normalize::nmSegment;
using testing::EndsWith;
using zeg_test::gbk;
using zeg_test::utf8;

namespace {

class nmSegmentTest : public ::testing::Test {
protected:
    // The words of `gbkText`, in UTF-8; the return code goes to `rc`.
    std::vector<std::string> segment(const std::string& gbkText) {
        std::vector<std::string> gbkWords{"left over"};
        testing::internal::CaptureStderr();
        rc = segmenter.doSegment(gbkText, gbkWords);
        err = testing::internal::GetCapturedStderr();
        std::vector<std::string> words;
        for (const std::string& w : gbkWords) words.push_back(utf8(w));
        return words;
    }

    static std::string joinedWithoutBlanks(const std::vector<std::string>& words) {
        std::string all;
        for (const std::string& w : words) {
            for (char c : w) {
                if (c != ' ') all.push_back(c);
            }
        }
        return all;
    }

    nmSegment segmenter;
    int rc = 99;
    std::string err;
};

TEST_F(nmSegmentTest, RefusesToSegmentBeforeInit) {
    EXPECT_TRUE(segment(gbk("北京")).empty());
    EXPECT_EQ(rc, -1);
    EXPECT_EQ(err, "[nmSegment::doSegment] zeg not init!\n");
}

TEST_F(nmSegmentTest, ConfigurationThatDoesNotLoadIsReported) {
    zeg_test::TempDir dir;
    testing::internal::CaptureStderr();
    EXPECT_EQ(segmenter.init(dir.path()), -1);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                EndsWith("[nmSegment::init] zeg nmSegment init failed\n"));
    segment("x");
    EXPECT_EQ(rc, -1);
}

TEST_F(nmSegmentTest, SecondInitKeepsTheFirstSegmenter) {
    ASSERT_EQ(segmenter.init(ZEG_SEGMENTER_CONFIG), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(segmenter.init("/no/such/segmenter.conf"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    segment(gbk("北京"));
    EXPECT_EQ(rc, 0);
}

TEST_F(nmSegmentTest, WordsComeBackInGbkAndInTextOrder) {
    ASSERT_EQ(segmenter.init(ZEG_SEGMENTER_CONFIG), 0);
    const std::string text = "北京大学 mp3 下载 abc";
    const std::vector<std::string> words = segment(gbk(text));
    EXPECT_EQ(rc, 0);
    EXPECT_GE(words.size(), 4u);
    EXPECT_EQ(joinedWithoutBlanks(words), "北京大学mp3下载abc");
}

TEST_F(nmSegmentTest, BytesThatAreNotGbkAreDroppedBeforeSegmentation) {
    ASSERT_EQ(segmenter.init(ZEG_SEGMENTER_CONFIG), 0);
    // 0xFF is no GBK byte, and 0x81 needs a trail byte.
    const std::vector<std::string> words = segment(gbk("北京") + "\xFF\x81\xFF" + gbk("大学"));
    EXPECT_EQ(rc, 0);
    EXPECT_EQ(joinedWithoutBlanks(words), "北京大学");
}

TEST_F(nmSegmentTest, DefaultDictionariesSegmentCommonWords) {
    if (!ZEG_DICTIONARY_CASES) GTEST_SKIP() << "dictionary cases are switched off";
    ASSERT_EQ(segmenter.init(ZEG_SEGMENTER_CONFIG), 0);
    EXPECT_EQ(segment(gbk("软件下载")), (std::vector<std::string>{"软件", "下载"}));
    EXPECT_EQ(segment(gbk("上海天气")), (std::vector<std::string>{"上海", "天气"}));
}

}  // namespace
