#include "ws/dict/wsDictSet.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "ws/core/wsWsLogger.h"
#include "wsDictTestUtil.h"

using ws::WsDictSet;
using zeg_test::TestWord;
using zeg_test::u16;

namespace {

// Every record carries G = P = S = 0 and a user value naming where it
// comes from, so that each answer shows which dictionary gave it.
TestWord w(const std::string& text, float weight, const std::string& from) {
    return TestWord{text, weight, std::string(3, '\0') + from};
}

std::string fromOfRecord(const char* record) {
    if (record == nullptr) return "-";
    return std::string(record + 8 + 3, ws::DATDict::recordLength(record) - 3);
}

class WsDictSetTest : public ::testing::Test {
protected:
    void SetUp() override {
        base = zeg_test::writeCoreDict(dir, "base.dict",
                                       {w("北京", 5, "base"), w("北京大学", 6, "base"),
                                        w("大", 1, "base"), w("学生", 1, "base")},
                                       100);
        alnum = zeg_test::writeCoreDict(dir, "alnum.dict",
                                        {w("mp3", 1, "alnum"), w("北京", 9, "alnum"),
                                         w("北", 1, "alnum")},
                                        10);
        user1 = zeg_test::writeCoreDict(dir, "u1.dict",
                                        {w("北京大学", 2, "u1"), w("清华", 1, "u1"),
                                         w("大学", 3, "u1")},
                                        1);
        user2 = zeg_test::writeCoreDict(
            dir, "u2.dict",
            {w("北京大学", 3, "u2"), w("清华", 1, "u2"), w("大学", 2, "u2"), w("海洋", 1, "u2")},
            2);
        ASSERT_EQ(set.loadDict(base, alnum, {user1, user2}), 0);
    }

    std::string fromOfId(int id) { return fromOfId(set, id); }
    static std::string fromOfId(const WsDictSet& in, int id) {
        unsigned char* usr = nullptr;
        const int n = in.getUsrValue(id, &usr);
        return n > 0 ? std::string(reinterpret_cast<char*>(usr), static_cast<size_t>(n)) : "-";
    }

    std::string matchFrom(const std::string& word, unsigned char mask) {
        const std::string key = u16(word);
        return fromOfRecord(set.match(key.data(), static_cast<unsigned>(key.size()), mask));
    }

    std::string idFrom(const std::string& word, unsigned char mask) {
        const std::string key = u16(word);
        std::vector<unsigned short> units(key.size() / 2);
        std::memcpy(units.data(), key.data(), key.size());
        return fromOfId(set.getWordId(units.data(), static_cast<unsigned>(units.size()), mask));
    }

    // "pos:from" for each match, from both overloads; a "!" marks a record
    // that is not the one of the match's id.
    std::string matchAllFrom(const std::string& text, unsigned char mask, unsigned max = 64) {
        return matchAllFrom(set, text, mask, max);
    }
    static std::string matchAllFrom(const WsDictSet& in, const std::string& text,
                                    unsigned char mask, unsigned max = 64) {
        const std::string key = u16(text);
        const unsigned len = static_cast<unsigned>(key.size());
        ws::TrieBase::MatchInfo out[64], alone[64];
        const char* records[64];
        const int n = in.matchAll(key.data(), len, out, records, max, mask);
        std::string result;
        for (int i = 0; i < n; ++i) {
            const std::string from = fromOfId(in, out[i].value);
            result += std::to_string(out[i].pos) + ":" + from;
            result += fromOfRecord(records[i]) == from ? " " : "! ";
        }
        const int m = in.matchAll(key.data(), len, alone, max, mask);
        EXPECT_EQ(m, n);
        for (int i = 0; i < std::min(m, n); ++i) EXPECT_EQ(alone[i].value, out[i].value);
        return result;
    }

    zeg_test::TempDir dir;
    std::string base, alnum, user1, user2;
    WsDictSet set;
};

TEST_F(WsDictSetTest, IdsAreOffsetByTheDictionariesBefore) {
    EXPECT_EQ(set.offsets(), (std::vector<int>{0, 1024, 2048, 3072, 4096}));
    EXPECT_EQ(set.getTotalFreq(), 113.0);
    int local = -1;
    EXPECT_EQ(set.whichDict(1024 + 5, local), set.alnumDict());
    EXPECT_EQ(local, 5);
    EXPECT_EQ(set.whichDict(0, local), set.baseDict());
    EXPECT_EQ(set.whichDict(4096, local), nullptr);
    EXPECT_EQ(set.whichDict(-1, local), nullptr);
    unsigned char* value = reinterpret_cast<unsigned char*>(this);
    float weight = 0;
    EXPECT_EQ(set.getValue(4096, &value, weight), 0);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(set.getValue(-5, &value, weight), 0);
    EXPECT_EQ(fromOfId(4096), "-");
}

TEST_F(WsDictSetTest, UserDictionariesChooseByWeight) {
    // 北京大学: weights 2 and 3; 大学: 3 and 2.
    for (unsigned char mask : {4, 5, 7}) {
        EXPECT_EQ(matchFrom("北京大学", mask), "u2");
        EXPECT_EQ(idFrom("北京大学", mask), "u2");
        EXPECT_EQ(matchFrom("大学", mask), "u1");
        EXPECT_EQ(idFrom("大学", mask), "u1");
    }
    EXPECT_EQ(matchAllFrom("北京大学", 4), "7:u2 ");
    EXPECT_EQ(matchAllFrom("大学", 4), "3:u1 ");
}

TEST_F(WsDictSetTest, EqualUserWeightsTakeTheFirstOneExceptInMatchAll) {
    EXPECT_EQ(matchFrom("清华", 4), "u1");
    EXPECT_EQ(idFrom("清华", 4), "u1");
    EXPECT_EQ(matchAllFrom("清华", 4), "3:u2 ");
}

TEST_F(WsDictSetTest, UserWordsWinOverBaseWordsOverAlnumWords) {
    EXPECT_EQ(matchAllFrom("北京大学生", 5), "3:base 7:u2 ");
    EXPECT_EQ(matchAllFrom("北京大学生", 7), "1:alnum 3:base 7:u2 ");
    EXPECT_EQ(matchAllFrom("北京大学生", 1), "3:base 7:base ");
    EXPECT_EQ(matchAllFrom("北京", 3), "1:alnum 3:base ");
    EXPECT_EQ(matchAllFrom("北京", 2), "1:alnum 3:alnum ");
    EXPECT_EQ(matchFrom("北京大学", 1), "base");
    EXPECT_EQ(matchFrom("北京", 3), "base");
    EXPECT_EQ(idFrom("北京", 3), "base");
    EXPECT_EQ(matchFrom("北京", 2), "alnum");
    EXPECT_EQ(idFrom("北", 3), "alnum");
    EXPECT_EQ(idFrom("北", 1), "-");
    EXPECT_EQ(idFrom("清华", 3), "-");
    EXPECT_EQ(matchFrom("mp3", 5), "-");
}

// Up to eight dictionaries, tables of first characters and of first
// pairs say which to ask; with more, every one is asked. The answers are
// the same for every key of up to three characters over the words'
// characters, and for a key cut inside its first character.
TEST_F(WsDictSetTest, ManyUserDictionariesGiveTheSameAnswers) {
    const std::string other = zeg_test::writeCoreDict(dir, "other.dict", {w("天", 1, "other")}, 1);
    const std::string short1 = zeg_test::writeCoreDict(
        dir, "short.dict", {w("京", 1, "s"), w("华海", 1, "s"), w("学生会主席", 1, "s")}, 1);
    WsDictSet few, many;
    ASSERT_EQ(few.loadDict(base, alnum, {user1, user2, short1}), 0);
    ASSERT_EQ(many.loadDict(base, alnum, {user1, user2, short1, other, other, other, other}), 0);
    const std::string chars[] = {"北", "京", "大", "学", "生", "清", "华", "海", "m", "p", "3"};
    std::vector<std::string> texts = {"北京大学生", "学生会主席"};
    for (const std::string& a : chars) {
        for (const std::string& b : chars) {
            for (const std::string& c : chars) texts.push_back(a + b + c);
            texts.push_back(a + b);
        }
        texts.push_back(a);
    }
    for (unsigned char mask = 1; mask < 8; ++mask) {
        for (const std::string& text : texts)
            ASSERT_EQ(matchAllFrom(many, text, mask), matchAllFrom(few, text, mask)) << text << mask;
        ws::TrieBase::MatchInfo out[4];
        EXPECT_EQ(many.matchAll("\x17", 1, out, 4, mask), set.matchAll("\x17", 1, out, 4, mask));
    }
    EXPECT_EQ(matchAllFrom("大学", 5), "1:base 3:u1 ");
    EXPECT_EQ(matchAllFrom("大学生", 4), "3:u1 ");
    EXPECT_EQ(matchAllFrom("海洋", 7), "3:u2 ");
    EXPECT_EQ(matchAllFrom("学生", 7), "3:base ");
    EXPECT_EQ(matchAllFrom("mp3", 7), "5:alnum ");
}

TEST_F(WsDictSetTest, ReadersGoThroughTheBaseDictionary) {
    unsigned char* value = nullptr;
    float weight = 0;
    const int id = set.getWordId(reinterpret_cast<const unsigned short*>(u16("大").data()), 1, 1);
    ASSERT_EQ(set.getValue(id, &value, weight), 7);
    EXPECT_EQ(weight, 1.0f);
    std::vector<short> props;
    std::vector<int> gran;
    std::vector<ws::SemItem> sems;
    std::vector<ws::WordType> types;
    EXPECT_EQ(set.getProp(value, props), 0);
    EXPECT_EQ(set.getGran(value, gran), 0);
    EXPECT_EQ(set.getSemItems(value, sems), 0);
    EXPECT_EQ(set.getPropWght(value, types), 0);
    set.clearData();
    EXPECT_EQ(set.getProp(value, props), -1);
    EXPECT_EQ(set.getGran(value, gran), -1);
    EXPECT_EQ(matchAllFrom("北京", 7), "");
    EXPECT_EQ(matchFrom("北京", 7), "-");
    EXPECT_EQ(set.getWordId(reinterpret_cast<const unsigned short*>(u16("大").data()), 1, 7), -1);
}

TEST_F(WsDictSetTest, AFailedLoadLeavesTheSetEmptyAndSaysWhy) {
    testing::internal::CaptureStderr();
    const std::string missing = dir.file("missing.dict");
    EXPECT_EQ(set.loadDict(base, alnum, {user1, missing}), ws::WS_ERR_OPEN_FILE);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("wsDictSet:58: Can not open file '" + missing + "'"), std::string::npos)
        << err;
    EXPECT_FALSE(set.isLoaded());
    EXPECT_EQ(set.userDictCount(), 0u);
    EXPECT_TRUE(set.offsets().empty());
    EXPECT_EQ(matchFrom("北京", 7), "-");

    testing::internal::CaptureStderr();
    EXPECT_EQ(set.loadDict(user1, dir.write("bad", std::string(100, 'x')), {}),
              ws::WS_ERR_VERSION);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(set.baseDict(), nullptr);
    // And it loads again afterwards.
    EXPECT_EQ(set.loadDict(base, alnum, {}), 0);
    EXPECT_EQ(matchFrom("北京", 7), "base");
}

}  // namespace
