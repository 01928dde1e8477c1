// Organisation names over hand-made word lists: candidates from the
// recogniser, decided by the unigram lattice.
#include "ws/algo/wsOrgnizationRecognizer.h"

#include <gtest/gtest.h>

#include "support/DictionaryFiles.h"
#include "support/TempDir.h"
#include "ws/algo/wsUnigramSegmenter.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsWsConfig.h"
#include "ws/dict/wsDictSet.h"
#include "wsTextUtil.h"

namespace {

class OrgnizationRecognizerTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(zeg_test::compileDictionary(
                      dir, "base",
                      "北京 100 ns\n中国 100 ns\n大学 80 n\n北京大学 50 nt\n公司 60 n\n电子 40 n\n"
                      "人民 80 n\n银行 30 n\n医学院 10 n\n国务院 10 nt\n的 1000 u\n"),
                  "");
        ASSERT_EQ(zeg_test::compileDictionary(dir, "alnum", "mp3 5 nz\n"), "");
        ASSERT_EQ(dicts.loadDict(dir.file("base.dict"), dir.file("alnum.dict"), {}), 0);
        segmenter.reset(new ws::UnigramSegmenter(&dicts));
        lists = "ORGNIZATION_SUFFIX_DICT = " +
                dir.write("suffix.txt", "# word, suffix share, whole share\n公司\t0.5\n"
                                        "医学院\t0.6\t0\n银行\t0.4\n国务院\t0\t0.9\n") +
                "\nORGNIZATION_ZONE_DICT = " + dir.write("zone.txt", "北京\n中国\n") +
                "\nORGNIZATION_TEZHI_DICT = " + dir.write("tezhi.txt", "人民\n北京大学\n") +
                "\nORGNIZATION_INNERWORD_DICT = " + dir.write("inner.txt", "电子\n") + "\n";
    }

    bool init(const std::string& config) {
        ws::WsConfig c;
        if (!c.init(dir.write("org.conf", config).c_str())) return false;
        seg = ws::TextSegmentation();
        const int index = static_cast<int>(seg.addNewWordBuffer(ws::WS_PROPERTY_ORG, threshold));
        recognizer.reset(new ws::OrgnizationRecognizer(segmenter.get()));
        return recognizer->init(c, index);
    }

    // The final cut of `s`, organisations marked with '*'.
    std::string cut(const std::u16string& s) {
        text = zeg_test::units(s);
        EXPECT_TRUE(seg.init(text.data(), text.data(), text.data(),
                             static_cast<unsigned>(text.size())));
        EXPECT_EQ(recognizer->doRecognize(seg), 1);
        segmenter->doSegment(seg, 1, 2);
        std::string out;
        for (unsigned p = 0; p < seg.textLen; p += seg.result.cells[p].len) {
            out += (p ? "/" : "") + zeg_test::utf8(seg.text + p, seg.result.cells[p].len);
            if (seg.result.cells[p].prop & ws::WS_PROPERTY_ORG) out += "*";
        }
        return out;
    }

    zeg_test::TempDir dir;
    ws::WsDictSet dicts;
    std::unique_ptr<ws::UnigramSegmenter> segmenter;
    std::unique_ptr<ws::OrgnizationRecognizer> recognizer;
    ws::TextSegmentation seg;
    std::vector<unsigned short> text;
    std::string lists;
    float threshold = 5.0f;
};

TEST_F(OrgnizationRecognizerTest, NamesEndInASuffixAfterAWordThatBeginsNames) {
    ASSERT_TRUE(init(lists));
    const std::pair<std::u16string, const char*> cases[] = {
        {u"北京电子公司", "北京电子公司*"},          // place, inner word, suffix
        {u"公司", "公司"},                           // a suffix alone
        {u"电子公司", "电子/公司"},                  // nothing that begins a name
        {u"的北京的公司", "的/北京/的/公司"},        // an unlisted word stops the walk
        {u"中国人民银行", "中国人民银行*"},          // the longest plausible span, not 人民银行
        {u"北京大学医学院的", "北京大学医学院*/的"},  // a name inside a name
        {u"国务院", "国务院*"},                      // a name by itself
    };
    for (const auto& c : cases) EXPECT_EQ(cut(c.first), c.second);
    std::vector<unsigned short> props;
    EXPECT_EQ(recognizer->getProperty(props), 1);
    EXPECT_EQ(props, std::vector<unsigned short>{ws::WS_PROPERTY_ORG});
}

TEST_F(OrgnizationRecognizerTest, TheThresholdDecidesAgainstTheDictionaryCut) {
    threshold = -30.0f;
    ASSERT_TRUE(init(lists));
    EXPECT_EQ(cut(u"北京电子公司"), "北京/电子/公司");
    threshold = 5.0f;
    ASSERT_TRUE(init(lists + "ORGNIZATION_MIN_SUFFIX_SHARE = 0.45\n"));
    EXPECT_EQ(cut(u"中国人民银行"), "中国/人民/银行");  // 银行's share is below the minimum
}

TEST_F(OrgnizationRecognizerTest, UnusableListsFailInitWithTheLine) {
    const std::pair<std::string, std::string> cases[] = {
        {"公司\n", "suffix.txt:1: expected word TAB suffix-share"},
        {"公司\t2\n", "suffix.txt:1: expected word TAB suffix-share"},
        {"# only a comment\n", "no suffix word"},
        {"\xff\t0.5\n", "suffix.txt:1: not a UTF-8 word"},
    };
    for (const auto& c : cases) {
        dir.write("suffix.txt", c.first);
        testing::internal::CaptureStderr();
        EXPECT_FALSE(init(lists));
        EXPECT_NE(testing::internal::GetCapturedStderr().find(c.second), std::string::npos)
            << c.first;
    }
    testing::internal::CaptureStderr();
    EXPECT_FALSE(init("ORGNIZATION_SUFFIX_DICT = " + dir.file("none.txt") + "\n"));
    EXPECT_NE(testing::internal::GetCapturedStderr().find("none.txt"), std::string::npos);
}

}  // namespace
