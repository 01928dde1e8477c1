#include "normalize/WordLists.h"

#include <gtest/gtest.h>

#include "support/TempDir.h"

using normalize::gStopWords;
using normalize::gSynonymsWords;
using normalize::loadStopFile;
using normalize::loadSynonymsFile;

namespace {

using Words = std::set<std::string>;
using Pairs = std::map<std::string, std::string>;

class WordListsTest : public ::testing::Test {
protected:
    WordListsTest() {
        gStopWords.clear();
        gSynonymsWords.clear();
        normalize::wordListsChanged();
    }

    // Loads `text` as a synonym file; returns the loader's result and leaves
    // its messages in `err`.
    bool loadSynonyms(const std::string& text) {
        path = dir.write("syn.txt", text);
        testing::internal::CaptureStderr();
        const bool ok = loadSynonymsFile(path);
        err = testing::internal::GetCapturedStderr();
        return ok;
    }

    std::string invalid(const std::string& line, int number) const {
        return "Invalid line [" + line + "] in file [" + path + "], line number: " +
               std::to_string(number) + "\n";
    }

    zeg_test::TempDir dir;
    std::string path, err;
};

TEST_F(WordListsTest, StopWordsAreSeparatedByAnyWhiteSpace) {
    ASSERT_TRUE(loadStopFile(dir.write("stop.txt", "\xB5\xC4 \xC1\xCB\n\n\xBA\xCD\t\xCA\xC7")));
    EXPECT_EQ(gStopWords, (Words{"\xB5\xC4", "\xC1\xCB", "\xBA\xCD", "\xCA\xC7"}));
}

TEST_F(WordListsTest, StopWordsAccumulateWithoutDuplicates) {
    ASSERT_TRUE(loadStopFile(dir.write("a.txt", "a b\r\n")));
    ASSERT_TRUE(loadStopFile(dir.write("b.txt", "b\vc\f a")));
    ASSERT_TRUE(loadStopFile(dir.write("empty.txt", "")));
    EXPECT_EQ(gStopWords, (Words{"a", "b", "c"}));
}

TEST_F(WordListsTest, UnopenableStopFileFailsSilently) {
    testing::internal::CaptureStderr();
    EXPECT_FALSE(loadStopFile(dir.file("absent.txt")));
    EXPECT_FALSE(loadStopFile(dir.path()));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(WordListsTest, SynonymKeysAreUpperCasedAndLaterLinesWin) {
    ASSERT_TRUE(loadSynonyms("abc\x01XYZ\r\n"
                             " \xB5\xE7\xC4\xD4 \x01 computer \n"
                             "ABC\x01Qrs\n"));
    EXPECT_EQ(gSynonymsWords, (Pairs{{"ABC", "Qrs"}, {"\xB5\xE7\xC4\xD4", "computer"}}));
    EXPECT_EQ(err, "");
}

TEST_F(WordListsTest, InvalidSynonymLinesAreReportedAndSkipped) {
    ASSERT_TRUE(loadSynonyms("a\x01" "b\x01" "c\n"
                             "\x01" "b\n"
                             "\n"
                             "no separator\r\n"
                             "good\x01ok"));
    EXPECT_EQ(gSynonymsWords, (Pairs{{"GOOD", "ok"}}));
    EXPECT_EQ(err, invalid("a\x01" "b\x01" "c", 1) + invalid("\x01" "b", 2) + invalid("", 3) +
                       invalid("no separator", 4));
}

TEST_F(WordListsTest, OverlongSynonymLineIsReadInPieces) {
    const std::string word(1021, 'w');  // word, 0x01, "x" fill one 1023-byte piece
    ASSERT_TRUE(loadSynonyms(word + "\x01xy\x01z\n"));
    EXPECT_EQ(gSynonymsWords, (Pairs{{std::string(1021, 'W'), "x"}, {"Y", "z"}}));
}

TEST_F(WordListsTest, MissingOrUnopenableSynonymFileFailsWithAMessage) {
    const std::string absent = dir.file("absent.txt");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(loadSynonymsFile(absent));
    EXPECT_FALSE(loadSynonymsFile(dir.path()));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[loadSynonymsFile] The given file [" + absent + "] does not exist.\n" +
                  "[loadSynonymsFile] open file [" + dir.path() + "] failed.\n");
}

}  // namespace
