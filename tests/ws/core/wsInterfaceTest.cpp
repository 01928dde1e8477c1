// The segmenter from a configuration file to words, over small dictionaries
// compiled here.
#include "ws/core/wsInterface.h"

#include <gtest/gtest.h>


#include "support/AllocationCounter.h"
#include "support/DictionaryFiles.h"
#include "support/TempDir.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsPlugInLibrary.h"
#include "ws/dict/wsCoreDict.h"
#include "ws/dict/wsCorrectPhraseDict.h"
#include "ws/pos/wsTrigramPosDict.h"

using ws::WsSegmenter;

namespace {

const char kRules[] =
    "english_letter=abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZend#\n"
    "number_mid=.end#\n"
    "english_number=0123456789end#\n"
    "number_end=%end#\n"
    "chinese_numble=一二三四五六七八九十百千万零两end#\n"
    "chinese_mid1=分end#\n"
    "chinese_mid2=之end#\n";

const char kSpaces[] = "spacelist= end#\ndelimiterlist=。，end#\n";

class WsSegmenterTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string many;  // 一, 一一, ... up to 40 characters: more than 32 matches
        std::string run;
        for (int i = 0; i < 40; ++i) {
            run += "一";
            many += run + " 1\n";
        }
        compile("base", "北京 100 ns\n北京大学 50 nt\n大学 80 n\n学生 60 n\n清华大学 40 nt\n"
                        "中华人民共和国 10 ns\nmp3 5 nz\n" + many);
        compile("alnum", "iphone 3 nz\n");
        dir.write("rules.txt", kRules);
        dir.write("space.txt", kSpaces);
    }

    void compile(const std::string& name, const std::string& words) {
        ASSERT_EQ(zeg_test::compileDictionary(dir, name, words), "");
    }

    std::string config(const std::string& extra = "") {
        return dir.write("seg.conf",
                         "BASE_DICTIONARY = " + dir.file("base.dict") + "\n" +
                             "ALNUM_DICTIONARY = " + dir.file("alnum.dict") + "\n" +
                             "PROPERTY_DICT_FILE = " + dir.file("properties.txt") + "\n" +
                             "NUMERIC_RULE_FILE = " + dir.file("rules.txt") + "\n" +
                             "SPACE_DEFINE_FILE = " + dir.file("space.txt") + "\n" +
                             "SEGMENT_ALGORITHM = MAX_MATCH\nOUT_TYPE = 0\n" + extra);
    }

    // The text output of `utf8`.
    std::string text(const std::string& utf8) {
        const char* out = seg.segment(utf8.data(), static_cast<unsigned>(utf8.size()), 0);
        return out != nullptr ? out : "(null)";
    }

    // init on a configuration; returns what the segmenter logged.
    std::string initLog(const std::string& extra) {
        testing::internal::CaptureStderr();
        EXPECT_FALSE(seg.init(config(extra).c_str()));
        return testing::internal::GetCapturedStderr();
    }

    zeg_test::TempDir dir;
    WsSegmenter seg;
};

TEST_F(WsSegmenterTest, TakesTheLongestDictionaryWord) {
    ASSERT_TRUE(seg.init(config().c_str()));
    EXPECT_EQ(text("北京大学生"), "北京大学 生 ");
    EXPECT_EQ(text("清华大学学生"), "清华大学 学生 ");
    EXPECT_EQ(text("中华人民共和国"), "中华人民共和国 ");
    EXPECT_EQ(text(""), "");
}

TEST_F(WsSegmenterTest, DictionaryWordBeatsALongerNumericRun) {
    ASSERT_TRUE(seg.init(config().c_str()));
    EXPECT_EQ(text("mp3x"), "mp3 x ");
    // The alnum dictionary takes no part in maximum matching.
    EXPECT_EQ(text("iphone7"), "iphone7 ");
}

TEST_F(WsSegmenterTest, NumericRunsWhereNoWordStarts) {
    ASSERT_TRUE(seg.init(config().c_str()));
    EXPECT_EQ(text("3.5%学生"), "3.5% 学生 ");
    EXPECT_EQ(text("abc北京"), "abc 北京 ");
    EXPECT_EQ(text("a1b2"), "a1b2 ");
    std::vector<ws::WORD_UTF8_T> words;
    const std::string s = "3.5%abc";
    ASSERT_TRUE(seg.segment(s.data(), static_cast<unsigned>(s.size()), words));
    ASSERT_EQ(words.size(), 2u);
    EXPECT_EQ(words[0].prop, ws::WS_PROPERTY_NUM);
    EXPECT_EQ(words[1].prop, ws::WS_PROPERTY_LET);
    EXPECT_EQ(words[0].wordId, -1);
}

TEST_F(WsSegmenterTest, OnlyTheLongestOfThe32FirstMatchesCounts) {
    ASSERT_TRUE(seg.init(config().c_str()));
    std::string forty;
    for (int i = 0; i < 40; ++i) forty += "一";
    std::vector<ws::WORD_UTF8_T> words;
    ASSERT_TRUE(seg.segment(forty.data(), static_cast<unsigned>(forty.size()), words));
    ASSERT_EQ(words.size(), 2u);
    EXPECT_EQ(words[0].wordLen, 32u * 3);
    EXPECT_EQ(words[1].wordLen, 8u * 3);
}

TEST_F(WsSegmenterTest, Utf8ResultsPointIntoOneBufferInTextOrder) {
    ASSERT_TRUE(seg.init(config().c_str()));
    const std::string s = "北京大学生mp3";
    std::vector<std::vector<ws::WORD_UTF8_T> > results;
    ASSERT_TRUE(seg.segment(s.data(), static_cast<unsigned>(s.size()), results));
    ASSERT_EQ(results.size(), 1u);
    const auto& words = results.back();
    ASSERT_EQ(words.size(), 3u);
    std::string joined;
    for (size_t i = 0; i < words.size(); ++i) {
        joined.append(words[i].word, words[i].wordLen);
        EXPECT_EQ(words[i].orgWord, nullptr);
    }
    for (size_t i = 1; i < words.size(); ++i)
        EXPECT_EQ(words[i].word, words[i - 1].word + words[i - 1].wordLen);
    EXPECT_EQ(joined, s);
    EXPECT_EQ(words[0].wordId, seg.getWordId("北京大学", 12));
    EXPECT_GE(words[0].wordId, 0);
    EXPECT_EQ(seg.getWordId("北大", 6), -1);
}

TEST_F(WsSegmenterTest, Utf16ResultsPointIntoTheCallersText) {
    ASSERT_TRUE(seg.init(config().c_str()));
    const auto text16 = EncodeConverter::utf8ToUtf16(EncodeConverter::Utf8String(
        reinterpret_cast<const unsigned char*>("学生北京"), 12));
    std::vector<ws::WORD_T> words;
    ASSERT_TRUE(seg.segment(text16.data(), static_cast<unsigned>(text16.size()), words));
    ASSERT_EQ(words.size(), 2u);
    EXPECT_EQ(words[0].word, text16.data());
    EXPECT_EQ(words[1].word, text16.data() + 2);
    EXPECT_EQ(words[1].orgWord, text16.data() + 2);
    EXPECT_EQ(words[1].wordLen, 2u);
}

// A user word's own bytes come with it in the word lists; the text forms and
// segmentWords leave them out, and must not lose them for a later list.
TEST_F(WsSegmenterTest, WordListsCarryUserValuesAfterTextOutput) {
    ws::WsCoreDict user;
    const std::string word = "北京大学";
    float weight = 1;
    unsigned char value[] = {0, 0, 0, 'p', 'k', 'u'};  // no grans, properties or senses
    ASSERT_GT(user.add(word.data(), static_cast<unsigned>(word.size()), &weight, value, 6), 0);
    const std::string path = dir.file("user.dict");
    user.writeDict(path.c_str());
    ASSERT_TRUE(seg.init(config("USER_DICTIONARY = " + path + "\n").c_str()));
    const std::string s = "北京大学生";
    auto userValue = [&] {
        std::vector<ws::WORD_UTF8_T> words;
        if (!seg.segment(s.data(), static_cast<unsigned>(s.size()), words) || words.empty())
            return std::string("(none)");
        return std::string(reinterpret_cast<const char*>(words[0].usrValue), words[0].usrValueLen);
    };
    EXPECT_EQ(userValue(), "pku");
    EXPECT_EQ(text(s), "北京大学 生 ");
    EXPECT_NE(seg.segment(s.data(), static_cast<unsigned>(s.size()), 1), nullptr);
    EXPECT_EQ(userValue(), "pku");
    const auto units = EncodeConverter::utf8ToUtf16(
        EncodeConverter::Utf8String(reinterpret_cast<const unsigned char*>(s.data()), s.size()));
    std::vector<ws::WORD_T> bare, full;
    ASSERT_TRUE(seg.segmentWords(units.data(), static_cast<unsigned>(units.size()), bare));
    ASSERT_TRUE(seg.segment(units.data(), static_cast<unsigned>(units.size()), full));
    ASSERT_EQ(bare.size(), 2u);
    ASSERT_EQ(full.size(), 2u);
    EXPECT_EQ(bare[0].usrValue, nullptr);
    EXPECT_EQ(full[0].usrValueLen, 3u);
    for (size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(bare[i].word, full[i].word);
        EXPECT_EQ(bare[i].wordLen, full[i].wordLen);
        EXPECT_EQ(bare[i].wordId, full[i].wordId);
    }
    EXPECT_EQ(userValue(), "pku");
}

TEST_F(WsSegmenterTest, LongTextIsSegmentedChunkByChunk) {
    ASSERT_TRUE(seg.init(config().c_str()));
    std::string longText;
    while (longText.size() < 3 * 9000) longText += "北京大学生。";  // 6 units a round
    std::vector<ws::WORD_UTF8_T> words;
    ASSERT_TRUE(seg.segment(longText.data(), static_cast<unsigned>(longText.size()), words));
    std::string joined;
    for (const auto& w : words) joined.append(w.word, w.wordLen);
    EXPECT_EQ(joined, longText);
    EXPECT_EQ(words.size(), longText.size() / 18 * 3);

    // Without delimiters a chunk ends at the chunk size, even inside a word:
    // 北 is the last unit of the first chunk, 京 starts the second.
    std::string straddle;
    for (int i = 0; i < 4095; ++i) straddle += "生";
    straddle += "北京生";
    ASSERT_TRUE(seg.segment(straddle.data(), static_cast<unsigned>(straddle.size()), words));
    ASSERT_EQ(words.size(), 4098u);
    EXPECT_EQ(std::string(words[4095].word, words[4095].wordLen), "北");
    EXPECT_EQ(std::string(words[4096].word, words[4096].wordLen), "京");
    const std::string shorter = straddle.substr(3);  // 4097 units: one chunk
    ASSERT_TRUE(seg.segment(shorter.data(), static_cast<unsigned>(shorter.size()), words));
    EXPECT_EQ(std::string(words[4094].word, words[4094].wordLen), "北京");
}

TEST_F(WsSegmenterTest, PropertyTableNamesTheTypes) {
    ASSERT_TRUE(seg.init(config().c_str()));
    const short ns = seg.getTypeId("ns");
    EXPECT_GT(ns, 0);
    EXPECT_STREQ(seg.getTypeName(ns), "ns");
    EXPECT_EQ(seg.getTypeId("nothing"), -1);
    EXPECT_EQ(seg.getTypeName(999), nullptr);
    const std::string s = "北京";
    const char* out = seg.segment(s.data(), 6, 1);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(std::string(out), "北京[|/ns@100.0 |] ");
}

TEST_F(WsSegmenterTest, InitFailuresSayWhy) {
    const std::string none = dir.file("none.txt");
    const std::pair<std::string, std::string> cases[] = {
        {"SEGMENT_ALGORITHM = BEST\n", "Please specify the segment algorithm in config file"},
        {"SEGMENT_ALGORITHM = UNIGRAM\nENABLE_RULEBASED_NAME_TAGGER = true\n",
         "init person recognizer fail!"},
        {"SEGMENT_ALGORITHM = UNIGRAM\nENABLE_RULEBASED_ORGNIZATION_TAGGER = true\n",
         "init org recognizer fail!"},
        {"SEGMENT_ALGORITHM = UNIGRAM\nNUMERIC_RULE_FILE = " + none + "\n",
         "load number-rule-file : " + none + " fail!"},
        {"NUMERIC_RULE_FILE = " + none + "\n", "load number-rule-file : " + none + " fail!"},
        {"ENABLE_POS_TAGGER = 1\n", "init POS-tagger fail!"},
        {"ENABLE_POS_TAGGER = 2\n", "ENABLE_POS_TAGGER is error"},
        {"ENABLE_CORRECT_PHRASE = true\nCORRECT_PHRASE_DICT = " + none + "\n",
         "load correct-phrase-dict : " + none + " fail!"},
        {"SEGMENT_RESULT_NUM = 2\n", "SEGMENT_RESULT_NUM = 2"},
        {"SEG_TYPE = 1\n", "SEG_TYPE = 1"},
        {"BASE_DICTIONARY = " + dir.file("none.dict") + "\n", "load dicts fail!"},
        // Junk and endless files are refused, their bad lines named.
        {"PROPERTY_DICT_FILE = " + dir.write("junk.txt", "ABC\n\n") + "\n", "junk.txt:1: not"},
        {"PROPERTY_DICT_FILE = " + dir.file("junk.txt") + "\n",
         "load property Dict : " + dir.file("junk.txt") + " fail!"},
        {"PROPERTY_DICT_FILE = " + dir.write("long.txt", "1\tn\n" + std::string(5000, 'x')) + "\n",
         "long.txt:2: longer than"},
        {"PROPERTY_DICT_FILE = /dev/zero\n", "load property Dict : /dev/zero fail!"},
        {"NUMERIC_RULE_FILE = " + dir.file("junk.txt") + "\n", "junk.txt:1: no class key"},
        {"ENABLE_REMOVE_SPACE = true\nSPACE_DEFINE_FILE = " + dir.write("d.txt", "delimiterlist=,end#\n") + "\n",
         "load space-file : " + dir.file("d.txt") + " fail!"},
        {"ENABLE_PLUG_IN = true\nREVISER_PLUG_IN = " + dir.file("none.so") + "\n",
         "none.so: cannot open shared object file"},
        {"ENABLE_PLUG_IN = true\nREVISER_PLUG_IN = " ZEG_SAMPLE_TEXT_PROCESSOR "\n",
         "There isn't the function createReviser in dll"},
        {"ENABLE_PLUG_IN = true\nPREPROCESS_PLUG_IN = " ZEG_SAMPLE_REVISER "\n",
         "There isn't the function createTextProcessor in dll"},
    };
    for (const auto& c : cases) EXPECT_NE(initLog(c.first).find(c.second), std::string::npos) << c.first;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(seg.init(dir.file("absent.conf").c_str()));
    EXPECT_NE(testing::internal::GetCapturedStderr().find("load config file : " +
                                                          dir.file("absent.conf") + " fail!"),
              std::string::npos);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(seg.init("/dev/zero"));
    testing::internal::GetCapturedStderr();
    std::vector<ws::WORD_UTF8_T> words;
    EXPECT_FALSE(seg.segment("北京", 6, words));
    EXPECT_EQ(seg.segment("北京", 6, 0), nullptr);
    std::string error;
    EXPECT_FALSE(ws::PlugInLibrary().open(nullptr, error));
    EXPECT_EQ(error, "The .so file name is NULL");
}

TEST_F(WsSegmenterTest, TextThatDecodesToNothingFails) {
    ASSERT_TRUE(seg.init(config().c_str()));
    std::vector<ws::WORD_UTF8_T> words;
    for (const std::string bad : {"\xff\xfe", "\xf0\x9f\x98\x80"}) {  // invalid; outside the BMP
        EXPECT_FALSE(seg.segment(bad.data(), static_cast<unsigned>(bad.size()), words));
        EXPECT_EQ(seg.segment(bad.data(), static_cast<unsigned>(bad.size()), 0), nullptr);
    }
    EXPECT_TRUE(seg.segment("", 0, words));
    EXPECT_TRUE(words.empty());
}

// Spaces removed, width and case folded: the dictionary sees 北京大学生 and
// mp3; the caller sees its own text.
TEST_F(WsSegmenterTest, TextProcessorsFoldTheTextAndMapWordsBack) {
    ASSERT_TRUE(seg.init(config("ENABLE_REMOVE_SPACE = true\nENABLE_NORMALIZE = 5\n"
                                "ENABLE_DENORMALIZE = true\n").c_str()));
    EXPECT_EQ(text("  北 京大学  生 "), "北 京大学 生 ");
    EXPECT_EQ(text("\xef\xbc\xad\xef\xbc\xb0" "3   x"), "\xef\xbc\xad\xef\xbc\xb0" "3   x ");
    EXPECT_EQ(text("   "), "");
    std::vector<std::vector<ws::WORD_UTF8_T> > results;
    const std::string s = "北 京大学  生Mp3";
    ASSERT_TRUE(seg.segment(s.data(), static_cast<unsigned>(s.size()), results));
    std::string joined;
    for (const auto& w : results[0]) joined.append(w.word, w.wordLen).push_back('|');
    EXPECT_EQ(joined, "北京大学|生|Mp3|");
    EXPECT_GE(results[0][2].wordId, 0);  // found as mp3
    const size_t before = zeg_test::allocationCount();
    ASSERT_TRUE(seg.segment(s.data(), static_cast<unsigned>(s.size()), results));
    EXPECT_EQ(zeg_test::allocationCount(), before);

    ASSERT_TRUE(seg.init(config("ENABLE_NORMALIZE = 2\n").c_str()));
    EXPECT_EQ(text("MP3"), "mp3 ");  // not unfolded without ENABLE_DENORMALIZE
}

TEST_F(WsSegmenterTest, PlugInsJoinTheirStageLists) {
    ASSERT_TRUE(seg.init(config("ENABLE_PLUG_IN = true\nREVISER_PLUG_IN = " ZEG_SAMPLE_REVISER
                                "\nPREPROCESS_PLUG_IN = " ZEG_SAMPLE_TEXT_PROCESSOR
                                "\nPOSTPROCESS_PLUG_IN = " ZEG_SAMPLE_TEXT_PROCESSOR "\n").c_str()));
    EXPECT_EQ(text("学生北京"), "学生北京 ");
    EXPECT_EQ(text("#学生北京"), "");
    std::vector<ws::WORD_UTF8_T> words;
    const std::string s = "北京大学生mp3";
    ASSERT_TRUE(seg.segment(s.data(), static_cast<unsigned>(s.size()), words));
    ASSERT_EQ(words.size(), 2u);
    EXPECT_EQ(std::string(words[0].word, words[0].wordLen), "北京大学生");
    EXPECT_TRUE(words[0].prop & ws::WS_PROPERTY_ORG);
    EXPECT_FALSE(words[1].prop & ws::WS_PROPERTY_ORG);
}

TEST_F(WsSegmenterTest, PhraseCorrecterRecutsAfterTheSegmenter) {
    ws::CorrectPhraseDict phrases;
    ASSERT_EQ(phrases.loadText(dir.write("phrases.txt", "北京大学生 北京 大学生\n").c_str()), 0);
    ASSERT_EQ(phrases.writeDict(dir.file("phrases.dict").c_str()), 0);
    ASSERT_TRUE(seg.init(config("ENABLE_CORRECT_PHRASE = true\nCORRECT_PHRASE_DICT = " +
                                dir.file("phrases.dict") + "\n").c_str()));
    EXPECT_EQ(text("北京大学生在北京大学"), "北京 大学生 在 北京大学 ");
}

TEST_F(WsSegmenterTest, TaggerStageAddsTagsToTheTextOutput) {
    const char* const files[][2] = {{"tags", "n\nns\nnt\nv\n"},
                                    {"freq", "50 n\n10 ns\n10 nt\n30 v\n"},
                                    {"init", "5 nt\n"},
                                    {"bigrams", "4 nt n\n"},
                                    {"trigrams", ""},
                                    {"words", "学生 n/5\n"}};
    for (const auto& f : files) dir.write(f[0], f[1]);
    ws::TrigramPosDict dict(nullptr);
    testing::internal::CaptureStdout();
    ASSERT_EQ(dict.loadFromFiles(dir.file("tags").c_str(), dir.file("freq").c_str(),
                                 dir.file("init").c_str(), dir.file("bigrams").c_str(),
                                 dir.file("trigrams").c_str(), dir.file("words").c_str()),
              0);
    testing::internal::GetCapturedStdout();
    ASSERT_EQ(dict.writeDict(dir.file("pos.dict").c_str()), 0);
    // Property ids of the base dictionary: ns 1, nt 2, n 3.
    dir.write("typeid2tag.txt", "1 ns\n2 nt\n3 n\n");
    ASSERT_TRUE(seg.init(config("ENABLE_POS_TAGGER = 1\nTRIGRAM_POS_DICT = " + dir.file("pos.dict") +
                                "\nTRIGRAM_POS_TYPEID2TAG = " + dir.file("typeid2tag.txt") + "\n")
                             .c_str()));
    EXPECT_EQ(text("清华大学学生"), "清华大学/nt 学生/n ");
    EXPECT_EQ(seg.getTagId("nt"), 3);
    EXPECT_STREQ(seg.getTagName(3), "nt");
    EXPECT_EQ(seg.getTagId("x"), -1);
}

TEST_F(WsSegmenterTest, SwitchedOffStagesDoNotStopInit) {
    ASSERT_TRUE(seg.init(config("ENABLE_REMOVE_SPACE = false\nENABLE_POS_TAGGER = 0\n"
                                "ENABLE_CORRECT_PHRASE = false\nENABLE_PLUG_IN = false\n").c_str()));
    EXPECT_EQ(text("学生"), "学生 ");
}

TEST_F(WsSegmenterTest, WarmSegmenterAllocatesNothingInItsCore) {
    ASSERT_TRUE(seg.init(config().c_str()));
    const std::string s = "北京大学生在清华大学学习mp3 3.5%";
    std::vector<std::vector<ws::WORD_UTF8_T> > results;
    ASSERT_TRUE(seg.segment(s.data(), static_cast<unsigned>(s.size()), results));
    const std::string shorter = "清华大学学生";
    const size_t before = zeg_test::allocationCount();
    ASSERT_TRUE(seg.segment(s.data(), static_cast<unsigned>(s.size()), results));
    ASSERT_TRUE(seg.segment(shorter.data(), static_cast<unsigned>(shorter.size()), results));
    EXPECT_EQ(zeg_test::allocationCount(), before);
}

TEST_F(WsSegmenterTest, UnigramTakesTheMostProbableCut) {
    ASSERT_TRUE(seg.init(config("SEGMENT_ALGORITHM = UNIGRAM\n"
                                "ENABLE_NUMERIC_EXPRESSION_RECOGNIZER = true\n"
                                "NUMERIC_THRESHOLD = 0\n").c_str()));
    EXPECT_EQ(text("北京大学生"), "北京大学 生 ");
    EXPECT_EQ(text("龘龘"), "龘 龘 ");
    EXPECT_EQ(text("3.5%学生abc"), "3.5% 学生 abc ");
    EXPECT_EQ(text(""), "");
    // iphone then 7: the letters cover the alnum word, the digit stays apart.
    std::vector<ws::WORD_UTF8_T> words;
    const std::string s = "iphone7北京";
    ASSERT_TRUE(seg.segment(s.data(), static_cast<unsigned>(s.size()), words));
    ASSERT_FALSE(words.empty());
    std::string joined;
    for (const auto& w : words) joined.append(w.word, w.wordLen).push_back(' ');
    EXPECT_EQ(joined, "iphone7 北京 ");
    EXPECT_EQ(words[0].prop, ws::WS_PROPERTY_LETNUM);
    EXPECT_EQ(words[0].wordId, -1);

    std::vector<std::vector<ws::WORD_UTF8_T> > results;
    ASSERT_TRUE(seg.segment(s.data(), static_cast<unsigned>(s.size()), results));
    const size_t before = zeg_test::allocationCount();
    ASSERT_TRUE(seg.segment(s.data(), static_cast<unsigned>(s.size()), results));
    EXPECT_EQ(zeg_test::allocationCount(), before);
}

TEST_F(WsSegmenterTest, RecognisedNamesEnterTheLatticeAsNames) {
    ASSERT_TRUE(seg.init(config("SEGMENT_ALGORITHM = UNIGRAM\nENABLE_RULEBASED_NAME_TAGGER = true\n"
                                "RULEBASED_NAME_THRESHOLD = 5\nCHN_FAMILY_NAME_DICT = " +
                                dir.write("family.txt", "王\t500\n") + "\nCHN_GIVEN_NAME_DICT = " +
                                dir.write("given.txt", "小\n明\n") + "\nOUT_TYPE = 1\n")
                             .c_str()));
    const std::string s = "王小明北京";
    const char* out = seg.segment(s.data(), static_cast<unsigned>(s.size()), 1);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(std::string(out), "王小明[|/NR |] 北京[|/ns@100.0 |] ");
}

TEST_F(WsSegmenterTest, UnigramWithoutTheNumericRecogniserSplitsNumbers) {
    ASSERT_TRUE(seg.init(config("SEGMENT_ALGORITHM = UNIGRAM\n"
                                "ENABLE_NUMERIC_EXPRESSION_RECOGNIZER = false\n").c_str()));
    EXPECT_EQ(text("35学生"), "3 5 学生 ");
}

TEST(WsSegmenterFacade, VersionAndUninitialisedUse) {
    EXPECT_EQ(ws::wsVersion(), 0x2000000);
    WsSegmenter seg;
    std::vector<ws::WORD_UTF8_T> words;
    EXPECT_FALSE(seg.segment("a", 1, words));
    EXPECT_EQ(seg.getWordId("a", 1), -1);
    EXPECT_EQ(seg.getTypeName(1), nullptr);
    unsigned short out[4];
    EXPECT_EQ(seg.utf8ToUtf16("ab", 2, out, 4), 2);
}

}  // namespace
