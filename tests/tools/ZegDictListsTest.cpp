// zeg-dict stopwords, synonyms and reversible: our UTF-8 lists to the files
// the normaliser and the dictionary compiler read.
#include <gtest/gtest.h>

#include <sstream>

#include "support/Gbk.h"
#include "support/TempDir.h"
#include "tools/ZegDict.h"

namespace {

class ZegDictListsTest : public ::testing::Test {
protected:
    // Runs `command` over `source`; the output is `out` in the temporary folder.
    int run(const std::string& command, const std::string& source,
            const std::vector<std::string>& more = {}) {
        std::vector<std::string> args = {command, "--input", dir.write("in.txt", source),
                                         "--output", dir.file("out")};
        args.insert(args.end(), more.begin(), more.end());
        std::ostringstream out, errors;
        const int code = zeg_tools::ZegDict(out, errors).run(args);
        err = errors.str();
        return code;
    }
    std::string output() const { return zeg_test::TempDir::read(dir.file("out")); }

    zeg_test::TempDir dir;
    std::string err;
};

TEST_F(ZegDictListsTest, StopwordsWritesEachCharacterOnceInGBK) {
    ASSERT_EQ(run("stopwords", "# punctuation\n\n  ， 。\t!\r\n。 ?\n"), 0) << err;
    EXPECT_EQ(output(), zeg_test::gbk("，\n。\n!\n?\n"));
}

TEST_F(ZegDictListsTest, SynonymsWritesPairsAndTheWordsOfTheUserDictionary) {
    const std::string known = dir.write(
        "known.txt", "笔记本电脑 4000 n\n软件 900 n\n免费软件 50 n\n软件包 7\n软体包 3\n");
    ASSERT_EQ(run("synonyms",
                  "# c\n笔电 \t 笔记本电脑\r\ne-mail\t电子邮件\nwi fi\t无线网络\n软体\t软件\n",
                  {"--words", dir.file("words"), "--known", known}),
              0)
        << err;
    // A known word holding a replacement gets a synonym spelt with the
    // word (免费软体), unless it is known itself (软体包).
    EXPECT_EQ(output(), zeg_test::gbk("笔电\x01笔记本电脑\ne-mail\x01电子邮件\nwi fi\x01无线网络\n"
                                      "软体\x01软件\n免费软体\x01免费软件\n"));
    // Words with blanks cannot be dictionary words; known frequencies above
    // the default are kept.
    EXPECT_EQ(zeg_test::TempDir::read(dir.file("words")),
              "e-mail 1000\n免费软体 50\n无线网络 1000\n电子邮件 1000\n笔电 1000\n笔记本电脑 4000\n"
              "软件 1000\n软体 1000\n");
}

TEST_F(ZegDictListsTest, BadLinesAreReportedAndNothingIsWritten) {
    const std::string longLine(1100, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"stopwords", "。\n的士\n"},  {"stopwords", "𠀀\n"},
        {"stopwords", "\xE4\xB8\n"},  {"stopwords", longLine + "\n"},
        {"synonyms", "a\tb\nc\n"},    {"synonyms", "a\tb\nc\td\te\n"},
        {"synonyms", "a\tb\n\tc\n"},  {"synonyms", "abc\tx\nABC\ty\n"},
        {"synonyms", "a\tb\n€\tc\n"},
    };
    const char* reasons[] = {
        "in.txt:2: '的士' is not one character",
        "in.txt:1: '𠀀' (U+20000) has no GBK form",
        "in.txt:1: invalid UTF-8",
        "in.txt:1: longer than 1023 bytes",
        "in.txt:2: not a word, a tab and a replacement",
        "in.txt:2: not a word, a tab and a replacement",
        "in.txt:2: not a word, a tab and a replacement",
        "in.txt:2: 'ABC' repeats the word of line 1",
        "in.txt:2: '€' (U+20AC) has no GBK form",
    };
    for (size_t i = 0; i < sizeof cases / sizeof cases[0]; ++i) {
        EXPECT_EQ(run(cases[i].first, cases[i].second), 1) << i;
        EXPECT_NE(err.find(reasons[i]), std::string::npos) << err;
        EXPECT_NE(err.find("not written"), std::string::npos) << err;
        EXPECT_EQ(output(), "") << i;
    }
}

TEST_F(ZegDictListsTest, ReversibleRaisesWordsTheLatticeWouldCut) {
    // Total 200,000: 本日 needs 2 * 50,000 * 40,000 / 200,000 = 20,000 to
    // stay whole; 日本 and 本 日 already are; 天天 is its own reverse.
    ASSERT_EQ(
        run("reversible", "本 50000\n日 40000\n日本 80000\n本日 43\n天天 29939\n一本 9\n本一 9\n"),
        0)
        << err;
    EXPECT_EQ(output(), "本日 20000\n");
}

}  // namespace
