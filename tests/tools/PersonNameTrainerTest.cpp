#include "tools/PersonNameTrainer.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "support/TempDir.h"
#include "ws/dict/wsMaxentDict.h"

using zeg_tools::PersonNameTrainer;
using zeg_tools::PersonTrainOptions;

namespace {

// Labels as digits: 0 first, 1 inside, 2 last character of a name, 3 none.
std::string digits(const std::string& labels) {
    std::string out;
    for (char c : labels) out += static_cast<char>('0' + c);
    return out;
}

TEST(PersonNameTrainerTest, CorpusLinesBecomeLabelledText) {
    std::ostringstream log;
    PersonNameTrainer t(PersonTrainOptions(), log);
    PersonNameTrainer::Sentence s;
    const struct {
        bool pfr;
        const char* line;
        const char16_t* text;
        const char* labels;
    } cases[] = {
        // People's Daily: family and given name are two tokens; brackets go.
        {true, "1998-01/m  [中央/n  电台/n]nt  主席/n  江/nr  泽民/nr  说/v", u"中央电台主席江泽民说",
         "3333330123"},
        {true, "1998-01/m  欧阳/nr  修/nr  、/w  克林顿/nr", u"欧阳修、克林顿", "0123012"},
        // MSRA: whole names; a lone character is no name.
        {false, "受到/o 郑振铎/nr 先生/o 、/o 陈/nr", u"受到郑振铎先生、陈", "330123333"},
        {false, "阿英/nr", u"阿英", "02"},
    };
    for (const auto& c : cases) {
        ASSERT_TRUE(c.pfr ? t.parsePfrLine(c.line, s) : t.parseMsraLine(c.line, s)) << c.line;
        EXPECT_EQ(s.text, c.text) << c.line;
        EXPECT_EQ(digits(s.labels), c.labels) << c.line;
    }
    EXPECT_EQ(t.familyNames().at(u"江"), 1);
    EXPECT_EQ(t.familyNames().at(u"欧阳"), 1);
    EXPECT_EQ(t.familyNames().count(u"克"), 0u);
    EXPECT_FALSE(t.parseMsraLine("", s));
}

TEST(PersonNameTrainerTest, TrainingIsRepeatableAndBuildsAModel) {
    zeg_test::TempDir dir;
    std::string pfr;
    for (int i = 0; i < 5; ++i)
        pfr += "1/m  记者/n  王/nr  小明/nr  报道/v\n1/m  李/nr  明/nr  说/v  好/a\n";
    PersonTrainOptions opt;
    opt.pfr = dir.write("pfr.txt", pfr);
    // The last line is held out: 赵 would be a family-name feature (seen
    // twice, the cut-off) if it were read.
    opt.msra = dir.write("msra.txt", "张伟/nr 说/o\n赵六/nr 和/o 赵六/nr\n");
    opt.msraHoldout = 1;
    opt.iterations = 5;
    std::string first;
    for (const char* out : {"a", "b"}) {
        opt.outDir = dir.mkdir(out);
        std::ostringstream log;
        ASSERT_EQ(PersonNameTrainer(opt, log).run(), 0) << log.str();
        const std::string alphas = zeg_test::TempDir::read(opt.outDir + "/person_alpha.txt");
        EXPECT_FALSE(alphas.empty());
        if (first.empty()) first = alphas;
        EXPECT_EQ(alphas, first);
    }
    EXPECT_EQ(zeg_test::TempDir::read(opt.outDir + "/family_names.txt"), "李\t5\n王\t5\n");
    ws::MaxentDict model;
    EXPECT_TRUE(model.buildDict((opt.outDir + "/person_freq.txt").c_str(),
                                (opt.outDir + "/person_alpha.txt").c_str(),
                                dir.file("person.model").c_str()));
    EXPECT_TRUE(model.isCharFeature(u'王'));
    EXPECT_FALSE(model.isCharFeature(u'赵'));
}

}  // namespace
