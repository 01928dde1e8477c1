#include "ws/algo/wsPersonRecognizer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "support/AllocationCounter.h"
#include "support/DictionaryFiles.h"
#include "support/TempDir.h"
#include "wsTextUtil.h"
#include "ws/algo/wsMEPersonNameTagger.h"
#include "ws/algo/wsRulePersonNameTagger.h"
#include "ws/core/wsSegmenter.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsWordRecord.h"
#include "ws/core/wsWsConfig.h"
#include "ws/dict/wsDictSet.h"
#include "ws/dict/wsMaxentDict.h"

using testing::HasSubstr;
using ws::MaxentDict;
using ws::TextSegmentation;

namespace {

// Marks the dictionary pass done, every character a word of its own.
class CountingSegmenter : public ws::Segmenter {
public:
    int doSegment(TextSegmentation& seg, int, int mode) override {
        ++calls;
        if (mode == 1) seg.resultByDict.valid = 1;
        return 1;
    }
    bool init(const ws::WsConfig&) override { return true; }
    int calls = 0;
};

std::string key(char16_t c) { return std::string(reinterpret_cast<const char*>(&c), 2); }

class PersonRecognizerTest : public testing::Test {
protected:
    void SetUp() override {
        ruleIdx = seg.addNewWordBuffer(ws::WS_PROPERTY_PER_RULE, 5.0f);
        meIdx = seg.addNewWordBuffer(ws::WS_PROPERTY_PER_ME, 5.0f);
    }

    // A configuration of `lines` with the lists below beside it.
    ws::WsConfig config(const std::string& lines) {
        dir.write("family.txt", "王\t500\n李\t3\n欧阳\t50\n");
        dir.write("given.txt", "小\t9\n明\t9\n");
        dir.write("foreign.txt", "克\t20\n林\t20\n顿\t20\n");
        dir.write("right.txt", "说\t40\n");
        dir.write("left.txt", "记者\t80\n");
        const std::string d = dir.path() + "/";
        const std::string text = "CHN_FAMILY_NAME_DICT = " + d + "family.txt\nCHN_GIVEN_NAME_DICT = " +
                                 d + "given.txt\nFOREIGN_NAME_CHAR_DICT = " + d +
                                 "foreign.txt\nRIGHT_CONTEXT_DICT = " + d +
                                 "right.txt\nFULL_CONTEXT_DICT = " + d + "left.txt\n" + lines;
        ws::WsConfig c;
        EXPECT_TRUE(c.init(dir.write("seg.conf", text).c_str()));
        return c;
    }

    void setText(const std::u16string& s) {
        text.assign(s.begin(), s.end());
        work.assign(text.size(), 0);
        seg.init(text.data(), work.data(), work.data(), static_cast<unsigned>(text.size()));
    }

    std::vector<int> lengths(unsigned idx) const {
        std::vector<int> out;
        for (unsigned i = 0; i < seg.textLen; ++i) out.push_back(seg.newWordBuffers[idx].words[i].len);
        return out;
    }

    // A model that knows 王 starts names, 小 sits inside them and 明 ends
    // them; every other code is 0, and a code sum s weighs exp(s / 20).
    std::string writeModel() {
        MaxentDict m;
        double table[MaxentDict::kCodeSums];
        for (int s = 0; s < MaxentDict::kCodeSums; ++s) table[s] = std::exp(s * 0.05);
        m.setI2FTable(table);
        const struct { char16_t c; int label; } strong[] = {{u'王', 0}, {u'小', 1}, {u'明', 2}};
        for (const auto& f : strong) {
            float alpha = 1.0f;
            const int slot = f.label + 4 * 2;  // template 0: the character itself
            const int index = m.add(key(f.c).data(), 2, slot, alpha);
            const_cast<unsigned char*>(m[static_cast<unsigned>(index)])[slot] = 200;
        }
        const std::string path = dir.file("person.model");
        EXPECT_EQ(m.writeDict(path.c_str()), 0);
        return path;
    }

    zeg_test::TempDir dir;
    TextSegmentation seg;
    std::vector<unsigned short> text, work;
    unsigned ruleIdx = 0, meIdx = 0;
};

TEST_F(PersonRecognizerTest, WithNoSwitchNothingIsRecognised) {
    CountingSegmenter segmenter;
    ws::PersonRecognizer r(&segmenter, nullptr, nullptr);
    ASSERT_TRUE(r.init(config(""), meIdx, ruleIdx));
    setText(u"记者王小明说");
    EXPECT_EQ(r.doRecognize(seg), 1);
    EXPECT_EQ(segmenter.calls, 0);
    EXPECT_EQ(lengths(ruleIdx), std::vector<int>(6, 0));
    std::vector<unsigned short> props;
    EXPECT_EQ(r.getProperty(props), 2);
    EXPECT_EQ(props, (std::vector<unsigned short>{ws::WS_PROPERTY_PER_RULE, ws::WS_PROPERTY_PER_ME}));
}

TEST_F(PersonRecognizerTest, TheMaximumEntropyTaggerNeedsItsBuffer) {
    const std::string model = writeModel();
    ws::PersonRecognizer r;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(r.init(config("ENABLE_MAXENT_PERSON_NAME_TAGGER = true\nMAXENT_PERSON_NAME_DICT = " +
                               model + "\n"),
                        -1, ruleIdx));
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr("please add result                             vector before constuct "
                          "this module"));
    testing::internal::CaptureStderr();
    EXPECT_FALSE(r.init(config("ENABLE_MAXENT_PERSON_NAME_TAGGER = true\n"), meIdx, ruleIdx));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("Can not open file"));
}

TEST_F(PersonRecognizerTest, TheModelTagsNamesWithoutAllocatingAfterWarmUp) {
    const std::string model = writeModel();
    ws::PersonRecognizer r;
    ASSERT_TRUE(r.init(config("ENABLE_MAXENT_PERSON_NAME_TAGGER = true\nMAXENT_PERSON_NAME_DICT = " +
                              model + "\nENABLE_FAMILY_NAME_CHECK = true\n"
                              "CHN_FAMILY_NAME_FREQ_DICT = " + dir.file("family.txt") + "\n"),
                       meIdx, ruleIdx));
    setText(u"的王小明的小明");
    r.doRecognize(seg);
    // 的小明 is tagged too, but 的 is no family name: the check withdraws it.
    EXPECT_EQ(lengths(meIdx), (std::vector<int>{0, 3, 0, 0, 0, 0, 0}));
    setText(u"王明的王小明");
    const std::size_t before = zeg_test::allocationCount();
    r.doRecognize(seg);
    EXPECT_EQ(zeg_test::allocationCount(), before);
    EXPECT_EQ(lengths(meIdx), (std::vector<int>{2, 0, 0, 3, 0, 0}));
}

TEST_F(PersonRecognizerTest, RulesNeedAContextOrACommonFamilyName) {
    CountingSegmenter segmenter;
    ws::PersonRecognizer r(&segmenter, nullptr, nullptr);
    ASSERT_TRUE(r.init(config("ENABLE_RULEBASED_NAME_TAGGER = true\n"), meIdx, ruleIdx));
    const struct {
        const char16_t* text;
        std::vector<int> lengths;
    } cases[] = {
        {u"王小明好", {3, 0, 0, 0}},      // 王 is common (500 >= 100)
        {u"李小明好", {0, 0, 0, 0}},      // 李 is not, and there is no context
        {u"李小明说", {3, 0, 0, 0}},      // a verb of speech after it
        {u"记者李明", {0, 0, 2, 0}},      // a title before it
        {u"欧阳明说", {3, 0, 0, 0}},      // a compound family name
        {u"王小说", {2, 0, 0}},           // a one-character given name
        {u"克林顿说", {3, 0, 0, 0}},      // transliterated
    };
    for (const auto& c : cases) {
        setText(c.text);
        r.doRecognize(seg);
        EXPECT_EQ(lengths(ruleIdx), c.lengths) << zeg_test::utf8(text.data(), text.size());
    }
    EXPECT_EQ(segmenter.calls, 7);
    r.doRecognize(seg);  // the dictionary pass is still valid
    EXPECT_EQ(segmenter.calls, 7);
}

TEST_F(PersonRecognizerTest, ThreeCharacterNamesLoseACharacterThatStartsAWord) {
    ASSERT_EQ(zeg_test::compileDictionary(dir, "base", "明天 100 t\n"), "");
    ASSERT_EQ(zeg_test::compileDictionary(dir, "alnum", "mp3 10 nz\n"), "");
    ws::WsDictSet dicts;
    ASSERT_EQ(dicts.loadDict(dir.file("base.dict"), dir.file("alnum.dict"), {}), 0);
    ws::PersonRecognizer r(nullptr, nullptr, &dicts);
    ASSERT_TRUE(r.init(config(""), meIdx, ruleIdx));
    // The last case segments only 王小明 of 王小明天: 天 lies past the end.
    const struct {
        const char16_t* text;
        unsigned len;
        unsigned start;
        int length;
    } cases[] = {{u"王小明天好", 5, 0, 2}, {u"王小明好", 4, 0, 3}, {u"王小明天", 3, 0, 3}};
    for (const auto& c : cases) {
        setText(c.text);
        seg.init(text.data(), work.data(), work.data(), c.len);
        seg.newWordBuffers[meIdx].words[c.start].len = 3;
        r._checkRightBoundary(seg, ws::WS_PROPERTY_PER_ME, static_cast<int>(meIdx));
        EXPECT_EQ(lengths(meIdx)[c.start], c.length) << c.start;
    }
}

}  // namespace
