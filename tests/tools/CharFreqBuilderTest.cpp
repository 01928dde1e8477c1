#include "tools/CharFreqBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/TempDir.h"
#include "ws/dict/wsCharFreqDict.h"

using testing::HasSubstr;
using zeg_tools::CharFreqBuilder;

namespace {

std::string build(const std::string& words, CharFreqBuilder& builder) {
    zeg_test::TempDir dir;
    std::string error;
    EXPECT_TRUE(builder.addFile(dir.write("dict.txt", words), error)) << error;
    return builder.text();
}

TEST(CharFreqBuilder, CountsEachCharacterByItsPlaceInTheWord) {
    CharFreqBuilder builder;
    EXPECT_EQ(build("中 5 n\n中国 10 ns\n中华人民 3\n国\n华 2\r\n", builder),
              "中\t5\t13\t0\t0\n"
              "人\t0\t0\t3\t0\n"
              "华\t2\t0\t3\t0\n"
              "国\t1\t0\t0\t10\n"
              "民\t0\t0\t0\t3\n");
    EXPECT_EQ(builder.wordsAdded(), 5u);
    EXPECT_EQ(builder.linesSkipped(), 0u);
}

TEST(CharFreqBuilder, FrequencyIsOptionalAndDigitsOnly) {
    CharFreqBuilder builder;
    build("甲 n\n乙\t7\n丙 3.5 n\n丁 0\n戊 99999999999999999999999\n\n \t \n", builder);
    EXPECT_EQ(builder.counts(u'甲').alone, 1u);
    EXPECT_EQ(builder.counts(u'乙').alone, 7u);
    EXPECT_EQ(builder.counts(u'丙').alone, 1u);
    EXPECT_EQ(builder.counts(u'丁').alone, 0u);
    EXPECT_EQ(builder.counts(u'戊').alone, CharFreqBuilder::kMaxCount);
    EXPECT_EQ(builder.wordsAdded(), 5u);
    // A character with no weighted use has no line: the defaults serve it better.
    EXPECT_EQ(builder.text().find("丁"), std::string::npos);
}

TEST(CharFreqBuilder, SkipsWordsTheSegmenterCannotHold) {
    CharFreqBuilder builder;
    const std::string words = std::string("好\n\xF0\x9F\x98\x80好 3\nab\x80 2\n\xEF\xBF\xBF 4\n") +
                              std::string("a\0b 1\n", 6);
    EXPECT_EQ(build(words, builder), "好\t1\t0\t0\t0\n");
    EXPECT_EQ(builder.linesSkipped(), 4u);
}

// What the builder writes, the dictionary reads back.
TEST(CharFreqBuilder, OutputLoadsIntoTheDictionary) {
    zeg_test::TempDir dir;
    CharFreqBuilder builder;
    builder.addLine("的 120");
    builder.addLine("的确 30");
    builder.addLine("目的 41");
    builder.addLine("有的是 5");
    builder.addLine("，");
    builder.addWord({u'大'}, ~0ull);
    builder.addWord({u'大', u'学'}, ~0ull);
    builder.addWord({u'大', u'学'}, 1);
    std::string error;
    const std::string path = dir.file("charfreq.txt");
    ASSERT_TRUE(builder.writeFile(path, error)) << error;
    ws::CharFreqDict dict;
    ASSERT_TRUE(dict.loadText(path.c_str()));
    EXPECT_FLOAT_EQ(dict.getAloneCharProb(u'的'), 120.0f / 196);
    EXPECT_FLOAT_EQ(dict.getCharInWordProb(u'的'), 76.0f / 196);
    EXPECT_FLOAT_EQ(dict.getAloneCharProb(u'，'), 1.0f);
    EXPECT_FLOAT_EQ(dict.getAloneCharProb(u'大'), 0.5f);
    // Counts stop where the dictionary's sums still fit in 32 bits.
    EXPECT_EQ(builder.counts(u'大').alone, CharFreqBuilder::kMaxCount);
    EXPECT_EQ(dict[u'大'].inWordCount, static_cast<int>(CharFreqBuilder::kMaxCount));
}

TEST(CharFreqBuilder, ReportsFilesItCannotUse) {
    zeg_test::TempDir dir;
    CharFreqBuilder builder;
    std::string error;
    EXPECT_FALSE(builder.addFile(dir.file("missing.txt"), error));
    EXPECT_THAT(error, HasSubstr("missing.txt"));
    EXPECT_FALSE(builder.writeFile(dir.file("no/such/folder/out.txt"), error));
    EXPECT_THAT(error, HasSubstr("out.txt"));
}

}  // namespace
