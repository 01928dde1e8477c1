#include "ws/dict/wsCharFreqDict.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "support/AllocationCounter.h"
#include "support/TempDir.h"
#include "ws/core/wsLogger.h"
#include "ws/core/wsWsLogger.h"

using testing::HasSubstr;
using ws::CharFreqDict;

namespace {

const float kSixth = 1.0f / 6;

class CharFreqDictTest : public ::testing::Test {
protected:
    // Loads `text`, returning what was logged.
    std::string load(const std::string& text, bool expected) {
        const std::string path = dir.write("charfreq.txt", text);
        testing::internal::CaptureStderr();
        EXPECT_EQ(dict.loadText(path.c_str()), expected);
        return testing::internal::GetCapturedStderr();
    }

    zeg_test::TempDir dir;
    CharFreqDict dict;
};

TEST_F(CharFreqDictTest, CountsBecomeShareOfTheTotal) {
    EXPECT_EQ(load("的\t120\t30\t5\t41\n", true), "");
    const ws::CharFreqEntry& e = dict[u'的'];
    EXPECT_EQ(e.character, u'的');
    EXPECT_EQ(e.aloneCount, 120);
    EXPECT_EQ(e.inWordCount, 76);
    EXPECT_FLOAT_EQ(dict.getAloneCharProb(u'的'), 120.0f / 196);
    EXPECT_FLOAT_EQ(dict.getFirstCharProb(u'的'), 30.0f / 196);
    EXPECT_FLOAT_EQ(dict.getMiddleCharProb(u'的'), 5.0f / 196);
    EXPECT_FLOAT_EQ(dict.getFinalCharProb(u'的'), 41.0f / 196);
    EXPECT_FLOAT_EQ(dict.getCharInWordProb(u'的'), 76.0f / 196);
    EXPECT_FLOAT_EQ(dict.getFinalCharProb("的确"), 41.0f / 196);
    EXPECT_TRUE(e.text.empty());
}

// Plain lines are read in one pass, the rest field by field: the counts
// agree at the border between the two (nine and ten digits, signs, extra
// fields, carriage returns, leading blanks).
TEST_F(CharFreqDictTest, EveryLineShapeGivesTheSameCounts) {
    struct Case {
        const char* line;
        int counts[4];
    } const cases[] = {
        {"的 999999999 1 22 333\n", {999999999, 1, 22, 333}},
        {"的 1000000000 2147483647 2147483648 0\n", {1000000000, 2147483647, 2147483647, 0}},
        {"的\t+7\t-7\t007\t5x\n", {7, -7, 7, 5}},
        {"的 1 2 3 4 extra\n", {1, 2, 3, 4}},
        {"的 1 2 3 4\r\n", {1, 2, 3, 4}},
        {" \t的  1 \t2 3 4", {1, 2, 3, 4}},
        {"的 1 2 3 \v4\n", {1, 2, 3, 4}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(load(c.line, true), "") << c.line;
        const ws::CharFreqEntry& e = dict[u'的'];
        EXPECT_EQ((std::vector<int>{e.aloneCount, e.firstCount, e.middleCount, e.finalCount}),
                  std::vector<int>(c.counts, c.counts + 4))
            << c.line;
    }
}

TEST_F(CharFreqDictTest, CharactersWithoutALineGetTheDefaults) {
    EXPECT_EQ(load("的 1 2 3 4\n", true), "");
    for (unsigned short c : {u'中', u'\0', u'\uFFFF'}) {
        EXPECT_EQ(dict.getAloneCharProb(c), 0.5f);
        EXPECT_EQ(dict.getCharInWordProb(c), 0.5f);
        EXPECT_EQ(dict.getFirstCharProb(c), kSixth);
        EXPECT_EQ(dict.getMiddleCharProb(c), kSixth);
        EXPECT_EQ(dict.getFinalCharProb(c), kSixth);
        EXPECT_FALSE(dict.charInWord(c));
    }
    EXPECT_EQ(dict.getAloneCharProb(""), 0.5f);
    EXPECT_EQ(dict.getFirstCharProb("\x80"), kSixth);
    EXPECT_EQ(dict[0xFFFF].character, 0);
    EXPECT_EQ(dict[0x12345].character, 0);
}

TEST_F(CharFreqDictTest, ThresholdDecidesCharInWordStrictly) {
    load("是 1 1 1 2\n", true);  // in-word 0.8 exactly
    EXPECT_EQ(dict.getThreshold(), 0.8f);
    EXPECT_FALSE(dict.charInWord(u'是'));
    dict.setThreshold(0.79f);
    EXPECT_TRUE(dict.charInWord(u'是'));
    dict.setThreshold(0.4f);
    EXPECT_TRUE(dict.charInWord(u'中'));
}

TEST_F(CharFreqDictTest, ABadLineFailsTheLoadButKeepsEarlierLines) {
    const std::string path = dir.file("charfreq.txt");
    EXPECT_THAT(load("中 1 2 3 4\n国 1 2 3\n大 1 1 1 1\n", false),
                HasSubstr("wrong format: " + path));
    EXPECT_EQ(dict.getAloneCharProb(u'中'), 0.1f);
    EXPECT_EQ(dict[u'大'].character, 0);
    EXPECT_THAT(load("\n", false), HasSubstr("wrong format"));
    EXPECT_THAT(load("\x80 1 2 3 4\n", false), HasSubstr("utf8 to utf16 fail: " + path));
    EXPECT_THAT(load(std::string("\0 1 2 3 4\n", 10), false), HasSubstr("utf8 to utf16 fail"));
    EXPECT_THAT(load("\xEF\xBF\xBF 1 2 3 4\n", false), HasSubstr("U+FFFF"));
}

TEST_F(CharFreqDictTest, DamagedFilesNeverReadPastTheTable) {
    // A line over 1023 bytes is read as two, the second too short.
    EXPECT_THAT(load("长 1 2 3 " + std::string(1100, '4') + "\n", false),
                HasSubstr("wrong format"));
    EXPECT_EQ(dict[u'长'].finalCount, 2147483647);
    // Numbers that are no numbers read as far as they go.
    EXPECT_EQ(load("乱 x 9y -3 99999999999\n", true), "");
    EXPECT_EQ(dict[u'乱'].aloneCount, 0);
    EXPECT_EQ(dict[u'乱'].firstCount, 9);
    EXPECT_EQ(dict[u'乱'].middleCount, -3);
    EXPECT_EQ(dict[u'乱'].finalCount, 2147483647);
    std::string binary;
    for (int i = 0; i < 4096; ++i) binary += static_cast<char>(i * 7 % 256);
    load(binary, false);
    EXPECT_EQ(load("", true), "");
}

TEST_F(CharFreqDictTest, UnopenableFilesAreReported) {
    testing::internal::CaptureStderr();
    EXPECT_FALSE(dict.loadText(dir.file("missing.txt").c_str()));
    EXPECT_FALSE(dict.loadText(dir.mkdir("folder").c_str()));
    EXPECT_FALSE(dict.loadText(nullptr));
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_THAT(err, HasSubstr("wsCharFreqDict:173"));
    EXPECT_THAT(err, HasSubstr("cannot open file: " + dir.file("missing.txt")));
    EXPECT_THAT(err, HasSubstr("cannot open file: " + dir.file("folder")));
}

TEST(CharFreqDictMemory, WithoutATableLookupsGiveDefaultsAndLoadsFail) {
    zeg_test::TempDir dir;
    const std::string path = dir.write("charfreq.txt", "的 1 2 3 4\n");
    std::optional<CharFreqDict> dict;
    testing::internal::CaptureStderr();
    {
        zeg_test::FailingAllocations failing;
        dict.emplace();
    }
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr("wsCharFreqDict:34: Out of Memory"));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(dict->loadText(path.c_str()));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("Out of Memory"));
    EXPECT_EQ(dict->getAloneCharProb(u'的'), 0.5f);
    EXPECT_EQ((*dict)[u'的'].character, 0);
}

}  // namespace
