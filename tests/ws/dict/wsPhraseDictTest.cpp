#include "ws/dict/wsPhraseDict.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/TempDir.h"
#include "ws/dict/wsCorrectPhraseDict.h"

using testing::HasSubstr;

namespace {

std::vector<unsigned short> units(const std::u16string& s) { return {s.begin(), s.end()}; }

const char kTable[] =
    "# the phrases below\n"
    "研究生\t研究生\n"
    "研究生命　研究 生命  # ideographic space\n"
    "研究生命起源 研究 生命 起源\n"
    "和服务 和服 务\n"
    "和服务 和 服务\n";  // replaces the line above

class PhraseDictTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(load(kTable), ""); }

    // Loads `text` as the table; returns what was logged.
    std::string load(const std::string& text) {
        const std::string path = dir.write("phrases.txt", text);
        testing::internal::CaptureStderr();
        EXPECT_EQ(dict.loadText(path.c_str()), 0);
        return testing::internal::GetCapturedStderr();
    }

    // The cut the table gives for the phrase at the start of `text` under
    // the current cut `lens` (word lengths, in order), as "研究/生命"; "-"
    // when none applies.
    std::string correct(const std::u16string& text, const std::vector<int>& lens) const {
        std::vector<char> wordLens(text.size(), 9);
        unsigned p = 0;
        for (int l : lens) p += static_cast<unsigned>(wordLens[p] = static_cast<char>(l));
        const std::vector<unsigned short> t = units(text);
        unsigned phraseLen = 0;
        const int at = dict.matchPosition(t.data(), static_cast<unsigned>(t.size()),
                                          wordLens.data(), phraseLen);
        if (at < 0) return phraseLen == 0 ? "-" : "bad length";
        const char* record = dict.getBuffer() + at;
        std::string out;
        unsigned start = 0;
        for (int w = 1; w <= record[0]; ++w) {
            const std::u16string word = text.substr(start, static_cast<size_t>(record[w]));
            out += (w > 1 ? "/" : "") + std::string(word.size(), '*');
            start += static_cast<unsigned>(record[w]);
        }
        return start == phraseLen ? out : "bad record";
    }

    zeg_test::TempDir dir;
    ws::CorrectPhraseDict dict;
};

// Word lengths stand for the words: "**/**" is two words of two characters.
TEST_F(PhraseDictTest, LongestPhraseEndingOnABoundaryApplies) {
    struct Case {
        std::u16string text;
        std::vector<int> cut;
        std::string expected;
    } cases[] = {
        {u"研究生命起源", {3, 1, 2}, "**/**/**"},  // all three end on boundaries
        {u"研究生命起源", {2, 4}, "**/**/**"},     // the shorter two end inside 生命起源
        {u"研究生命", {3, 1}, "**/**"},            // the longer of 研究生, 研究生命
        {u"研究生命起", {2, 3}, "-"},              // both end inside 生命起
        {u"研究生命起", {3, 2}, "***"},            // 研究生 only
        {u"研究生", {1, 1, 1}, "***"},
        {u"和服务员", {1, 2, 1}, "*/**"},          // the later line won
        {u"学生", {2}, "-"},
        {u"研", {1}, "-"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(correct(c.text, c.cut), c.expected) << testing::PrintToString(c.cut);
    EXPECT_EQ(dict.phraseCount(), 4u);
    EXPECT_GT(dict.match(units(u"研究生命").data(), 4), 0);
    EXPECT_EQ(dict.match(units(u"研究生命起").data(), 5), 0);
}

TEST_F(PhraseDictTest, UnusableLinesAreReportedAndLeftOut) {
    const std::string path = dir.file("phrases.txt");
    const std::string logged = load("好 好\n坏行\n研究生 研究\n\xE5\x9D\n" +
                                    std::string(65, 'a') + " " + std::string(65, 'a') + "\n" +
                                    std::string(2000, 'a') + "\n研究 研 究\n");
    for (const char* line : {":2: no words after the phrase", ":3: the words do not spell",
                             ":4: not UTF-8", ":5: phrase longer than 64", ":6: line longer"})
        EXPECT_THAT(logged, HasSubstr(path + line));
    EXPECT_EQ(dict.skippedLines(), 5u);
    EXPECT_EQ(dict.phraseCount(), 2u);
    EXPECT_GT(dict.match(units(u"研究").data(), 2), 0);  // the line after the long one
    EXPECT_EQ(dict.match(units(u"研究生").data(), 3), 0);
}

TEST_F(PhraseDictTest, UnreadableTextLeavesTheDictionaryAsItWas) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(dict.loadText(dir.file("missing.txt").c_str()), -1);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("load "));
    EXPECT_GT(dict.match(units(u"研究生").data(), 3), 0);
}

TEST_F(PhraseDictTest, WrittenFileLoadsBackTheSame) {
    const std::string path = dir.file("phrases.dict");
    ASSERT_EQ(dict.writeDict(path.c_str()), 0);
    ws::PhraseDict copy;
    ASSERT_EQ(copy.loadDict(path.c_str()), 0);
    EXPECT_EQ(std::string(copy.getBuffer(), copy.getBufferSize()),
              std::string(dict.getBuffer(), dict.getBufferSize()));
    for (const std::u16string p : {u"研究生", u"研究生命", u"研究生命起源", u"和服务"})
        EXPECT_EQ(copy.match(units(p).data(), static_cast<unsigned>(p.size())),
                  dict.match(units(p).data(), static_cast<unsigned>(p.size())));
    EXPECT_STREQ(copy.dictVersion(path.c_str()), "DADLTrie V1.0.0");
    EXPECT_EQ(dict.writeDict(dir.file("no/such/dir").c_str()), -7);
}

// Each damaged file fails to load (leaving the dictionary empty) or, when
// only a record is wrong, loads but never answers with that record.
TEST_F(PhraseDictTest, DamagedFilesFailOrAreNotTrusted) {
    const std::string good = dir.file("good.dict");
    ASSERT_EQ(dict.writeDict(good.c_str()), 0);
    const std::string bytes = zeg_test::TempDir::read(good);
    const auto patched = [&](size_t at, const std::string& with) {
        return bytes.substr(0, at) + with + bytes.substr(at + with.size());
    };
    const size_t trieAt = 4 + static_cast<unsigned char>(bytes[0]);
    struct Case {
        const char* what;
        std::string bytes;
        int loads;
        std::u16string refused;  // no longer found
    } cases[] = {
        {"empty", "", -1, u"研究生"},
        {"table longer than the file", patched(0, "\xFF\xFF\x00\x00"), -1, u"研究生"},
        {"table shorter than the logo", patched(0, std::string("\x04\x00\x00\x00", 4)), -1,
         u"研究生"},
        {"no logo", patched(4, "PHRASE-TABLE"), -1, u"研究生"},
        {"trie magic", patched(trieAt + 8, "X"), -1, u"研究生"},
        {"trie cut short", bytes.substr(0, bytes.size() - 5), -1, u"研究生"},
        {"trie cells", patched(bytes.size() - 8, "\xFF\xFF\xFF\x7F\x00\x00\x00\x80"), 0, u""},
        // Records: 研究生 [1 3] at 16, 研究生命 [2 2 2] at 18.
        {"word count 127", patched(16, "\x7F"), 0, u"研究生"},
        {"word count -1", patched(16, "\xFF"), 0, u"研究生"},
        {"lengths short of the phrase", patched(17, "\x02"), 0, u"研究生"},
        {"a word of length 0", patched(19, std::string("\x04\x00", 2)), 0, u"研究生命"},
    };
    for (const Case& c : cases) {
        ws::PhraseDict d;
        ASSERT_EQ(d.loadDict(good.c_str()), 0);
        const std::string path = dir.write("bad.dict", c.bytes);
        EXPECT_EQ(d.loadDict(path.c_str()), c.loads) << c.what;
        if (c.loads != 0) {
            EXPECT_EQ(d.getBufferSize(), ws::PhraseDict::kLogoSize) << c.what;
        }
        const std::vector<char> lens(6, 1);
        for (const std::u16string p : {u"研究生", u"研究生命", u"研究生命起源", u"和服务"})
            d.matchPosition(units(p).data(), static_cast<unsigned>(p.size()), lens.data());
        if (!c.refused.empty()) {
            const std::vector<unsigned short> p = units(c.refused);
            const unsigned n = static_cast<unsigned>(p.size());
            unsigned len = 0;
            d.matchPosition(p.data(), n, lens.data(), len);
            EXPECT_NE(len, n) << c.what;
            EXPECT_EQ(d.match(p.data(), n), 0) << c.what;
        }
    }
    EXPECT_EQ(dict.loadDict(dir.file("missing.dict").c_str()), -1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(dict.dictVersion(dir.file("missing.dict").c_str()), nullptr);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("missing.dict fail!"));
}

}  // namespace
