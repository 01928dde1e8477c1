// The tag model from its five text files and as an in-place binary block.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "PosTestModel.h"
#include "ws/pos/wsTagInfo.h"

namespace {

class TagInfoTest : public ::testing::Test {
protected:
    void SetUp() override {
        f = zeg_test::writePosModel(dir, 0);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        ASSERT_EQ(info.loadTagInfo(f.names.c_str(), f.freq.c_str(), f.init.c_str(),
                                   f.bigrams.c_str(), f.trigrams.c_str()),
                  0);
        stdoutText = testing::internal::GetCapturedStdout();
        stderrText = testing::internal::GetCapturedStderr();
    }

    // The model's binary block, in a 4-aligned buffer.
    std::vector<float> block() {
        std::FILE* fp = std::tmpfile();
        EXPECT_EQ(info.write(fp), 0);
        std::vector<float> out(static_cast<size_t>(std::ftell(fp)) / 4);
        std::rewind(fp);
        EXPECT_EQ(std::fread(out.data(), 4, out.size(), fp), out.size());
        std::fclose(fp);
        return out;
    }

    zeg_test::TempDir dir;
    zeg_test::PosModelFiles f;
    ws::TagInfo info;
    std::string stdoutText, stderrText;
};

TEST_F(TagInfoTest, NamesAndIdsFollowByteOrder) {
    EXPECT_EQ(info.getNumTags(), 11);
    for (int id = 1; id <= 11; ++id) {
        EXPECT_STREQ(info.getTagName(id), zeg_test::kPosTags[id - 1]);
        EXPECT_EQ(info.getTagId(zeg_test::kPosTags[id - 1]), id);
    }
    for (const char* absent : {"", "b", "nz", "x", "\xE5\x90\x8D", "N"})
        EXPECT_EQ(info.getTagId(absent), -1) << absent;
    EXPECT_EQ(info.getTagId(nullptr), -1);
    EXPECT_EQ(info.getTagName(0), nullptr);
    EXPECT_EQ(info.getTagName(12), nullptr);
}

TEST_F(TagInfoTest, ProbabilitiesAndSmoothing) {
    const int t = 11, n = info.getTagId("n") - 1, v = info.getTagId("v") - 1,
              a = info.getTagId("a") - 1;
    EXPECT_NE(stdoutText.find("Smoothing probabilities p(ti|ti-2,ti-1) ..."), std::string::npos);
    EXPECT_NE(stderrText.find("init.txt:3: bad count or unknown tag"), std::string::npos);
    EXPECT_FLOAT_EQ(info.getTagProbVector()[n], 1.0f / 11);
    EXPECT_FLOAT_EQ(info.getInitTagProbVector()[n], std::log(60.0f / 90));
    EXPECT_FLOAT_EQ(info.getInitTagProbVector()[a], std::log(0.000001f));
    const float* bigram = info.getBigramTagTransProbMatrix();
    EXPECT_FLOAT_EQ(bigram[n * t + v], std::log(0.5f));
    EXPECT_FLOAT_EQ(bigram[v * t + v], std::log(0.000001f));  // unseen: floored
    // ln(0.85 P(n|n,v) + 0.1 P(n|v) + 0.05 P(n)), P(n|n,v) = 10 / 50.
    EXPECT_FLOAT_EQ(info.getSmoothedTrigramTagTransProbMatrix()[(n * t + v) * t + n],
                    std::log(0.85f * 0.2f + 0.1f * 0.2f + 0.05f / 11));
}

TEST(TagInfoFiles, RejectNamesOutOfOrderAndMissingFiles) {
    zeg_test::TempDir dir;
    ws::TagInfo info;
    testing::internal::CaptureStderr();
    EXPECT_EQ(info.loadTagNames(dir.write("t.txt", "a\nn\nm\n").c_str()), -1);
    EXPECT_EQ(info.loadTagNames(dir.file("absent").c_str()), -1);
    EXPECT_EQ(info.loadTagFreqFile(dir.write("f.txt", "1 a\n").c_str()), -1);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("Tag Names are not in correct order: n >=  [m]: "), std::string::npos);
    EXPECT_NE(err.find("cannot open tag name file: " + dir.file("absent")), std::string::npos);
    EXPECT_NE(err.find("cannot open tag freq file: "), std::string::npos);
    EXPECT_FALSE(info.isInitialized());
}

TEST_F(TagInfoTest, BinaryBlockBoundaries) {
    const int64_t floats = ws::TagInfo::calcBufLen(11);
    EXPECT_EQ(floats, 2 * 1331 + 2 * 121 + 3 * 11);
    std::vector<float> buf = block();
    const char* bytes = reinterpret_cast<const char*>(buf.data());
    const int64_t size = static_cast<int64_t>(buf.size()) * 4;
    // 520 fixed bytes, the names (4-aligned), 4 per name offset, then floats.
    EXPECT_EQ(size, 520 + 28 + 4 * 11 + 4 * floats);
    ws::TagInfo loaded;
    EXPECT_EQ(loaded.loadFromMem(bytes, size - 1), -1);
    EXPECT_EQ(loaded.loadFromMem(bytes, 519), -1);
    EXPECT_FALSE(loaded.isInitialized());
    ASSERT_EQ(loaded.loadFromMem(bytes, size), size);
    EXPECT_EQ(loaded.getTagId("nt"), info.getTagId("nt"));
    for (int64_t k = 0; k < floats; ++k)
        ASSERT_EQ(loaded.getTagFreqVector()[k], info.getTagFreqVector()[k]) << k;
    // T = 0, an unterminated name buffer and a name offset past it are refused.
    for (const auto& damage : std::vector<std::pair<int, int32_t>>{{0, 0}, {0, 128}, {1, 0}}) {
        std::vector<float> bad = buf;
        char* b = reinterpret_cast<char*>(bad.data());
        if (damage.first == 0) std::memcpy(b, &damage.second, 4);
        if (damage.first == 1) b[8 + 27] = 'x';
        EXPECT_EQ(loaded.loadFromMem(b, size), -1);
    }
}

}  // namespace
