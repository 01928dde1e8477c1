// The unigram lattice over small dictionaries compiled here, driven pass by
// pass the way the segmenter core drives it.
#include "ws/algo/wsUnigramSegmenter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "DataPaths.h"
#include "support/AllocationCounter.h"
#include "support/DictionaryFiles.h"
#include "support/TempDir.h"
#include "ws/algo/wsNumberRecognizer.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/dict/wsCoreDict.h"
#include "ws/dict/wsDictSet.h"
#include "wsTextUtil.h"

namespace {

using ws::TextSegmentation;
using ws::UnigramSegmenter;

class UnigramSegmenterTest : public ::testing::Test {
protected:
    void SetUp() override {
        compile("base", "北京 100 ns\n北京大学 50 nt\n大学 80 n\n学生 60 n\n研究 10 v\n"
                        "研究生 10 n\n生命 10 n\n命 10 n\n十五 20 m\n打印 30 v\n");
        compile("alnum", "3d 40 nz\nmp3 40 nz\n");
        writeLongWords(dir.file("long.dict"));
        ASSERT_EQ(dicts.loadDict(dir.file("base.dict"), dir.file("alnum.dict"),
                                 {dir.file("long.dict")}),
                  0);
        for (unsigned short prop : {ws::WS_PROPERTY_NUM, ws::WS_PROPERTY_LET,
                                    ws::WS_PROPERTY_LETNUM, ws::WS_PROPERTY_CHINESE_NUM})
            seg.addNewWordBuffer(prop, 0.0f);
        ASSERT_EQ(numbers.init(ZEG_NUMERIC_RULE_FILE, 0, 1, 2, 3), 0);
        // ln(total frequency) is read when the segmenter is built.
        segmenter.reset(new UnigramSegmenter(&dicts));
    }

    void compile(const std::string& name, const std::string& words) {
        ASSERT_EQ(zeg_test::compileDictionary(dir, name, words), "");
    }

    // A user dictionary of 丁 x 64 and 丁 x 65, longer than word lists allow.
    static void writeLongWords(const std::string& path) {
        ws::WsCoreDict dict;
        std::vector<unsigned short> key(65, u'丁');
        std::vector<unsigned char> value = ws::WsCoreDict::encodeValue({}, {}, {}, nullptr, 0);
        for (unsigned len : {64u, 65u}) {
            float weight = std::log(5.0f);
            ASSERT_GT(dict.add(key.data(), len, &weight, value.data(),
                               static_cast<unsigned>(value.size())),
                      0);
        }
        dict.setTotalFreq(10);
        ASSERT_EQ(dict.writeDict(path.c_str()), 0);
    }

    // Prepares `seg` for `s`, running the numeric recogniser when asked.
    void prepare(const std::u16string& s, bool recognise = true) {
        text = zeg_test::units(s);
        ASSERT_TRUE(seg.init(text.data(), text.data(), text.data(),
                             static_cast<unsigned>(text.size())));
        if (recognise) numbers.doRecognize(seg);
    }

    // The cells of seg.result as "word/word".
    std::string cells() const {
        std::string out;
        for (unsigned p = 0; p < seg.textLen; p += seg.result.cells[p].len)
            out += (p ? "/" : "") + zeg_test::utf8(seg.text + p, seg.result.cells[p].len);
        return out;
    }

    // The positions of the dictionary pass as "word/word".
    std::string positions() const {
        std::string out;
        for (unsigned p = 0; p < seg.textLen; p += seg.resultByDict.positions[p].len)
            out += (p ? "/" : "") + zeg_test::utf8(seg.text + p, seg.resultByDict.positions[p].len);
        return out;
    }

    std::string full(const std::u16string& s) {
        prepare(s);
        EXPECT_EQ(unigram().doSegment(seg, 1, 0), 1);
        return cells();
    }

    double logTotal() const { return std::log(dicts.getTotalFreq()); }

    zeg_test::TempDir dir;
    ws::WsDictSet dicts;
    TextSegmentation seg;
    ws::NumberRecognizer numbers;
    std::unique_ptr<UnigramSegmenter> segmenter;
    UnigramSegmenter& unigram() { return *segmenter; }
    std::vector<unsigned short> text;
};

TEST_F(UnigramSegmenterTest, CharactersThatStartNoWordAreSinglesScoredLnHalf) {
    prepare(u"龘龘龘");
    unigram().doSegment(seg, 1, 0);
    EXPECT_EQ(cells(), "龘/龘/龘");
    EXPECT_EQ(seg.result.cells[1].wordId, -1);
    const double one = std::log(0.5) - logTotal();
    EXPECT_DOUBLE_EQ(seg.resultByDict.scores[3], one + one + one);
    EXPECT_EQ(seg.resultByDict.prev[3], 2u);
}

TEST_F(UnigramSegmenterTest, HighestProductOfFrequenciesWins) {
    // 北京大学 (50) beats 北京 (100) x 大学 (80) once each word pays the total.
    EXPECT_EQ(full(u"北京大学生"), "北京大学/生");
    EXPECT_GE(seg.result.cells[0].wordId, 0);
    EXPECT_NE(seg.result.cells[0].value, nullptr);
    // 大 starts 大学, so it has no single-character edge: 大学/生, not 大/学生.
    EXPECT_EQ(full(u"大学生"), "大学/生");
}

TEST_F(UnigramSegmenterTest, EqualScoresKeepTheCutFoundFirst) {
    // 研究/生命 and 研究生/命 score the same; node 4 is reached first from 生.
    EXPECT_EQ(full(u"研究生命"), "研究/生命");
    prepare(u"研究生命");
    unigram().doSegment(seg, 1, 1);
    EXPECT_EQ(positions(), "研究/生命");
}

TEST_F(UnigramSegmenterTest, WordsOf65CharactersAreLeftUnrecorded) {
    std::u16string word(64, u'丁');
    EXPECT_EQ(full(word).size(), 64u * 3);
    EXPECT_EQ(seg.result.cells[0].len, 64);

    word += u'丁';
    prepare(word);
    unigram().doSegment(seg, 1, 1);
    EXPECT_EQ(seg.resultByDict.prev[65], 0u);  // the 65-character word wins ...
    EXPECT_EQ(seg.resultByDict.positions[0].len, 1);  // ... but is not written down
    EXPECT_EQ(seg.resultByDict.positions[0].value, nullptr);
    EXPECT_EQ(seg.resultByDict.valid, 1u);
    prepare(word);
    unigram().doSegment(seg, 1, 0);
    EXPECT_EQ(seg.result.cells[0].len, 1);
    EXPECT_EQ(seg.result.cells[0].wordId, -1);
    EXPECT_EQ(seg.getSegResultWordNum(), 65u);
}

TEST_F(UnigramSegmenterTest, RecognisedRunsBecomeNewWords) {
    EXPECT_EQ(full(u"2024大学"), "2024/大学");
    EXPECT_EQ(seg.result.cells[0].prop, ws::WS_PROPERTY_NUM);
    EXPECT_EQ(seg.result.cells[0].wordId, -1);
    EXPECT_EQ(seg.result.cells[4].prop, ws::WS_PROPERTY_WORD);
    EXPECT_EQ(full(u"abc北京"), "abc/北京");
    EXPECT_EQ(seg.result.cells[0].prop, ws::WS_PROPERTY_LET);
    // A single character is never a new-word edge, yet it takes the type.
    EXPECT_EQ(full(u"5大学"), "5/大学");
    EXPECT_EQ(seg.result.cells[0].prop, ws::WS_PROPERTY_NUM);
    EXPECT_EQ(seg.result.cells[0].len, 1);
}

TEST_F(UnigramSegmenterTest, RunsCoveringAnAlnumWordBecomeThatWord) {
    // 3 (number) then d (letters): exactly the alnum word 3d, typed LETNUM.
    EXPECT_EQ(full(u"3d打印"), "3d/打印");
    const auto& cell = seg.result.cells[0];
    EXPECT_EQ(cell.prop, ws::WS_PROPERTY_LETNUM);
    EXPECT_EQ(cell.wordId, dicts.getWordId(text.data(), 2, ws::WsDictSet::kAlnum));
    EXPECT_NE(cell.value, nullptr);
    EXPECT_EQ(full(u"mp3打印"), "mp3/打印");
    EXPECT_EQ(seg.result.cells[0].prop, ws::WS_PROPERTY_LETNUM);
    // A longer run is not covered: it stays a new word of its own kind.
    EXPECT_EQ(full(u"3dx打印").substr(0, 4), "3dx/");
    EXPECT_EQ(seg.result.cells[0].wordId, -1);
}

TEST_F(UnigramSegmenterTest, CombinationPassAddsNewWordsToTheDictionaryCut) {
    prepare(u"北京2024大学生", false);
    unigram().doSegment(seg, 1, 1);
    EXPECT_EQ(seg.resultByDict.valid, 1u);
    EXPECT_EQ(positions(), "北京/2/0/2/4/大学/生");
    EXPECT_EQ(cells(), "北/京/2/0/2/4/大/学/生");  // the dictionary pass leaves the cells
    numbers.doRecognize(seg);
    unigram().doSegment(seg, 1, 2);
    EXPECT_EQ(cells(), "北京/2024/大学/生");
    EXPECT_EQ(seg.result.cells[2].prop, ws::WS_PROPERTY_NUM);
}

TEST_F(UnigramSegmenterTest, WorkArraysGrowOnceAndAreReused) {
    EXPECT_EQ(unigram().capacity(), UnigramSegmenter::kInitialCapacity);
    std::u16string longText;
    while (longText.size() < 3000) longText += u"北京大学生2024";
    full(longText);
    EXPECT_EQ(unigram().capacity(), static_cast<int>(longText.size()) + 2);
    const size_t before = zeg_test::allocationCount();
    unigram().doSegment(seg, 1, 0);
    unigram().doSegment(seg, 1, 1);
    unigram().doSegment(seg, 1, 2);
    EXPECT_EQ(zeg_test::allocationCount(), before);
    EXPECT_EQ(cells().rfind("北京大学/生/2024/北京大学/生", 0), 0u);
}

}  // namespace
