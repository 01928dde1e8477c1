// The dictionaries the build makes from python3-jieba's word list.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "ToolPaths.h"
#include "tools/PropertyTable.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/dict/wsDictSet.h"

namespace {

class DefaultDataTest : public ::testing::Test {
protected:
    void SetUp() override {
        const std::string data = ZEG_DATA_DIR;
        std::ifstream probe(data + "/base.dict");
        if (!probe) GTEST_SKIP() << "no default dictionaries in " << data;
        ASSERT_EQ(set.loadDict(data + "/base.dict", data + "/alnum.dict", {}), 0);
        std::string error;
        ASSERT_TRUE(properties.load(data + "/properties.txt", error)) << error;
    }

    std::string key(const std::string& utf8) {
        const auto units = EncodeConverter::utf8ToUtf16(
            EncodeConverter::Utf8String(utf8.begin(), utf8.end()));
        return std::string(reinterpret_cast<const char*>(units.data()), units.size() * 2);
    }

    // The first type id and the record weight of a word, from `mask`.
    std::pair<int, float> lookup(const std::string& utf8, unsigned char mask) {
        const std::string k = key(utf8);
        const int id = set.getWordId(reinterpret_cast<const unsigned short*>(k.data()),
                                     static_cast<unsigned>(k.size() / 2), mask);
        unsigned char* value = nullptr;
        float weight = 0;
        if (id < 0 || set.getValue(id, &value, weight) == 0) return {-1, 0.0f};
        std::vector<ws::WordType> types;
        set.getPropWght(value, types);
        return {types.empty() ? 0 : types[0].type, weight};
    }

    ws::WsDictSet set;
    zeg_tools::PropertyTable properties;
};

TEST_F(DefaultDataTest, BaseHoldsTheJiebaEntries) {
    // Every entry of the word list, with its frequency and tag.
    std::ifstream in(ZEG_JIEBA_DICT);
    std::string word, tag;
    long freq = 0;
    int checked = 0;
    double total = 0;
    for (int line = 0; in >> word >> freq >> tag; ++line) {
        total += static_cast<double>(freq);
        if (line % 997 != 0) continue;
        const std::pair<int, float> got = lookup(word, ws::WsDictSet::kBase);
        EXPECT_EQ(got.first, properties.find(tag)) << word;
        EXPECT_FLOAT_EQ(got.second, static_cast<float>(std::log(static_cast<double>(freq))))
            << word;
        ++checked;
    }
    EXPECT_GT(checked, 300);
    // The word list repeats one entry (B超 3); the repeat is skipped.
    EXPECT_EQ(set.baseDict()->getTotalFreq(), total - 3);
}

TEST_F(DefaultDataTest, AlnumHoldsLetterAndDigitWords) {
    for (const char* w : {"mp3", "5g", "b2b", "3d", "U盘", "B超", "c++"})
        EXPECT_GE(lookup(w, ws::WsDictSet::kAlnum).first, 0) << w;
    EXPECT_EQ(lookup("北京", ws::WsDictSet::kAlnum).first, -1);
    EXPECT_EQ(lookup("mp3", ws::WsDictSet::kBase).first, -1);
}

TEST_F(DefaultDataTest, SegmenterMasksMatchPrefixes) {
    const std::string k = key("北京大学生");
    ws::TrieBase::MatchInfo out[32];
    const int n = set.matchAll(k.data(), static_cast<unsigned>(k.size()), out, 32, 5);
    std::vector<int> ends;
    for (int i = 0; i < n; ++i) ends.push_back((out[i].pos + 1) / 2);
    EXPECT_EQ(ends, (std::vector<int>{1, 2, 4}));  // 北 北京 北京大学
}

}  // namespace
