#include "ws/dict/wsDATDict.h"

#include <gtest/gtest.h>

#include <random>

#include "ws/core/wsWsLogger.h"
#include "wsDictTestUtil.h"

using ws::DATDict;
using zeg_test::addWord;
using zeg_test::u16;
using zeg_test::wordId;

namespace {

using Matches = std::vector<std::pair<int, int>>;

TEST(DATDict, IdsAreRecordOffsetsAndZeroIsNeverAWord) {
    DATDict d;
    EXPECT_EQ(addWord(d, "北京", 3.0f, "xyz"), 1);
    EXPECT_EQ(addWord(d, "北京大学", 2.0f), 1 + 8 + 3);
    EXPECT_EQ(addWord(d, "大学", 1.5f, "q"), 1 + 8 + 3 + 8);
    EXPECT_EQ(d.used(), 1 + 8 + 3 + 8 + 8 + 1);
    EXPECT_EQ(d.maxKeyBytes(), 8u);
    EXPECT_EQ(wordId(d, "北京大学"), 12);
    EXPECT_EQ(wordId(d, "北"), DATDict::kNotFound);
    EXPECT_EQ(d[0u], nullptr);
    EXPECT_EQ(d[static_cast<unsigned>(d.used())], nullptr);

    unsigned char* extra = nullptr;
    float weight = 0;
    EXPECT_EQ(d.getValue(1, &extra, weight), 3);
    EXPECT_EQ(weight, 3.0f);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(extra), 3), "xyz");
    EXPECT_EQ(d.getValue(12, &extra, weight), 0);
    EXPECT_EQ(extra, nullptr);
    EXPECT_EQ(weight, 2.0f);
    EXPECT_EQ(d.getValue(-1, &extra, weight), 0);

    EXPECT_EQ(zeg_test::dictMatchAll(d, "北京大学生"), (Matches{{3, 1}, {7, 12}}));
    EXPECT_EQ(zeg_test::weightOf(d, "大学"), 1.5f);
}

TEST(DATDict, AddingAWordTwiceKeepsTheFirstRecord) {
    DATDict d;
    ASSERT_EQ(addWord(d, "清华", 1.0f, "a"), 1);
    const int used = d.used();
    EXPECT_EQ(addWord(d, "清华", 9.0f, "bb"), ws::WS_ERR_KEY_EXISTS);
    EXPECT_EQ(d.used(), used);
    EXPECT_EQ(zeg_test::weightOf(d, "清华"), 1.0f);
}

TEST(DATDict, Utf8AddLimitsAndConversionFailures) {
    DATDict d;
    std::string w64, w65;
    for (int i = 0; i < 64; ++i) w64 += "字";
    w65 = w64 + "a";
    EXPECT_GT(addWord(d, w64, 1.0f), 0);
    EXPECT_EQ(addWord(d, w65, 1.0f), ws::WS_ERR_WORD_TOO_LONG);
    EXPECT_EQ(addWord(d, "ab\xff", 1.0f), ws::WS_ERR_KEY_TO_UTF16);
    EXPECT_EQ(addWord(d, "", 1.0f), ws::WS_ERR_KEY_TO_UTF16);
    EXPECT_EQ(d.getWordId("", 0), ws::WS_ERR_KEY_TO_UTF16);
    EXPECT_EQ(d.getWordId(w64.data(), static_cast<unsigned>(w64.size())), 1);
    // A null extra with a length, and a null weight meaning 1.0.
    unsigned short key[] = {0x6e05};
    EXPECT_EQ(d.add(key, 1, nullptr, nullptr, 3), 0);
    const int id = d.add(key, 1, nullptr, nullptr, 0);
    ASSERT_GT(id, 0);
    EXPECT_EQ(DATDict::recordWeight(d[static_cast<unsigned>(id)]), 1.0f);
}

TEST(DATDict, TheAreaGrowsInOneStepAndRefusesWhatDoesNotFit) {
    DATDict d;
    EXPECT_EQ(d.getDataMax(), 0u);
    ASSERT_EQ(addWord(d, "一", 1.0f, std::string(1000, 'x')), 1);
    EXPECT_EQ(d.getDataMax(), 1024u);
    // used = 1009: a record of 8 + 7 bytes ends at 1024 and still grows.
    ASSERT_GT(addWord(d, "二", 1.0f, std::string(7, 'x')), 0);
    EXPECT_EQ(d.getDataMax(), 2048u);
    // One step of 1024 bytes is all there is: a larger record is refused
    // and leaves no key behind.
    EXPECT_EQ(addWord(d, "三", 1.0f, std::string(2100, 'x')), ws::WS_ERR_TEXT);
    EXPECT_EQ(wordId(d, "三"), DATDict::kNotFound);
    EXPECT_EQ(d.getDataMax(), 2048u);
}

TEST(DATDict, WritesTheDocumentedBytes) {
    DATDict d;
    ASSERT_EQ(addWord(d, "中", 2.0f, "ab"), 1);
    d.setTotalFreq(5.0);
    const std::string bytes = zeg_test::serializeDict(d);

    std::string expected("DATDict_v_1_0", 13);
    expected.resize(32, '\0');
    const char header[] = {0, 4, 0, 0,  11, 0, 0, 0,  2, 0, 0, 0,  0, 0, 0, 0,
                           0, 0, 0, 0,  0, 0, 20, 64};
    expected.append(header, sizeof header);
    std::string area(1024, '\0');
    const char record[] = {0, 0, 0, 64, 2, 0, 0, 0, 'a', 'b'};
    area.replace(1, sizeof record, record, sizeof record);
    expected += area;
    ws::DoubleTrie trie;
    trie.init();
    zeg_test::add(trie, u16("中"), 1);
    expected += zeg_test::serialize(trie);
    EXPECT_EQ(bytes, expected);
}

TEST(DATDict, WriteFailuresAreReported) {
    DATDict d;
    addWord(d, "中", 1.0f);
    zeg_test::TempDir dir;
    EXPECT_EQ(d.writeDict(dir.file("no/such/dir/x.dict").c_str()), ws::WS_ERR_OPEN_FILE);
    ws::File full;
    if (full.open("/dev/full", "wb")) {
        EXPECT_EQ(d.writeDict(full.get()), ws::WS_ERR_WRITE);
    }
    EXPECT_EQ(d.writeDict("/dev/full"), ws::WS_ERR_WRITE);
}

// A dictionary of random words and records, built, then loaded the three
// ways: every answer must be the same.
class DATDictRoundTrip : public ::testing::Test {
protected:
    void SetUp() override {
        std::mt19937 rng(testing::UnitTest::GetInstance()->random_seed());
        const char* chars[] = {"中", "国", "人", "民", "大", "学", "北", "京", "a", "1"};
        for (int i = 0; i < 400; ++i) {
            std::string w;
            for (int n = 1 + static_cast<int>(rng() % 5); n > 0; --n) w += chars[rng() % 10];
            std::string extra(rng() % 20, '\0');
            for (char& c : extra) c = static_cast<char>(rng());
            if (addWord(built, w, static_cast<float>(rng() % 100) / 7.0f, extra) > 0)
                words.push_back(w);
        }
        built.setTotalFreq(12345.5);
        bytes = zeg_test::serializeDict(built);
    }

    void expectSameAnswers(const DATDict& d, bool sameSize = true) {
        if (sameSize) {
            EXPECT_EQ(d.getDataMax(), built.getDataMax());
            EXPECT_EQ(d.used(), built.used());
        }
        EXPECT_EQ(d.getTotalFreq(), 12345.5);
        for (const std::string& w : words) {
            const int id = wordId(built, w);
            ASSERT_EQ(wordId(d, w), id) << w;
            unsigned char *e1 = nullptr, *e2 = nullptr;
            float w1 = 0, w2 = 0;
            const int n = built.getValue(id, &e1, w1);
            ASSERT_EQ(d.getValue(id, &e2, w2), n);
            EXPECT_EQ(w1, w2);
            if (n > 0) {
                EXPECT_EQ(std::memcmp(e1, e2, static_cast<size_t>(n)), 0);
            }
            EXPECT_EQ(zeg_test::dictMatchAll(d, w + "国人"),
                      zeg_test::dictMatchAll(built, w + "国人"));
        }
    }

    DATDict built;
    std::vector<std::string> words;
    std::string bytes;
};

TEST_F(DATDictRoundTrip, StreamBufferAndMappedFileAgree) {
    DATDict fromStream;
    ASSERT_EQ(zeg_test::loadDictFromStream(fromStream, bytes), 0);
    expectSameAnswers(fromStream);
    EXPECT_TRUE(fromStream.ownsArea());

    zeg_test::AlignedBuffer buffer(bytes);
    DATDict inPlace;
    ASSERT_EQ(inPlace.loadDict(buffer.data(), static_cast<unsigned>(buffer.size())), 0);
    expectSameAnswers(inPlace);
    EXPECT_FALSE(inPlace.ownsArea());

    zeg_test::TempDir dir;
    const std::string path = dir.write("words.dict", bytes);
    DATDict mapped;
    ASSERT_EQ(mapped.loadDict(path.c_str()), 0);
    expectSameAnswers(mapped);
    EXPECT_TRUE(mapped.isReadOnly());
    EXPECT_EQ(addWord(mapped, "新词", 1.0f), 0);
    EXPECT_EQ(zeg_test::serializeDict(mapped), bytes);
}

TEST_F(DATDictRoundTrip, ADictionaryLoadedFromABufferStillTakesWords) {
    zeg_test::AlignedBuffer buffer(bytes);
    DATDict d;
    ASSERT_EQ(d.loadDict(buffer.data(), static_cast<unsigned>(buffer.size())), 0);
    std::string big;
    for (int i = 0; i < 60; ++i) big += "长";
    // Enough records to pass the end of the loaded area.
    for (int i = 0; i < 200; ++i) ASSERT_GT(addWord(d, big + std::to_string(i), 1.0f, "xx"), 0);
    EXPECT_TRUE(d.ownsArea());
    expectSameAnswers(d, false);
    EXPECT_EQ(bytes, std::string(buffer.data(), buffer.size()));
}

}  // namespace
