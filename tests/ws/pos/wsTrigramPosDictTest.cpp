// The word-tag dictionary: trained lists, guesses for unknown words, the
// patch and type-id files, and damaged files.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "PosTestModel.h"
#include "support/DictionaryFiles.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/dict/wsDictSet.h"
#include "ws/pos/wsTagInfo.h"
#include "ws/pos/wsTrigramPosDict.h"

namespace {

using Tags = std::vector<std::pair<std::string, float>>;

// Scores are computed in double, then stored as float.
float ln(double x) { return static_cast<float>(std::log(x)); }

std::basic_string<unsigned short> utf16(const std::string& s) {
    const auto u = EncodeConverter::utf8ToUtf16(EncodeConverter::Utf8String(s.begin(), s.end()));
    return std::basic_string<unsigned short>(u.begin(), u.end());
}

class PosDictTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing::internal::CaptureStdout();
        path = zeg_test::writePosDict(dir, 0);
        testing::internal::GetCapturedStdout();
        ASSERT_FALSE(path.empty());
        ASSERT_EQ(dict.loadDict(path.c_str()), 0);
    }

    Tags tags(const char* list) const {
        Tags out;
        for (int i = 0; i < ws::TrigramPosDict::getNumTags(list); ++i)
            out.emplace_back(dict.getTagName(ws::TrigramPosDict::getTagIdAt(list, i)),
                             ws::TrigramPosDict::getProbAt(list, i));
        return out;
    }
    Tags lookUp(const std::string& word, unsigned short prop = ws::WS_PROPERTY_WORD) {
        const auto w = utf16(word);
        ws::WORD_T rec(w.data(), static_cast<unsigned>(w.size()), nullptr, 0, prop, 0, -1, nullptr,
                       0, 0, -1);
        return tags(dict.getWordInfoBuf(w.data(), static_cast<int>(w.size()), &rec));
    }

    zeg_test::TempDir dir;
    std::string path;
    ws::TrigramPosDict dict{nullptr};
};

TEST_F(PosDictTest, KnownWordsKeepTheirTrainedLists) {
    EXPECT_EQ(lookUp("北京"), (Tags{{"ns", ln(0.5)}}));
    EXPECT_EQ(lookUp("学习"), (Tags{{"v", ln(0.2)}, {"n", ln(0.05)}}));
    EXPECT_EQ(lookUp("好"), (Tags{{"a", ln(0.1)}, {"v", ln(0.1)}}));
    EXPECT_EQ(tags(dict.getWordInfoBuf("的", 3, nullptr)), (Tags{{"u", ln(0.8)}}));
}

TEST_F(PosDictTest, UnknownWordsAreGuessed) {
    const Tags defaults{{"n", 10}, {"ns", -7}, {"nt", -9}, {"nr", -11}, {"v", -10}, {"a", -11}};
    const struct {
        const char* word;
        unsigned short prop;
        Tags expected;
    } cases[] = {
        {"未知之物", ws::WS_PROPERTY_WORD, defaults},
        {"某某某", ws::WS_PROPERTY_PER_ME, {{"nr", 10}}},
        {"某某某", ws::WS_PROPERTY_ORG, {{"nt", 10}}},
        {"某某某", ws::WS_PROPERTY_CHINESE_NUM, {{"m", 10}}},
        {"，", ws::WS_PROPERTY_WORD, {{"w", 0}}},
        {"１９．５％", ws::WS_PROPERTY_WORD, {{"m", 0}}},
        {"１９９８年", ws::WS_PROPERTY_WORD, {{"t", 0}}},
        {"ABC", ws::WS_PROPERTY_WORD, {{"nx", 0}}},
        {"泽民", ws::WS_PROPERTY_WORD, {{"nr", 0}}},
        {"杨宋镇", ws::WS_PROPERTY_WORD, {{"ns", 0}}},
    };
    for (const auto& c : cases) EXPECT_EQ(lookUp(c.word, c.prop), c.expected) << c.word;
}

TEST_F(PosDictTest, SetTagIdAddsToListedTagsAndInsertsAfterTies) {
    dict.guessWordInfo(nullptr, 0, nullptr);  // the six defaults
    const char* list = dict.guessWordInfo(nullptr, 0, nullptr);
    EXPECT_EQ(dict.setTagId(dict.getTagId("v"), 25.0f), 6);  // -10 + 25 = 15 > 10
    EXPECT_EQ(dict.setTagId(dict.getTagId("u"), -9.0f), 7);  // after nt's -9
    EXPECT_EQ(
        tags(list),
        (Tags{{"v", 15}, {"n", 10}, {"ns", -7}, {"nt", -9}, {"u", -9}, {"nr", -11}, {"a", -11}}));
}

TEST_F(PosDictTest, TheLastThreeGuessesStayValid) {
    const auto a = utf16("一一"), b = utf16("ABC"), c = utf16("，"), d = utf16("某物");
    const char* first = dict.guessWordInfo(a.data(), 2, nullptr);
    dict.guessWordInfo(b.data(), 3, nullptr);
    dict.guessWordInfo(c.data(), 1, nullptr);
    EXPECT_EQ(tags(first), (Tags{{"m", 0}}));
    dict.guessWordInfo(d.data(), 2, nullptr);
    EXPECT_EQ(tags(first), (Tags{{"nr", 0}}));
}

TEST_F(PosDictTest, DictionaryPropertiesAndThePatchDecide) {
    ASSERT_EQ(zeg_test::compileDictionary(dir, "base", "东京 500 ns\n跑步 30 v\n"), "");
    ASSERT_EQ(zeg_test::compileDictionary(dir, "alnum", "mp3 5 nz\n"), "");
    ws::WsDictSet set;
    ASSERT_EQ(set.loadDict(dir.file("base.dict"), dir.file("alnum.dict"), {}), 0);
    ws::TrigramPosDict withSet(&set);
    ASSERT_EQ(withSet.loadDict(path.c_str()), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(
        withSet.loadTypeId2TagNameFile(dir.write("map.txt", "1 ns\n2 v\n3 zz\nfoo\n").c_str()), 0);
    EXPECT_EQ(withSet.loadTypeId2TagNameFile(dir.file("absent").c_str()), -1);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("map.txt:3: "), std::string::npos);
    EXPECT_NE(err.find("map.txt:4: "), std::string::npos);
    EXPECT_NE(err.find("can not open TypeIdTag File"), std::string::npos);
    EXPECT_EQ(withSet.typeMapSize(), 2u);
    const auto tokyo = utf16("东京"), beijing = utf16("北京");
    EXPECT_EQ(tags(withSet.getWordInfoBuf(tokyo.data(), 2, nullptr)), (Tags{{"ns", ln(501.0)}}));

    ws::BaseDict patch;
    float nr = static_cast<float>(dict.getTagId("nr"));
    patch.add(reinterpret_cast<const char*>(beijing.data()), 4, nr);
    ASSERT_EQ(patch.writeDict(dir.file("patch.dict").c_str()), 0);
    EXPECT_EQ(withSet.loadPatchDict(dir.file("patch.dict").c_str()), 0);
    EXPECT_EQ(tags(withSet.getWordInfoBuf(beijing.data(), 2, nullptr)), (Tags{{"nr", 0}}));
    EXPECT_NE(withSet.loadPatchDict(dir.file("absent").c_str()), 0);
}

TEST_F(PosDictTest, DamagedFilesFailToLoadAndNeverCrash) {
    const std::string good = zeg_test::TempDir::read(path);
    const size_t dAt = 520 + 28 + 44 + 4 * static_cast<size_t>(ws::TagInfo::calcBufLen(11));
    std::vector<uint32_t> buf(good.size() / 4 + 1);
    char* bytes = reinterpret_cast<char*>(buf.data());
    std::memcpy(bytes, good.data(), good.size());
    const unsigned size = static_cast<unsigned>(good.size());
    ws::TrigramPosDict d(nullptr);
    ASSERT_EQ(d._loadFromMem(bytes, size), 0);
    EXPECT_EQ(tags(d.getWordInfoBuf("学习", 6, nullptr)), lookUp("学习"));
    EXPECT_EQ(d._loadFromMem(bytes, static_cast<unsigned>(dAt) + 3), -2);
    const int32_t zero = 0, huge = 1 << 30;
    std::memcpy(bytes + dAt, &zero, 4);
    EXPECT_EQ(d._loadFromMem(bytes, size), -4);
    std::memcpy(bytes + dAt, &huge, 4);
    EXPECT_EQ(d._loadFromMem(bytes, size), -2);
    for (unsigned cut = 0; cut < size; cut += 1 + cut / 64) {
        std::memcpy(bytes, good.data(), good.size());
        EXPECT_NE(d._loadFromMem(bytes, cut), 0) << cut;
    }
    // Flipped bytes in the list area and trie: whatever loads must look up safely.
    std::mt19937 rng(static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed()));
    for (int round = 0; round < 200; ++round) {
        std::memcpy(bytes, good.data(), good.size());
        for (int k = 0; k < 4; ++k) bytes[dAt + rng() % (size - dAt)] = static_cast<char>(rng());
        if (d._loadFromMem(bytes, size) != 0) continue;
        for (const char* w : {"北京", "学习", "好", "的", "未知"})
            ASSERT_GE(ws::TrigramPosDict::getNumTags(
                          d.getWordInfoBuf(w, static_cast<int>(std::strlen(w)), nullptr)),
                      1);
    }
}

}  // namespace
