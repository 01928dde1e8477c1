#include "normalize/NormalizeIntf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "normalize/WordLists.h"
#include "support/AllocationCounter.h"
#include "support/NormalizerFiles.h"

using normalize::NormalizeIntf;
using testing::EndsWith;

namespace {

class NormalizeIntfTest : public ::testing::Test {
protected:
    NormalizeIntfTest() {
        normalize::gStopWords.clear();
        normalize::gSynonymsWords.clear();
        normalize::wordListsChanged();
    }

    bool init(const std::string& path) {
        testing::internal::CaptureStderr();
        const bool ok = facade.init(path);
        err = testing::internal::GetCapturedStderr();
        return ok;
    }

    int normalize(const std::string& query, int mode, std::string& out) {
        testing::internal::CaptureStderr();
        const int rc = facade.doNormalize(query, mode, out, false, false);
        err = testing::internal::GetCapturedStderr();
        return rc;
    }

    zeg_test::TempDir dir;
    NormalizeIntf facade;
    std::string err;
};

TEST_F(NormalizeIntfTest, RefusesUntilInitialisedAndLeavesTheOutputAlone) {
    std::string out = "untouched";
    EXPECT_EQ(normalize("北京", 252, out), -1);
    EXPECT_EQ(out, "untouched");
    EXPECT_EQ(err, "[NormalizeIntf::doNormalize] interface is not initialized. input is [北京]\n");
}

TEST_F(NormalizeIntfTest, FailedInitLeavesItUninitialised) {
    EXPECT_FALSE(init(dir.file("absent.ini")));
    EXPECT_FALSE(facade.isInitialized());
    EXPECT_THAT(err, EndsWith("[NormalizeIntf::init] Implement initialization failed.\n"));
    std::string out;
    EXPECT_EQ(normalize("x", 4, out), -1);
    EXPECT_THAT(err, testing::StartsWith("[NormalizeIntf::doNormalize] interface is not"));
}

TEST_F(NormalizeIntfTest, ImplementThatCannotBeCreatedIsReported) {
    const std::string path = zeg_test::NormalizerFiles().write(dir);
    testing::internal::CaptureStderr();
    bool ok = true;
    {
        zeg_test::FailingAllocations failing;
        ok = facade.init(path);
    }
    EXPECT_FALSE(ok);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[NormalizeIntf::init] new Implement operation failed.\n");
    EXPECT_FALSE(facade.isInitialized());
}

TEST_F(NormalizeIntfTest, PipelineFailuresAreReportedWithTheInput) {
    ASSERT_TRUE(init(zeg_test::NormalizerFiles().write(dir))) << err;
    std::string out = "x";
    EXPECT_EQ(normalize("abc", 0, out), -1);
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, "[Implement::doNormalize] invalid input parameter [0] for query [abc]\n"
                   "[NormalizeIntf::doNormalize] doNormalize failed for input [abc]\n");
    EXPECT_EQ(normalize("A B", 4, out), 0);
    EXPECT_EQ(out, "ab");
    EXPECT_EQ(err, "");
}

TEST_F(NormalizeIntfTest, InitAgainRebuildsFromTheNewConfiguration) {
    zeg_test::NormalizerFiles files;
    files.synonyms = "abc\x01one\n";
    ASSERT_TRUE(init(files.write(dir))) << err;
    std::string out;
    normalize("abc", 64, out);
    EXPECT_EQ(out, "one");

    zeg_test::TempDir other;
    files.synonyms = "abc\x01two\n";
    ASSERT_TRUE(init(files.write(other))) << err;
    normalize("abc", 64, out);
    EXPECT_EQ(out, "two");

    EXPECT_FALSE(init(other.file("absent.ini")));
    EXPECT_EQ(normalize("abc", 64, out), -1);
}

TEST_F(NormalizeIntfTest, LongFormHandsBackTheWords) {
    ASSERT_TRUE(init(zeg_test::NormalizerFiles().write(dir))) << err;
    std::string out;
    std::vector<std::string> words;
    EXPECT_EQ(facade.doNormalize("b a", 4, out, words, false, false), 0);
    EXPECT_EQ(words, (std::vector<std::string>{"b", "a"}));
    EXPECT_EQ(out, "ba");
}

// Every thread gets an Implement of its own; results do not depend on how
// many threads run at once, nor on which thread ran init.
TEST_F(NormalizeIntfTest, ThreadsNormaliseInParallelWithTheSameResults) {
    zeg_test::NormalizerFiles files;
    files.synonyms = "软体\x01软件\n";
    ASSERT_TRUE(init(files.write(dir))) << err;
    const char* pieces[] = {"北京", "大学", "生", "軟體", "下載", "免费", " ", "ＡＢ", "iPhone",
                            "13", "的", "中国人民银行", "！", "x"};
    std::mt19937 random(static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed()));
    std::vector<std::string> queries(2000);
    for (std::string& q : queries)
        for (int n = 1 + static_cast<int>(random() % 6); n > 0; --n) q += pieces[random() % 14];
    std::vector<std::string> expected(queries.size());
    for (size_t i = 0; i < queries.size(); ++i)
        ASSERT_EQ(facade.doNormalize(queries[i], 252, expected[i], false, false), 0) << queries[i];

    std::vector<size_t> mismatches(8, 0);
    std::vector<std::thread> threads;
    for (size_t t = 0; t < mismatches.size(); ++t)
        threads.emplace_back([&, t] {
            std::string out;
            for (size_t k = 0; k < queries.size(); ++k) {
                const size_t i = (k * (t + 1)) % queries.size();
                if (facade.doNormalize(queries[i], 252, out, false, false) != 0 || out != expected[i])
                    ++mismatches[t];
            }
        });
    for (std::thread& t : threads) t.join();
    EXPECT_EQ(mismatches, std::vector<size_t>(8, 0));
}

}  // namespace
