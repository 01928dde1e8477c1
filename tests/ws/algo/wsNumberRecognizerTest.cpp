#include "ws/algo/wsNumberRecognizer.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "DataPaths.h"
#include "support/AllocationCounter.h"
#include "support/TempDir.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsWordRecord.h"
#include "wsTextUtil.h"

using ws::NumberRecognizer;
using ws::TextSegmentation;

namespace {

// Each list on its key's line, so that no line feed becomes a member.
const char kRules[] =
    "english_letter=abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZend#\n"
    "english_number=0123456789end#\n"
    "number_mid=.,-end#\n"
    "number_end=%‰end#\n"
    "chinese_numble=〇一二三四五六七八九十百千万两壹贰叁end#\n"
    "chinese_mid1=分end#\n"
    "chinese_mid2=之end#\n";

std::string propName(unsigned short prop) {
    switch (prop) {
        case ws::WS_PROPERTY_NUM: return "num";
        case ws::WS_PROPERTY_LET: return "let";
        case ws::WS_PROPERTY_LETNUM: return "letnum";
        case ws::WS_PROPERTY_CHINESE_NUM: return "cnum";
        case ws::WS_PROPERTY_WORD: return "char";
        default: return "?" + std::to_string(prop);
    }
}

// A segmentation with the four buffers the core adds, in a different order
// from the recogniser's arguments so that a mixed-up index shows.
class Segmentation {
public:
    Segmentation() {
        for (unsigned short p : {ws::WS_PROPERTY_CHINESE_NUM, ws::WS_PROPERTY_LETNUM,
                                 ws::WS_PROPERTY_NUM, ws::WS_PROPERTY_LET})
            seg.addNewWordBuffer(p, 10.0f);
    }

    int init(NumberRecognizer& rec, const std::string& path) {
        return rec.init(path.c_str(), idx(ws::WS_PROPERTY_NUM), idx(ws::WS_PROPERTY_LET),
                        idx(ws::WS_PROPERTY_LETNUM), idx(ws::WS_PROPERTY_CHINESE_NUM));
    }

    void setText(const std::u16string& s) {
        org = zeg_test::units(s);
        work.assign(org.size() * 2, 0);
        ASSERT_TRUE(seg.init(org.data(), work.data(), work.data() + org.size(),
                             static_cast<unsigned int>(org.size())));
    }

    // The runs doRecognize records, in text order: "text/prop" joined by spaces.
    std::string recognize(NumberRecognizer& rec, const std::u16string& s) {
        setText(s);
        EXPECT_EQ(rec.doRecognize(seg), 0);
        return listRuns();
    }

    std::string listRuns() const {
        std::string out;
        for (unsigned int p = 0; p < seg.textLen; ++p) {
            for (const ws::NewWordBuffer& b : seg.newWordBuffers) {
                if (b.words[p].len == 0) continue;
                if (!out.empty()) out += ' ';
                out += zeg_test::utf8(seg.text + p, b.words[p].len) + "/" + propName(b.prop);
            }
        }
        return out;
    }

    // doMaxMatch at `pos`: "length/type".
    std::string maxMatch(NumberRecognizer& rec, const std::u16string& s, int pos) {
        setText(s);
        unsigned short type = 0;
        const int len = rec.doMaxMatch(seg, pos, type);
        return std::to_string(len) + "/" + propName(type);
    }

    int idx(unsigned short prop) const { return static_cast<int>(seg.getPropIdx(prop)); }

    TextSegmentation seg;
    std::vector<unsigned short> org, work;
};

class NumberRecognizerTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(load(kRules), 0); }

    int load(const std::string& rules) { return s.init(rec, dir.write("rules.txt", rules)); }
    std::string recognize(const std::u16string& text) { return s.recognize(rec, text); }
    std::string maxMatch(const std::u16string& text, int pos = 0) {
        return s.maxMatch(rec, text, pos);
    }

    zeg_test::TempDir dir;
    NumberRecognizer rec;
    Segmentation s;
};

// Trailing separators never belong to a run; end signs follow only a
// digit; Chinese numerals join once per run and never at its end.
TEST_F(NumberRecognizerTest, RecognisesRuns) {
    const std::pair<std::u16string, std::string> cases[] = {
        {u"abc123", "abc123/letnum"},
        {u"abc", "abc/let"},
        {u"123", "123/num"},
        {u"3a", "3a/letnum"},
        {u"3-a", "3-a/letnum"},
        {u"ab-cd", "ab-cd/let"},
        {u"ab-1", "ab-1/letnum"},
        {u"第3章abc与x1,2", "3/num abc/let x1,2/letnum"},
        {u"12,元", "12/num"},
        {u"ab-", "ab/let"},
        {u"ab1-,", "ab1/letnum"},
        {u"3a-", "3a/letnum"},
        {u"1,000.5.", "1,000.5/num"},
        {u"-5", "5/num"},
        {u"3.5%", "3.5%/num"},
        {u"3.%", "3/num"},
        {u"5%‰%x", "5%‰%/num x/let"},
        {u"a%", "a/let"},
        {u"%5", "5/num"},
        {u"一百二十两", "一百二十两/cnum"},
        {u"壹贰叁〇", "壹贰叁〇/cnum"},
        {u"三分之一", "三分之一/cnum"},
        {u"百分之五十元", "百分之五十/cnum"},
        {u"三分之一分之二", "三分之一/cnum 二/cnum"},
        {u"三分之", "三/cnum"},
        {u"三之分一", "三/cnum 一/cnum"},
        {u"三分一", "三/cnum 一/cnum"},
    };
    for (const auto& c : cases) EXPECT_EQ(recognize(c.first), c.second) << c.second;
}

TEST_F(NumberRecognizerTest, RunsOfMoreThan64UnitsAreNotNumbers) {
    const std::u16string at64(64, u'a'), at65(65, u'a');
    EXPECT_EQ(recognize(at64 + u"中" + at65 + u"中12"), std::string(64, 'a') + "/let 12/num");
    EXPECT_EQ(maxMatch(at64), "64/let");
    EXPECT_EQ(maxMatch(at65), "1/char");
    EXPECT_EQ(maxMatch(at65 + u"中", 1), "64/let");
}

TEST_F(NumberRecognizerTest, MaxMatchReportsOnePlainCharacterWhereNoRunStarts) {
    EXPECT_EQ(maxMatch(u"中12", 0), "1/char");
    EXPECT_EQ(maxMatch(u"中12", 1), "2/num");
    EXPECT_EQ(maxMatch(u"中12", 2), "1/num");
    EXPECT_EQ(maxMatch(u"x.%"), "1/let");
    // Outside the text nothing is claimed and the type is left alone.
    s.setText(u"12");
    unsigned short type = 77;
    EXPECT_EQ(rec.doMaxMatch(s.seg, 2, type), 0);
    EXPECT_EQ(rec.doMaxMatch(s.seg, -1, type), 0);
    TextSegmentation empty;
    EXPECT_EQ(rec.doMaxMatch(empty, 0, type), 0);
    EXPECT_EQ(type, 77);
}

TEST_F(NumberRecognizerTest, UnusableFilesFailAndKeepTheLoadedClasses) {
    EXPECT_EQ(s.init(rec, dir.file("missing.txt")), -1);
    EXPECT_EQ(s.init(rec, dir.mkdir("folder")), -1);
    EXPECT_EQ(load(""), -1);
    EXPECT_EQ(recognize(u"ab12"), "ab12/letnum");
    EXPECT_EQ(rec.init(nullptr, -1, -1, -1, -1), -1);
}

TEST_F(NumberRecognizerTest, DamagedFilesLoadWhatTheyHold) {
    // A key without its end mark leaves its class empty.
    ASSERT_EQ(load("english_number=0123456789end#\r\nenglish_letter=abc\r\n"), 0);
    EXPECT_EQ(recognize(u"ab12"), "12/num");
    // NUL bytes neither end a line nor a list: unit 0 becomes a letter.
    ASSERT_EQ(load(std::string("english_letter=a\0b", 18) + "end#\n"), 0);
    EXPECT_EQ(recognize(std::u16string(u"a\0b", 3)), std::string("a\0b/let", 7));
    // Binary data is text without keys: refused, the classes kept (a junk
    // file once turned "ABC" into "A B C").
    std::string binary(4096, '\0');
    std::mt19937 rng(testing::UnitTest::GetInstance()->random_seed());
    for (char& c : binary) c = static_cast<char>(rng());
    EXPECT_EQ(load(binary), -1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(load("# classes\nABC\n123\n"), -1);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("rules.txt:2: "), std::string::npos) << log;
    EXPECT_NE(log.find("rules.txt:3: "), std::string::npos) << log;
    EXPECT_EQ(log.find("rules.txt:1: "), std::string::npos) << log;
    EXPECT_EQ(recognize(u"ab12"), "ab/let");
}

TEST_F(NumberRecognizerTest, RecognitionAllocatesNothing) {
    s.setText(u"iphone6s售价6,888元，优惠15%，约三分之一");
    rec.doRecognize(s.seg);
    const std::size_t before = zeg_test::allocationCount();
    unsigned short type = 0;
    for (int i = 0; i < 100; ++i) {
        rec.doRecognize(s.seg);
        rec.doMaxMatch(s.seg, i % 20, type);
    }
    EXPECT_EQ(zeg_test::allocationCount(), before);
}

// On random texts the recorded runs never overlap and are exactly what
// doMaxMatch finds at their start.
TEST_F(NumberRecognizerTest, RecordedRunsAgreeWithMaxMatch) {
    const std::u16string alphabet = u"aB19.,-%‰三十分之中 ";
    std::mt19937 rng(testing::UnitTest::GetInstance()->random_seed());
    for (int round = 0; round < 300; ++round) {
        std::u16string text;
        const std::size_t n = 1 + rng() % 90;
        for (std::size_t i = 0; i < n; ++i) text += alphabet[rng() % alphabet.size()];
        s.setText(text);
        rec.doRecognize(s.seg);
        unsigned int covered = 0;
        for (unsigned int p = 0; p < n; ++p) {
            for (const ws::NewWordBuffer& b : s.seg.newWordBuffers) {
                const unsigned int len = b.words[p].len;
                if (len == 0) continue;
                SCOPED_TRACE(zeg_test::utf8(s.seg.text, n) + " at " + std::to_string(p));
                EXPECT_GE(p, covered);
                covered = p + len;
                unsigned short type = 0;
                EXPECT_EQ(rec.doMaxMatch(s.seg, static_cast<int>(p), type),
                          static_cast<int>(len));
                EXPECT_EQ(type, b.prop);
            }
        }
    }
}

TEST(NumberRecognizerData, ShippedRulesCoverQueries) {
    NumberRecognizer rec;
    Segmentation s;
    ASSERT_EQ(s.init(rec, ZEG_NUMERIC_RULE_FILE), 0);
    EXPECT_EQ(s.recognize(rec, u"iPhone6s售价6,888元，优惠15%，约三分之一，壹佰贰拾元"),
              "iPhone6s/letnum 6,888/num 15%/num 三分之一/cnum 壹佰贰拾/cnum");
    EXPECT_EQ(s.recognize(rec, u"ＡＢＣ１２３ 2024-01-31 3.5‰ 两千〇五 www.a.com"),
              "ＡＢＣ１２３/letnum 2024-01-31/num 3.5‰/num 两千〇五/cnum www.a.com/let");
}

}  // namespace
