#include "tools/WordListReader.h"

#include <gtest/gtest.h>

#include <sstream>

using zeg_tools::WordEntry;
using zeg_tools::WordListReader;

namespace {

// "word|freq|tag" for an entry, "!reason" for a malformed line.
std::string parse(const std::string& line) {
    WordEntry e;
    std::string reason;
    if (WordListReader::parse(line, e, reason) != WordListReader::kEntry) return "!" + reason;
    return e.word + "|" + std::to_string(e.freq) + "|" + e.tag;
}

TEST(WordListReader, FieldsAndDefaults) {
    EXPECT_EQ(parse("北京 1234 ns"), "北京|1234|ns");
    EXPECT_EQ(parse("北京\t\t7"), "北京|7|");
    EXPECT_EQ(parse("北京"), "北京|1|");
    EXPECT_EQ(parse("北京 ns"), "北京|1|ns");
    EXPECT_EQ(parse("  c++ 3 nz  "), "c++|3|nz");
    EXPECT_EQ(parse("x 1000000000000"), "x|1000000000000|");
}

TEST(WordListReader, MalformedLinesSayWhy) {
    EXPECT_EQ(parse("北京 0 ns"), "!frequency must be positive, got '0'");
    EXPECT_EQ(parse("北京 -3"), "!frequency must be positive, got '-3'");
    EXPECT_EQ(parse("北京 1.5 ns"), "!bad frequency '1.5'");
    EXPECT_EQ(parse("北京 12a"), "!bad frequency '12a'");
    EXPECT_EQ(parse("北京 n 3"), "!bad frequency 'n'");
    EXPECT_EQ(parse("x 1000000000001"), "!frequency '1000000000001' is too large");
    EXPECT_EQ(parse("x 99999999999999999999999"), "!frequency '99999999999999999999999' is too large");
    EXPECT_EQ(parse("a 1 n extra"), "!too many fields (expected: word [frequency] [tag])");
    EXPECT_EQ(parse("ab\xC3"), "!invalid UTF-8 (or a character beyond U+FFFF)");
    EXPECT_EQ(parse("\xF0\x9F\x98\x80"), "!invalid UTF-8 (or a character beyond U+FFFF)");
    EXPECT_EQ(parse("x 1 \xFF"), "!invalid UTF-8 in the tag");
    std::string w64, w65;
    for (int i = 0; i < 64; ++i) w64 += "字";
    w65 = w64 + "a";
    EXPECT_EQ(parse(w64), w64 + "|1|");
    EXPECT_EQ(parse(w65), "!word longer than 64 UTF-16 units");
}

TEST(WordListReader, CountsLinesAndSkipsBlankOnes) {
    std::istringstream in("\xEF\xBB\xBF" "一 2\r\n\n   \t\n二 0\n三\n");
    WordListReader reader(in);
    WordEntry e;
    std::string reason;
    ASSERT_EQ(reader.next(e, reason), WordListReader::kEntry);
    EXPECT_EQ(e.word, "一");
    EXPECT_EQ(e.freq, 2u);
    EXPECT_EQ(reader.lineNumber(), 1);
    ASSERT_EQ(reader.next(e, reason), WordListReader::kMalformed);
    EXPECT_EQ(reader.lineNumber(), 4);
    ASSERT_EQ(reader.next(e, reason), WordListReader::kEntry);
    EXPECT_EQ(e.word, "三");
    EXPECT_EQ(reader.lineNumber(), 5);
    EXPECT_EQ(reader.next(e, reason), WordListReader::kEnd);
    EXPECT_FALSE(reader.failed());
}

}  // namespace
