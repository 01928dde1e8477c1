// The trigram tagger: hand-checked small cases, and Viterbi against every
// tag sequence on random models.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "PosTestModel.h"
#include "support/AllocationCounter.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/pos/wsTrigramPosTagger.h"

namespace {

const char* const kWords[] = {"北京", "学生", "学习", "的", "好", "大学", "在", "我", "，", "某某"};

class TaggerTest : public ::testing::Test {
protected:
    void load(unsigned seed) {
        testing::internal::CaptureStdout();
        const std::string path = zeg_test::writePosDict(dir, seed);
        testing::internal::GetCapturedStdout();
        ASSERT_TRUE(tagger.init(path.c_str(), dir.write("map.txt", "").c_str(), ""));
    }

    // Tags the words (the first with property bits `prop`); their tag names.
    std::vector<std::string> tag(const std::vector<std::string>& words,
                                 unsigned short prop = ws::WS_PROPERTY_WORD) {
        text.clear();
        for (const std::string& w : words) {
            const auto u =
                EncodeConverter::utf8ToUtf16(EncodeConverter::Utf8String(w.begin(), w.end()));
            text.insert(text.end(), u.begin(), u.end());
        }
        work.resize(text.size());
        seg.init(text.data(), work.data(), work.data(), static_cast<unsigned>(text.size()));
        size_t at = 0;
        for (const std::string& w : words) {
            const size_t len =
                EncodeConverter::utf8ToUtf16(EncodeConverter::Utf8String(w.begin(), w.end()))
                    .size();
            seg.result.cells[at].len = static_cast<unsigned char>(len);
            at += len;
        }
        seg.result.cells[0].prop = prop;
        EXPECT_EQ(tagger.annotate(seg), 0);
        std::vector<std::string> out;
        for (size_t p = 0; p < text.size(); p += seg.result.cells[p].len)
            out.push_back(tagger.getTagName(seg.result.cells[p].tag));
        return out;
    }

    // The best score over every tag sequence, as the model defines it.
    double bruteForce(const std::vector<std::string>& words) {
        const ws::TrigramPosDict& d = *tagger.dict();
        const ws::TagInfo& info = d.getTagInfo();
        const int t = info.getNumTags();
        std::vector<std::vector<std::pair<int, float>>> lists;
        for (const std::string& w : words) {
            const char* l = const_cast<ws::TrigramPosDict&>(d).getWordInfoBuf(
                w.data(), static_cast<int>(w.size()), nullptr);
            lists.emplace_back();
            for (int i = 0; i < ws::TrigramPosDict::getNumTags(l); ++i)
                lists.back().emplace_back(ws::TrigramPosDict::getTagIdAt(l, i) - 1,
                                          ws::TrigramPosDict::getProbAt(l, i));
        }
        double best = -1e300;
        std::vector<size_t> pick(words.size(), 0);
        for (;;) {
            double s = 0;
            for (size_t k = 0; k < words.size(); ++k) {
                const int c = lists[k][pick[k]].first;
                s += lists[k][pick[k]].second;
                if (k == 0) s += info.getInitTagProbVector()[c];
                const int b = k >= 1 ? lists[k - 1][pick[k - 1]].first : 0;
                if (k == 1) s += info.getBigramTagTransProbMatrix()[b * t + c];
                const int a = k >= 2 ? lists[k - 2][pick[k - 2]].first : 0;
                if (k >= 2) s += info.getSmoothedTrigramTagTransProbMatrix()[(a * t + b) * t + c];
            }
            best = std::max(best, s);
            size_t k = 0;
            while (k < words.size() && ++pick[k] == lists[k].size()) pick[k++] = 0;
            if (k == words.size()) return best;
        }
    }

    // The score of the tags the tagger chose.
    double scoreOf(const std::vector<std::string>& words, const std::vector<std::string>& tags) {
        const ws::TagInfo& info = tagger.dict()->getTagInfo();
        const int t = info.getNumTags();
        double s = 0;
        std::vector<int> ids;
        for (size_t k = 0; k < words.size(); ++k) {
            const char* l =
                const_cast<ws::TrigramPosDict*>(tagger.dict())
                    ->getWordInfoBuf(words[k].data(), static_cast<int>(words[k].size()), nullptr);
            const int c = info.getTagId(tags[k].c_str()) - 1;
            for (int i = 0; i < ws::TrigramPosDict::getNumTags(l); ++i)
                if (ws::TrigramPosDict::getTagIdAt(l, i) - 1 == c)
                    s += ws::TrigramPosDict::getProbAt(l, i);
            if (k == 0) s += info.getInitTagProbVector()[c];
            if (k == 1) s += info.getBigramTagTransProbMatrix()[ids[0] * t + c];
            if (k >= 2)
                s += info.getSmoothedTrigramTagTransProbMatrix()[(ids[k - 2] * t + ids[k - 1]) * t +
                                                                 c];
            ids.push_back(c);
        }
        return s;
    }

    zeg_test::TempDir dir;
    ws::TrigramPosTagger tagger{nullptr};
    ws::TextSegmentation seg;
    std::vector<unsigned short> text, work;
};

TEST_F(TaggerTest, SmallCases) {
    load(0);
    // One word: initial + word score; 学习 v: ln 30/90 + ln .2 beats n: ln 60/90 + ln .05.
    EXPECT_EQ(tag({"学习"}), std::vector<std::string>{"v"});
    // 好 lists a and v with equal scores; v's initial score is far better.
    EXPECT_EQ(tag({"好"}), std::vector<std::string>{"v"});
    // Two words: only the bigram table; a-n seen (10/100), v-n seen (20/100)
    // and v's initial score decide for v.
    EXPECT_EQ(tag({"好", "学习"}), (std::vector<std::string>{"v", "n"}));
    // Ties go to the tag listed first: nr and nt both score 10 and neither
    // was seen first in a text.
    EXPECT_EQ(tag({"某某某"}, ws::WS_PROPERTY_PER_ME | ws::WS_PROPERTY_ORG),
              std::vector<std::string>{"nr"});
    EXPECT_EQ(tag({"，", "，", "，"}), (std::vector<std::string>{"w", "w", "w"}));
    EXPECT_EQ(tag({"北京", "的", "学习", "好"}).size(), 4u);
}

TEST_F(TaggerTest, ViterbiFindsTheBestSequence) {
    const unsigned seed = static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed());
    std::mt19937 rng(seed);
    for (unsigned model = 1; model <= 4; ++model) {
        load(seed * 4 + model);
        for (int round = 0; round < 30; ++round) {
            std::vector<std::string> words(1 + rng() % 6);
            for (std::string& w : words) w = kWords[rng() % 10];
            const std::vector<std::string> tags = tag(words);
            EXPECT_NEAR(scoreOf(words, tags), bruteForce(words), 1e-3)
                << "model " << seed * 4 + model << " round " << round;
        }
    }
}

TEST_F(TaggerTest, WarmTaggerAllocatesNothing) {
    load(0);
    const std::vector<std::string> words = {"北京", "的", "学习", "好", "未知", "，", "学习", "好"};
    tag(words);
    const size_t before = zeg_test::allocationCount();
    EXPECT_EQ(tagger.annotate(seg), 0);
    EXPECT_EQ(zeg_test::allocationCount(), before);
}

}  // namespace
