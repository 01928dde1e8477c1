// Damaged dictionary files: each load fails with its code, or what loads
// answers every lookup from inside the file.
#include <gtest/gtest.h>

#include <random>

#include "ws/core/wsWsLogger.h"
#include "ws/dict/wsDATDict.h"
#include "wsDictTestUtil.h"

using ws::DATDict;

namespace {

class DATDictDamageTest : public ::testing::Test {
protected:
    void SetUp() override {
        const char* words[] = {"清", "清华", "清华大学", "北京", "北京大学", "大学", "学生"};
        for (const char* w : words) {
            ASSERT_GT(zeg_test::addWord(dict, w, 1.0f, std::string(5, 'v')), 0);
            keys.push_back(w);
        }
        bytes = zeg_test::serializeDict(dict);
        trieAt = DATDict::kSectionStart + dict.getDataMax();
    }

    struct Codes {
        int memory, stream;
    };

    Codes load(const std::string& damaged) {
        zeg_test::AlignedBuffer buffer(damaged);
        DATDict inPlace;
        const int memory = inPlace.loadDict(buffer.data(), static_cast<unsigned>(buffer.size()));
        exercise(inPlace);
        DATDict fromStream;
        const int stream = zeg_test::loadDictFromStream(fromStream, damaged);
        exercise(fromStream);
        return {memory, stream};
    }

    void exercise(const DATDict& d) {
        for (const std::string& k : keys) {
            const int id = zeg_test::wordId(d, k);
            unsigned char* extra = nullptr;
            float w = 0;
            const int n = d.getValue(id, &extra, w);
            // Touch every byte the dictionary hands out.
            for (int i = 0; i < n; ++i) sink += extra[i];
            zeg_test::dictMatchAll(d, k + "生");
            zeg_test::weightOf(d, k);
        }
    }

    void putInt(std::string& s, size_t at, uint32_t v) { std::memcpy(&s[at], &v, 4); }

    DATDict dict;
    std::vector<std::string> keys;
    std::string bytes;
    size_t trieAt = 0;
    unsigned sink = 0;
};

TEST_F(DATDictDamageTest, TruncationAtEachSectionBoundary) {
    const int open = ws::WS_ERR_OPEN_FILE, small = ws::WS_ERR_FILE_TOO_SMALL;
    const int read = ws::WS_ERR_READ, text = ws::WS_ERR_TEXT;
    struct Case {
        size_t cut;
        int memory, stream;
    };
    const Case cases[] = {
        {0, open, small},
        {23, open, small},
        {24, open, small},     // too short for the header
        {31, open, small},
        {55, open, small},
        {56, open, small},     // the area is missing
        {trieAt - 33, open, small},
        // The stream check leaves out the magic's 32 bytes: a cut inside
        // the last 32 bytes of the area passes it and fails to read.
        {trieAt - 32, open, read},
        {trieAt - 1, open, read},
        {trieAt, read, text},  // the trie is missing
        {trieAt + 35, read, text},
        {trieAt + 36, read, text},
        {bytes.size() - 1, read, text},
    };
    for (const Case& c : cases) {
        const Codes got = load(bytes.substr(0, c.cut));
        EXPECT_EQ(got.memory, c.memory) << c.cut;
        EXPECT_EQ(got.stream, c.stream) << c.cut;
    }
    const Codes whole = load(bytes);
    EXPECT_EQ(whole.memory, 0);
    EXPECT_EQ(whole.stream, 0);
}

TEST_F(DATDictDamageTest, CountsThatDoNotFitAreRefused) {
    const size_t dataMaxAt = 32, usedAt = 36;
    for (uint32_t dataMax : {0x80000000u, 0xFFFFFFFFu, 0x7FFFFFFFu, 1u << 20}) {
        std::string d = bytes;
        putInt(d, dataMaxAt, dataMax);
        const Codes got = load(d);
        EXPECT_EQ(got.memory, ws::WS_ERR_OPEN_FILE) << dataMax;
        EXPECT_NE(got.stream, 0) << dataMax;
    }
    for (uint32_t used : {0u, 0xFFFFFFFFu, 1025u, 0x80000000u}) {
        std::string d = bytes;
        putInt(d, usedAt, used);
        const Codes got = load(d);
        EXPECT_EQ(got.memory, ws::WS_ERR_OPEN_FILE) << used;
        EXPECT_EQ(got.stream, ws::WS_ERR_FILE_TOO_SMALL) << used;
    }
}

TEST_F(DATDictDamageTest, RecordsPointingPastTheAreaReadAsAbsent) {
    std::string d = bytes;
    const int id = zeg_test::wordId(dict, "清华");
    putInt(d, DATDict::kSectionStart + static_cast<size_t>(id) + 4, 0xFFFFFFF0u);
    zeg_test::AlignedBuffer buffer(d);
    DATDict damaged;
    ASSERT_EQ(damaged.loadDict(buffer.data(), static_cast<unsigned>(buffer.size())), 0);
    EXPECT_EQ(zeg_test::weightOf(damaged, "清华"), -1000.0f);
    unsigned char* extra = nullptr;
    float w = 0;
    EXPECT_EQ(damaged.getValue(id, &extra, w), 0);
    EXPECT_EQ(extra, nullptr);
    // The other words are untouched, and matchAll leaves the bad one out.
    EXPECT_EQ(zeg_test::weightOf(damaged, "清华大学"), 1.0f);
    EXPECT_EQ(zeg_test::dictMatchAll(damaged, "清华大学").size(), 2u);
}

TEST_F(DATDictDamageTest, TrieValuesOutsideTheAreaFindNothing) {
    // Rebuild with ids the area does not hold: the trie is the file's own
    // business, so forge it from a second dictionary with more records.
    DATDict longer;
    for (int i = 0; i < 200; ++i)
        zeg_test::addWord(longer, "词" + std::to_string(i), 1.0f, std::string(10, 'x'));
    for (const std::string& k : keys) zeg_test::addWord(longer, k, 1.0f);
    const std::string other = zeg_test::serializeDict(longer);
    const size_t otherTrie = DATDict::kSectionStart + longer.getDataMax();
    const std::string forged = bytes.substr(0, trieAt) + other.substr(otherTrie);
    const Codes got = load(forged);
    EXPECT_EQ(got.memory, 0);
    zeg_test::AlignedBuffer buffer(forged);
    DATDict d;
    ASSERT_EQ(d.loadDict(buffer.data(), static_cast<unsigned>(buffer.size())), 0);
    for (const std::string& k : keys) {
        EXPECT_EQ(zeg_test::weightOf(d, k), -1000.0f) << k;
        EXPECT_EQ(zeg_test::wordId(d, k), DATDict::kNotFound) << k;
        EXPECT_TRUE(zeg_test::dictMatchAll(d, k).empty()) << k;
    }
}

}  // namespace
