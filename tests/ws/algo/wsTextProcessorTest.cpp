// The space processor and the width-and-case normaliser on small texts.
#include <gtest/gtest.h>

#include "support/TempDir.h"
#include "ws/algo/wsNormalizer.h"
#include "ws/algo/wsSpaceProcessor.h"
#include "ws/core/wsTextSegmentation.h"
#include "wsTextUtil.h"

namespace {

// A segmentation of `org` with its two work buffers.
struct Text {
    explicit Text(const std::u16string& s)
        : org(zeg_test::units(s)), spaceFree(org.size() + 1), folded(org.size() + 1) {
        EXPECT_TRUE(seg.init(org.data(), spaceFree.data(), folded.data(),
                             static_cast<unsigned>(org.size())));
    }
    std::string current() const { return zeg_test::utf8(seg.text, seg.textLen); }

    std::vector<unsigned short> org, spaceFree, folded;
    ws::TextSegmentation seg;
};

class SpaceProcessorTest : public ::testing::Test {
protected:
    void SetUp() override {
        // Space, ideographic space and the line feed that ends the line.
        ASSERT_TRUE(spaces.loadText(dir.write("space.txt", "spacelist= \u3000\nend#\n")));
    }
    zeg_test::TempDir dir;
    ws::SpaceProcessor spaces;
};

TEST_F(SpaceProcessorTest, KeepsOnlySpacesThatSeparateLatinOrDigits) {
    const struct {
        std::u16string in;
        const char* out;
        std::vector<unsigned int> removed;
    } cases[] = {
        {u"北 京", "北京", {1}},
        {u"北\u3000\u3000京", "北京", {1, 2}},
        {u"a   b", "a b", {1, 2}},       // a run becomes its last space
        {u"a \u3000b", "a\u3000b", {1}},
        {u"北 a", "北 a", {}},
        {u"1 北", "1 北", {}},
        {u"北 \uFF15", "北 \uFF15", {}},  // a full-width digit is not Chinese
        {u"  北京 \n", "北京", {0, 1, 4, 5}},
        {u"学生", "学生", {}},
    };
    for (const auto& c : cases) {
        Text t(c.in);
        t.seg.recordRemovedSpaces = 1;
        ASSERT_EQ(spaces.doPreProcess(t.seg), 0);
        EXPECT_EQ(t.current(), c.out);
        EXPECT_EQ(t.seg.spaceFreeLen, t.seg.textLen);
        EXPECT_EQ(t.seg.removedSpaces, c.removed) << t.current();
    }
}

TEST_F(SpaceProcessorTest, OnlySpacesLeaveTheSegmentationAlone) {
    Text t(u" \u3000 ");
    t.seg.recordRemovedSpaces = 1;
    EXPECT_EQ(spaces.removeSpace(t.seg), -1);
    EXPECT_EQ(t.seg.text, t.org.data());
    EXPECT_EQ(t.seg.textLen, 3u);
    EXPECT_TRUE(t.seg.removedSpaces.empty());
    EXPECT_EQ(spaces.doPostProcess(t.seg), -1);
}

TEST_F(SpaceProcessorTest, RestoreMapsWordsOntoTheCallersText) {
    Text t(u"北 京 大学生");
    t.seg.recordRemovedSpaces = 1;
    ASSERT_EQ(spaces.removeSpace(t.seg), 0);
    ASSERT_EQ(t.current(), "北京大学生");
    std::vector<ws::WORD_T> words;
    for (auto span : {std::make_pair(0u, 2u), {2u, 2u}, {4u, 1u}})
        words.emplace_back(t.seg.text + span.first, span.second, nullptr, 0u, 1, 0, -1, nullptr,
                           0u, 0u, -1);
    EXPECT_EQ(spaces.restoreSpace(t.seg, words, 1), 0);
    EXPECT_EQ(words[0].orgWord, nullptr);  // before `first`: untouched
    EXPECT_EQ(spaces.restoreSpace(t.seg, words, 0), 0);
    const std::pair<long, unsigned> expected[] = {{0, 3}, {4, 2}, {6, 1}};
    for (size_t i = 0; i < words.size(); ++i) {
        EXPECT_EQ(words[i].orgWord - t.org.data(), expected[i].first) << i;
        EXPECT_EQ(words[i].orgWordLen, expected[i].second) << i;
    }
}

TEST_F(SpaceProcessorTest, RefusesADefinitionWithoutSpaces) {
    ws::SpaceProcessor p;
    EXPECT_FALSE(p.loadText(dir.write("none.txt", "delimiterlist=,end#\n")));
    EXPECT_FALSE(p.loadText(dir.write("empty.txt", "spacelist=end#\n")));
    EXPECT_FALSE(p.loadText(dir.file("absent.txt")));
}

TEST(Normalizer, FoldsWidthAndCaseByMode) {
    const std::u16string in = u"aZ\uFF21\u3000\uFF76";
    const struct {
        int mode;
        std::u16string out;
    } cases[] = {
        {0, in},
        {1, u"AZ\uFF21\u3000\uFF76"},
        {2, u"az\uFF21\u3000\uFF76"},
        {3, u"aZA \u0096"},  // every unit above U+FF00 moves, half-width forms too
        {4, u"AZA \u0096"},
        {5, u"aza \u0096"},
        {9, in},
    };
    ws::Normalizer folding;
    for (const auto& c : cases) {
        Text t(in);
        t.seg.normalizeMode = c.mode;
        EXPECT_EQ(folding.doPreProcess(t.seg), 0);
        EXPECT_EQ(std::u16string(t.seg.text, t.seg.text + t.seg.textLen), c.out) << c.mode;
        EXPECT_EQ(t.seg.text, t.folded.data());
        EXPECT_EQ(t.seg.normalizedLen, t.seg.textLen);
        EXPECT_EQ(t.org, zeg_test::units(in));
    }
}

TEST(Normalizer, UnfoldsToTheCallersTextOrTheSpaceFreeOne) {
    ws::Normalizer folding;
    Text t(u"AB");
    folding.normalize(t.seg);
    EXPECT_EQ(folding.doPostProcess(t.seg), 0);
    EXPECT_EQ(t.seg.text, t.org.data());
    t.seg.denormalizeToSpaceFree = 1;
    folding.denormalize(t.seg);
    EXPECT_EQ(t.seg.text, t.spaceFree.data());
}

}  // namespace
