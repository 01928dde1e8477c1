// Keys under the normaliser's default data: the faults users met first.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "support/DefaultData.h"
#include "support/ToolRun.h"

namespace {

class DefaultKeysTest : public ::testing::Test {
protected:
    void SetUp() override {
#if !ZEG_DICTIONARY_CASES
        GTEST_SKIP() << "no default dictionaries";
#endif
    }

    // One line of output per line of `lines`.
    std::vector<std::string> lines(const char* tool, const std::string& config,
                                   const std::vector<std::string>& in) {
        std::string text;
        for (const auto& line : in) text += line + "\n";
        const zeg_test::ToolRun r = zeg_test::runTool(dir, tool, "--config " + config, text);
        EXPECT_EQ(r.status, 0) << r.err;
        std::vector<std::string> out;
        std::istringstream stream(r.out);
        for (std::string line; std::getline(stream, line);) out.push_back(line);
        return out;
    }
    std::vector<std::string> keys(const std::vector<std::string>& queries) {
        return lines(ZEG_NORMALIZE_TOOL, ZEG_DEFAULT_CONFIG, queries);
    }

    zeg_test::TempDir dir;
};

TEST_F(DefaultKeysTest, OneMeaningOneKey) {
    const std::vector<std::vector<std::string>> groups = {
        {"的士电话", "出租车电话", "计程车 电话"},
        {"筆電推薦", "笔记本电脑 推荐", "手提電腦推薦"},
        {"瞭解", "了解"},
        {"反覆", "反复"},
        {"藉口", "借口"},
        {"彷彿", "仿佛"},
        {"揹包", "背包"},
        {"免费 软件 下载", "免费软件下载", "免費軟體下載！"},
        {"北京到上海", "上海到北京"},
        {"Wi-Fi 密码", "wifi密码", "WIFI 密码"},
        {"iPhone 13 价格", "13 iphone 价格", "价格 IPHONE 13"},
    };
    for (const auto& group : groups) {
        const std::vector<std::string> got = keys(group);
        ASSERT_EQ(got.size(), group.size());
        for (size_t i = 1; i < got.size(); ++i) EXPECT_EQ(got[i], got[0]) << group[i];
    }
}

TEST_F(DefaultKeysTest, KeysKeepTheWordsOfTheQuery) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"目的地", "目的地"}, {"吗啡", "吗啡"}, {"呢子大衣", "呢子大衣"}, {"哦哦", "哦哦"},
        {"番茄小说", "番茄小说"}, {"北大青鸟", "北大青鸟"}, {".net 下载", ".net下载"},
        {"日本", "日本"}, {"本日", "本日"},
        {"iphone13价格", "价格iphone13"},  // a Latin run is one word; a space would split it
    };
    std::vector<std::string> queries;
    for (const auto& c : cases) queries.push_back(c.first);
    const std::vector<std::string> got = keys(queries);
    ASSERT_EQ(got.size(), cases.size());
    for (size_t i = 0; i < cases.size(); ++i) EXPECT_EQ(got[i], cases[i].second) << cases[i].first;
}

// A synonym fires only on a word the segmenter keeps whole.
TEST_F(DefaultKeysTest, EverySynonymWordIsOneWord) {
    std::vector<std::string> words;
    std::istringstream list(zeg_test::TempDir::read(ZEG_DATA_DIR "/synonym_words.txt"));
    for (std::string line; std::getline(list, line);)
        words.push_back(line.substr(0, line.find(' ')));
    ASSERT_GT(words.size(), 30u);
    const std::vector<std::string> cut =
        lines(ZEG_SEGMENT_TOOL, ZEG_DATA_DIR "/normalizer-segmenter.conf", words);
    ASSERT_EQ(cut.size(), words.size());
    for (size_t i = 0; i < words.size(); ++i) EXPECT_EQ(cut[i], words[i] + " ");
}

TEST_F(DefaultKeysTest, NoSampleQueryLosesItsKey) {
    std::vector<std::string> queries;
    std::istringstream list(zeg_test::TempDir::read(ZEG_DATA_DIR "/sample-queries.txt"));
    for (std::string line; std::getline(list, line);) queries.push_back(line);
    for (const std::string& key : keys(queries)) EXPECT_NE(key, "");
}

}  // namespace
