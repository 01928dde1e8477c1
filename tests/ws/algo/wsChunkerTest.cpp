#include "ws/algo/wsChunker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "DataPaths.h"
#include "support/AllocationCounter.h"
#include "support/TempDir.h"
#include "wsTextUtil.h"

using testing::HasSubstr;
using ws::CHUNK_T;
using ws::Chunker;

namespace {

class ChunkerTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(load("delimiterlist=，。end#\n")); }

    bool load(const std::string& definition) {
        return chunker.loadText(dir.write("space.txt", definition));
    }

    // The chunks of `text` as "chunk|chunk|...", checking that they point
    // into the text one after another.
    std::string cut(const std::u16string& s) {
        text = zeg_test::units(s);
        const unsigned int n =
            chunker.getChunks(text.data(), static_cast<unsigned int>(text.size()), chunks);
        EXPECT_EQ(n, chunks.size());
        std::string out;
        const unsigned short* at = text.data();
        for (const CHUNK_T& c : chunks) {
            EXPECT_EQ(c.text, at);
            at += c.len;
            out += (out.empty() ? "" : "|") + zeg_test::utf8(c.text, c.len);
        }
        return out;
    }

    zeg_test::TempDir dir;
    Chunker chunker;
    std::vector<unsigned short> text;
    std::vector<CHUNK_T> chunks;
};

TEST_F(ChunkerTest, CutsAtTheSizeWithALastChunkOneLonger) {
    chunker.setChunkSize(3);
    EXPECT_EQ(cut(u"abcdefg"), "abc|defg");
    EXPECT_EQ(cut(u"abcdefgh"), "abc|def|gh");
    EXPECT_EQ(cut(u"abcd"), "abcd");
    EXPECT_EQ(cut(u"ab"), "ab");
    EXPECT_EQ(cut(u"a"), "a");
    chunker.setChunkSize(1);
    EXPECT_EQ(cut(u"abcd"), "a|b|cd");
}

TEST_F(ChunkerTest, ADelimiterEndsItsChunk) {
    chunker.setChunkSize(10);
    EXPECT_EQ(cut(u"，北京大学"), "，|北京大学");
    EXPECT_EQ(cut(u"北京，大学。好"), "北京，|大学。|好");
    EXPECT_EQ(cut(u"北京。。"), "北京。|。");
    EXPECT_EQ(cut(u"北京。"), "北京。");
    chunker.setChunkSize(3);
    EXPECT_EQ(cut(u"北京大学，好的。"), "北京大|学，|好的。");
}

TEST_F(ChunkerTest, ASizeOfZeroIsRefused) {
    chunker.setChunkSize(4);
    testing::internal::CaptureStderr();
    chunker.setChunkSize(0);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("chunk size 0 refused"));
    EXPECT_EQ(chunker.getChunkSize(), 4u);
    EXPECT_EQ(cut(u"abcdefghij"), "abcd|efgh|ij");
}

TEST_F(ChunkerTest, UnreadableDefinitionsChangeNothing) {
    EXPECT_FALSE(chunker.loadText(dir.file("missing.txt")));
    EXPECT_FALSE(chunker.loadText(dir.mkdir("folder")));
    EXPECT_FALSE(load(""));
    EXPECT_FALSE(load("spacelist= end#\n"));
    EXPECT_FALSE(load("delimiterlist=!"));
    // One byte after the key is always a member: an empty list runs on.
    EXPECT_FALSE(load("delimiterlist=end#"));
    EXPECT_TRUE(chunker.checkWord(u'。'));
}

TEST_F(ChunkerTest, CuttingAllocatesNothingOnceTheVectorHasGrown) {
    chunker.setChunkSize(4);
    cut(std::u16string(400, u'字'));
    const std::u16string texts[] = {u"北京，大学。好", std::u16string(399, u'字'), u"，，，，"};
    for (const std::u16string& s : texts) {
        text = zeg_test::units(s);
        const std::size_t before = zeg_test::allocationCount();
        chunker.getChunks(text.data(), static_cast<unsigned int>(text.size()), chunks);
        EXPECT_EQ(zeg_test::allocationCount(), before);
    }
}

// Random texts and sizes: the chunks tile the text, none is empty, and each
// but the last ends at a delimiter or has exactly the chunk size.
TEST_F(ChunkerTest, ChunksTileTheTextWithinTheSize) {
    const std::u16string alphabet = u"北京，大学。ab";
    std::mt19937 rng(testing::UnitTest::GetInstance()->random_seed());
    for (int round = 0; round < 500; ++round) {
        const unsigned int size = 1 + rng() % 6;
        chunker.setChunkSize(size);
        std::u16string s;
        for (std::size_t i = rng() % 40; i > 0; --i) s += alphabet[rng() % alphabet.size()];
        const std::string whole = zeg_test::utf8(zeg_test::units(s).data(), s.size());
        std::string joined = cut(s);
        joined.erase(std::remove(joined.begin(), joined.end(), '|'), joined.end());
        ASSERT_EQ(joined, whole) << "size " << size;
        for (std::size_t i = 0; i < chunks.size(); ++i) {
            const CHUNK_T& c = chunks[i];
            SCOPED_TRACE(whole + ", size " + std::to_string(size) + ", chunk " +
                         std::to_string(i));
            ASSERT_GT(c.len, 0u);
            if (i + 1 == chunks.size()) {
                EXPECT_LE(c.len, size + 1);
            } else {
                EXPECT_TRUE(c.len == size || (c.len < size && chunker.checkWord(c.text[c.len - 1])));
            }
        }
    }
}

TEST(ChunkerData, ShippedDelimitersEndClausesNotNumbers) {
    Chunker chunker;
    ASSERT_TRUE(chunker.loadText(ZEG_SPACE_DEFINE_FILE));
    for (char16_t c : std::u16string(u"。！？；，、：…!?;\n")) EXPECT_TRUE(chunker.checkWord(c)) << c;
    for (char16_t c : std::u16string(u" .,:-　a中")) EXPECT_FALSE(chunker.checkWord(c)) << c;
}

}  // namespace
