#include "jni/NormalizerBridge.h"

#include <gtest/gtest.h>

#include "normalize/NormalizeIntf.h"
#include "normalize/WordLists.h"
#include "support/AllocationCounter.h"
#include "support/NormalizerFiles.h"

using normalize::kQueryLimitBytes;
using normalize::kResultBufferBytes;
using normalize::NormalizeIntf;
using normalize::normalizeForJava;

namespace {

class NormalizerBridgeTest : public ::testing::Test {
protected:
    NormalizerBridgeTest() {
        normalize::gStopWords.clear();
        normalize::gSynonymsWords.clear();
        normalize::wordListsChanged();
    }

    // Initialises the facade with `synonyms` (UTF-8 lines "word\x01replacement").
    void init(const std::string& synonyms = "") {
        zeg_test::NormalizerFiles files;
        files.synonyms = synonyms;
        testing::internal::CaptureStderr();
        const bool ok = facade.init(files.write(dir));
        const std::string err = testing::internal::GetCapturedStderr();
        ASSERT_TRUE(ok) << err;
    }

    std::string normalize(const std::string& query, int mode) {
        testing::internal::CaptureStderr();
        std::string out = normalizeForJava(&facade, query.c_str(), mode);
        err = testing::internal::GetCapturedStderr();
        return out;
    }

    zeg_test::TempDir dir;
    NormalizeIntf facade;
    std::string err;
};

TEST_F(NormalizerBridgeTest, NothingToNormaliseGivesTheEmptyString) {
    EXPECT_EQ(normalizeForJava(nullptr, "abc", 4), "");
    EXPECT_EQ(normalizeForJava(&facade, nullptr, 4), "");
    EXPECT_EQ(normalize("abc", 4), "") << "not initialised";
    EXPECT_EQ(err, "[NormalizeIntf::doNormalize] interface is not initialized. input is [abc]\n");
}

TEST_F(NormalizerBridgeTest, QueriesOf512BytesOrMoreAreRefusedQuietly) {
    init();
    EXPECT_EQ(normalize(std::string(kQueryLimitBytes - 1, 'A'), 4),
              std::string(kQueryLimitBytes - 1, 'a'));
    EXPECT_EQ(normalize(std::string(kQueryLimitBytes, 'A'), 4), "");
    EXPECT_EQ(err, "");
    EXPECT_EQ(normalize(std::string(100000, 'A'), 4), "");
    EXPECT_EQ(err, "");
}

TEST_F(NormalizerBridgeTest, FailedNormalisationGivesWhatThePipelineLeft) {
    init();
    EXPECT_EQ(normalize("abc", 0), "");
    EXPECT_NE(err, "");
}

// Results near the buffer's size: a letter and a character, each replaced
// by a long synonym (a line holds at most 1023 bytes, so one synonym cannot
// fill the buffer alone).
TEST_F(NormalizerBridgeTest, ResultsAreBoundedWithoutSplittingACharacter) {
    std::string zhong;
    for (int k = 0; k < 341; ++k) zhong += "中";  // 1023 bytes of UTF-8
    init("a\x01" + zhong + "\n" +
         "中\x01" "x" + zhong + "\n" +
         "国\x01" + zhong + "x\n" +
         "人\x01" "xy" + zhong + "\n" +
         "民\x01" + zhong + "xy\n");
    ASSERT_EQ(kResultBufferBytes, 2048u);
    EXPECT_EQ(normalize("a中", 64), zhong + "x" + zhong) << "2047 bytes fit";
    EXPECT_EQ(normalize("a国", 64), zhong + zhong + "x") << "2047 bytes fit";
    EXPECT_EQ(normalize("a民", 64), zhong + zhong + "x") << "2048 bytes lose the last one";
    const std::string cut = normalize("a人", 64);
    EXPECT_EQ(cut, zhong + "xy" + zhong.substr(0, zhong.size() - 3))
        << "the last character does not fit whole";
}

// What the JNI method does per call: once its strings have grown, a thread
// allocates nothing in the library.
TEST_F(NormalizerBridgeTest, WarmCallerAllocatesNothing) {
    init("abc\x01xyz\n");
    const std::string queries[] = {"北大 ABC 的 wifi", "軟體 ＡＢ 北京大學生 mp3", "我们 的 iPhone 7"};
    std::string result;
    for (int pass = 0; pass < 2; ++pass) {
        const size_t before = zeg_test::allocationCount();
        for (const std::string& q : queries)
            for (int mode : {252, 255, 127, 64}) normalizeForJava(&facade, q, mode, result);
        if (pass == 1) {
            EXPECT_EQ(zeg_test::allocationCount(), before);
        }
    }
    normalizeForJava(&facade, std::string("ABC\0def", 7), 4, result);
    EXPECT_EQ(result, "abc");
}

}  // namespace
