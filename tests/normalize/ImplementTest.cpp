#include "normalize/Implement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "normalize/WordLists.h"
#include "normalize/nmConfig.h"
#include "support/AllocationCounter.h"
#include "support/Gbk.h"
#include "support/NormalizerFiles.h"

using normalize::Implement;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using zeg_test::gbk;
using zeg_test::utf8;

namespace {

class ImplementTest : public ::testing::Test {
protected:
    ImplementTest() {
        normalize::gStopWords.clear();
        normalize::gSynonymsWords.clear();
        normalize::wordListsChanged();
        files.stopWords = "的 ？ ?";
        files.synonyms = "北大\x01北京大学\n"
                         "abc\x01XyZ\n"
                         "wifi\x01无线网络\n";
    }

    // init on the files as they stand; what it wrote goes to `err`.
    bool init() {
        const std::string path = files.write(dir);
        testing::internal::CaptureStderr();
        const bool ok = implement.init(path);
        err = testing::internal::GetCapturedStderr();
        return ok;
    }

    // The UTF-8 result for a UTF-8 query; the return code goes to `rc`, the
    // words (in UTF-8) to `words`, messages to `err`.
    std::string normalize(const std::string& query, int mode) {
        std::string out = "left over";
        std::vector<std::string> gbkWords{"left over"};
        testing::internal::CaptureStderr();
        rc = implement.doNormalize(query, mode, out, gbkWords, false, false);
        err = testing::internal::GetCapturedStderr();
        words.clear();
        for (const std::string& w : gbkWords) words.push_back(utf8(w));
        return out;
    }

    zeg_test::TempDir dir;
    zeg_test::NormalizerFiles files;
    Implement implement;
    std::string err;
    int rc = 99;
    std::vector<std::string> words;
};

TEST_F(ImplementTest, InitLoadsEverything) {
    ASSERT_TRUE(init()) << err;
    EXPECT_THAT(err, Not(HasSubstr("[Implement::init]")));
    EXPECT_EQ(normalize::gStopWords.count(gbk("的")), 1u);
    EXPECT_EQ(normalize::gSynonymsWords.at("ABC"), "XyZ");
}

TEST_F(ImplementTest, InitReportsAConfigurationThatDoesNotLoad) {
    testing::internal::CaptureStderr();
    EXPECT_FALSE(implement.init(dir.file("absent.ini")));
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                EndsWith("[Implement::init] Load configuration file " + dir.file("absent.ini") +
                         " failed.\n"));
}

TEST_F(ImplementTest, UnreadableStopFileFailsWithoutAMessageOfItsOwn) {
    files.stopFile = dir.mkdir("stop-dir");
    EXPECT_FALSE(init());
    EXPECT_EQ(err, "");
}

TEST_F(ImplementTest, UnreadableSynonymsFileFailsWithTheLoadersMessage) {
    files.synonymsFile = dir.mkdir("syn-dir");
    EXPECT_FALSE(init());
    EXPECT_EQ(err, "[loadSynonymsFile] open file [" + files.synonymsFile + "] failed.\n");
}

TEST_F(ImplementTest, SegmenterThatDoesNotLoadIsReportedAndSegmentationThenFails) {
    files.wsConfig = dir.mkdir("not-a-segmenter-configuration");
    EXPECT_FALSE(init());
    EXPECT_THAT(err, EndsWith("[nmSegment::init] zeg nmSegment init failed\n"
                              "[Implement::init] zeg segment init failed\n"));
    // The settings did load, so a GBK query (the converters never opened) gets
    // as far as the segmenter.
    std::string out;
    std::vector<std::string> w;
    testing::internal::CaptureStderr();
    EXPECT_EQ(implement.doNormalize(gbk("北京"), 128, out, w, true, true), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[nmSegment::doSegment] zeg not init!\n"
              "[Implement::doNormalize] doSegment failed for input [" + gbk("北京") + "]\n");
    EXPECT_EQ(out, "");
    EXPECT_EQ(implement.doNormalize(gbk("a b"), 4, out, w, true, true), 0);
    EXPECT_EQ(out, "ab") << "splitting needs no segmenter";
}

TEST_F(ImplementTest, EmptyAndBlankQueriesGiveNothingQuietly) {
    ASSERT_TRUE(init()) << err;
    for (const char* query : {"", "   ", " \t\r\n", "的", "？ 的 ?"}) {
        EXPECT_EQ(normalize(query, 252 | 32), "") << query;
        EXPECT_EQ(rc, 0);
        EXPECT_EQ(err, "");
        EXPECT_TRUE(words.empty());
    }
}

TEST_F(ImplementTest, InvalidModesFailWithAMessage) {
    ASSERT_TRUE(init()) << err;
    for (int mode : {0, -1, -2147483647 - 1}) {
        EXPECT_EQ(normalize("abc", mode), "");
        EXPECT_EQ(rc, -1);
        EXPECT_EQ(err, "[Implement::doNormalize] invalid input parameter [" + std::to_string(mode) +
                           "] for query [abc]\n");
    }
}

TEST_F(ImplementTest, OverlongQueriesComeBackAsTheyAreInTheAskedEncoding) {
    files.maxInputLength = "4";
    ASSERT_TRUE(init()) << err;
    const std::string message =
        "[Implement::doNormalize] input for normalization is too long. Will return input as "
        "normalization result.\n";
    const std::string query = "北京大学";  // 8 bytes of GBK
    std::string out;
    std::vector<std::string> w;
    for (int in = 0; in < 2; ++in) {
        for (int outGbk = 0; outGbk < 2; ++outGbk) {
            testing::internal::CaptureStderr();
            EXPECT_EQ(implement.doNormalize(in ? gbk(query) : query, 0, out, w, in, outGbk), 0);
            EXPECT_EQ(testing::internal::GetCapturedStderr(), message);
            EXPECT_EQ(out, outGbk ? gbk(query) : query);
        }
    }
    EXPECT_EQ(normalize("ABCD", 4), "abcd") << "four bytes are not too long";
    EXPECT_EQ(normalize("ABCDE", 0), "ABCDE") << "the length is checked before the mode";
}

TEST_F(ImplementTest, WithoutSegmentationWordsAreSplitAtSpacesAndJoinedWithout) {
    ASSERT_TRUE(init()) << err;
    EXPECT_EQ(normalize("  Ａ  北京\u3000b的c ", 4 | 8 | 32), "a北京bc");
    EXPECT_EQ(words, (std::vector<std::string>{"a", "北京", "b", "c"}));
    EXPECT_EQ(normalize("b a", 1), "ba");
    EXPECT_EQ(normalize("a\tb", 1), "a\tb") << "only spaces separate words";
}

TEST_F(ImplementTest, CanonicalOrderSortsByHashDropsDeAndSpaces) {
    ASSERT_TRUE(init()) << err;
    EXPECT_EQ(normalize("a b", 128), "ba");
    EXPECT_EQ(normalize("b a", 128), "ba");
    EXPECT_EQ(normalize("b 的 a", 128), "ba");
    EXPECT_THAT(words, testing::Contains("的")) << "the words are kept in text order";
    EXPECT_EQ(normalize("b B", 128), "Bb") << "equal hashes fall back to the bytes";
    EXPECT_EQ(normalize("x y", 128 | 2), "XY");
}

TEST_F(ImplementTest, SynonymsReplaceTheWholeQueryAndThenEachWord) {
    ASSERT_TRUE(init()) << err;
    EXPECT_EQ(normalize("北大", 64), "北京大学");
    EXPECT_EQ(normalize("ABC", 64), "XyZ") << "keys ignore ASCII case";
    EXPECT_EQ(normalize("aBc", 64 | 4), "XyZ") << "replacements keep theirs";
    // The segmenter keeps a space as a word of its own; only bit 128 drops it.
    EXPECT_EQ(normalize("wifi abc", 64), "无线网络 XyZ");
    EXPECT_EQ(words, (std::vector<std::string>{"无线网络", " ", "XyZ"}));
    EXPECT_EQ(normalize("abcd", 64), "abcd") << "only whole words are replaced";
}

// A worker keeps its work space: once it has seen queries, the usual modes
// allocate nothing more for queries of that size, through the whole default
// pipeline (the normaliser's own segmenter settings).
TEST_F(ImplementTest, WarmWorkerAllocatesNothing) {
    files.wsConfig = ZEG_DATA_DIR "/normalizer-segmenter.conf";
    ASSERT_TRUE(init()) << err;
    const std::string queries[] = {"北大 ABC 的 wifi", "軟體 ＡＢ 北京大學生 mp3", "我们 的 iPhone 7"};
    const int modes[] = {252, 255, 127, 4 | 8 | 16, 128, 64};
    std::string out;
    std::vector<std::string> w;
    for (int pass = 0; pass < 2; ++pass) {
        const size_t before = zeg_test::allocationCount();
        for (const std::string& q : queries)
            for (int mode : modes) ASSERT_EQ(implement.doNormalize(q, mode, out, w, false, false), 0);
        if (pass == 1) {
            EXPECT_EQ(zeg_test::allocationCount(), before);
        }
    }
}

TEST_F(ImplementTest, GbkFlagsChooseTheEncodingOfEachSide) {
    ASSERT_TRUE(init()) << err;
    std::string out;
    std::vector<std::string> w;
    ASSERT_EQ(implement.doNormalize(gbk("軟體 ＡＢ"), 4 | 8 | 16, out, w, true, true), 0);
    EXPECT_EQ(out, gbk("软体ab"));
    ASSERT_EQ(implement.doNormalize(gbk("軟體 ＡＢ"), 4 | 8 | 16, out, w, true, false), 0);
    EXPECT_EQ(out, "软体ab");
    ASSERT_EQ(implement.doNormalize("軟體 ＡＢ", 4 | 8 | 16, out, w, false, true), 0);
    EXPECT_EQ(out, gbk("软体ab"));
}

TEST_F(ImplementTest, BytesThatAreNotGbkAreDropped) {
    ASSERT_TRUE(init()) << err;
    EXPECT_EQ(normalize("a\xFF\xC0\x80" "b\xED\xA0\x80😀한c", 4), "abc");
    EXPECT_EQ(rc, 0);
}

TEST_F(ImplementTest, EuroSignsComeBackWholeOnAFreshObject) {
    // GBK holds "€" in one byte, UTF-8 in three.
    ASSERT_TRUE(init()) << err;
    const std::string euros = "€€€€€€€€€€";
    EXPECT_EQ(normalize(euros, 4), euros);
    EXPECT_EQ(normalize(euros + " x", 128), normalize("x " + euros, 128));
}

TEST_F(ImplementTest, SettingsThatAreNoLongerLoadedFailTheQuery) {
    ASSERT_TRUE(init()) << err;
    normalize::nmConfig::getInstance()->setInitValue();
    EXPECT_EQ(normalize("abc", 4), "");
    EXPECT_EQ(rc, -1);
    EXPECT_EQ(err, "[Implement::doNormalize] get max input size from nmConfig failed.\n");
}

}  // namespace
