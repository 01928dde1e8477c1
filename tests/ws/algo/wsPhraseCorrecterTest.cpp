// The correcter over cuts set by hand, with small dictionaries compiled here.
#include "ws/algo/wsPhraseCorrecter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/AllocationCounter.h"
#include "support/DictionaryFiles.h"
#include "support/TempDir.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/dict/wsCorrectPhraseDict.h"
#include "ws/dict/wsDictSet.h"
#include "wsTextUtil.h"

namespace {

using ws::SegmentResult;

std::vector<unsigned short> unitsOf(const std::string& utf8) {
    const EncodeConverter::Utf16String u =
        EncodeConverter::utf8ToUtf16(EncodeConverter::Utf8String(utf8.begin(), utf8.end()));
    return std::vector<unsigned short>(u.begin(), u.end());
}

class PhraseCorrecterTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(zeg_test::compileDictionary(dir, "base", "研究 10 v\n生命 10 n\n起源 5 n\n"), "");
        ASSERT_EQ(zeg_test::compileDictionary(dir, "alnum", "mp3 40 nz\n"), "");
        ASSERT_EQ(dicts.loadDict(dir.file("base.dict"), dir.file("alnum.dict"), {}), 0);
        const std::string table = dir.write("phrases.txt",
                                            "研究生命 研究 生命\n"
                                            "研究生命起源 研究 生命 起源\n"
                                            "个人 个 人\n"
                                            "人民 人民\n");
        ASSERT_EQ(phrases.loadText(table.c_str()), 0);
    }

    // Prepares the segmentation of the cut "w/w/w" and revises it.
    void revise(const std::string& cut) {
        words.clear();
        for (size_t start = 0, slash; start <= cut.size(); start = slash + 1) {
            slash = cut.find('/', start);
            if (slash == std::string::npos) slash = cut.size();
            words.push_back(cut.substr(start, slash - start));
        }
        std::string joined;
        for (const std::string& w : words) joined += w;
        text = unitsOf(joined);
        ASSERT_TRUE(seg.init(text.data(), text.data(), text.data(),
                             static_cast<unsigned>(text.size())));
        unsigned p = 0;
        for (const std::string& w : words) {
            cell(p).len = static_cast<unsigned char>(unitsOf(w).size());
            cell(p).prop = ws::WS_PROPERTY_NUM;  // marks a cell the correcter left alone
            cell(p).wordId = 12345;
            p += cell(p).len;
        }
        EXPECT_EQ(correcter.doRevise(seg), 0);
    }

    SegmentResult::Cell& cell(unsigned p) { return seg.result.cells[p]; }

    std::string cells() const {
        std::string out;
        for (unsigned p = 0; p < seg.textLen; p += seg.result.cells[p].len)
            out += (p ? "/" : "") + zeg_test::utf8(seg.text + p, seg.result.cells[p].len);
        return out;
    }

    int idOf(const std::u16string& word) const {
        const std::vector<unsigned short> w = zeg_test::units(word);
        return dicts.getWordId(w.data(), static_cast<unsigned>(w.size()), 7);
    }

    zeg_test::TempDir dir;
    ws::WsDictSet dicts;
    ws::CorrectPhraseDict phrases;
    ws::PhraseCorrecter correcter{&dicts, &phrases};
    ws::TextSegmentation seg;
    std::vector<std::string> words;
    std::vector<unsigned short> text;
};

TEST_F(PhraseCorrecterTest, RecutsPhrasesThatEndOnABoundary) {
    const struct {
        const char* in;
        const char* out;
    } cases[] = {
        {"我/研究生/命", "我/研究/生命"},
        {"研究生/命/起源/的", "研究/生命/起源/的"},  // the longer phrase
        {"研究生/命起/源头", "研究生/命起/源头"},    // both end inside a word
        {"个人/个人", "个/人/个/人"},                // the walk goes on after a phrase
        {"我们/学习", "我们/学习"},
    };
    for (const auto& c : cases) {
        revise(c.in);
        EXPECT_EQ(cells(), c.out) << c.in;
    }
}

TEST_F(PhraseCorrecterTest, RewrittenCellsAreOrdinaryWordsLookedUpAgain) {
    revise("研究生/命");
    EXPECT_EQ(cell(0).wordId, idOf(u"研究"));
    EXPECT_EQ(cell(2).wordId, idOf(u"生命"));
    EXPECT_NE(cell(2).value, nullptr);
    EXPECT_EQ(cell(2).prop, ws::WS_PROPERTY_WORD);

    revise("个人");  // neither 个 nor 人 is a word here
    for (unsigned p : {0u, 1u}) {
        EXPECT_EQ(cell(p).wordId, -1);
        EXPECT_EQ(cell(p).value, nullptr);
        EXPECT_EQ(cell(p).prop, ws::WS_PROPERTY_WORD);
    }
}

TEST_F(PhraseCorrecterTest, OnlyLongerCellsOfTheRightLengthKeepTheirMarks) {
    revise("研究/生命/起源");  // already right: every cell kept
    EXPECT_EQ(cell(0).prop, ws::WS_PROPERTY_NUM);
    EXPECT_EQ(cell(4).wordId, 12345);
    revise("人民");  // a one-word phrase over a cell of its length
    EXPECT_EQ(cell(0).prop, ws::WS_PROPERTY_NUM);
    revise("个/人");  // single characters are always rewritten
    EXPECT_EQ(cell(0).prop, ws::WS_PROPERTY_WORD);
    EXPECT_EQ(cell(1).prop, ws::WS_PROPERTY_WORD);
}

TEST_F(PhraseCorrecterTest, AllocatesNothingOnceWarm) {
    revise("我/研究生/命/起源");
    cell(1).len = 3;  // back to 研究生/命, with sub-words to drop
    cell(4).len = 1;
    cell(1).subWords.assign(2, 1);
    const std::size_t before = zeg_test::allocationCount();
    correcter.doRevise(seg);
    EXPECT_EQ(zeg_test::allocationCount(), before);
    EXPECT_EQ(cells(), "我/研究/生命/起源");
}

}  // namespace
