#include "ws/core/wsTextSegmentation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/AllocationCounter.h"
#include "ws/core/wsRecognizer.h"
#include "ws/core/wsTextProcessor.h"

using testing::ContainsRegex;
using testing::HasSubstr;
using ws::TextSegmentation;

namespace {

// A caller's text with the two work buffers the core keeps beside it.
struct Text {
    explicit Text(const std::u16string& s)
        : org(s.begin(), s.end()), spaceFree(s.size()), normalized(s.size()) {}
    explicit Text(std::size_t n) : Text(std::u16string(n, u'字')) {}

    bool initInto(TextSegmentation& seg) {
        return seg.init(org.data(), spaceFree.data(), normalized.data(),
                        static_cast<unsigned int>(org.size()));
    }

    std::vector<unsigned short> org, spaceFree, normalized;
};

// Drops the first character the way space removal shortens a text.
class DropFirst : public ws::TextProcessor {
public:
    int doPreProcess(TextSegmentation& seg) override {
        for (unsigned int i = 1; i < seg.textLen; ++i) seg.spaceFreeText[i - 1] = seg.text[i];
        seg.text = seg.spaceFreeText;
        seg.textLen = seg.spaceFreeLen = seg.textLen - 1;
        seg.removedSpaces.push_back(0);
        return 0;
    }
    int doPostProcess(TextSegmentation&) override { return 0; }
};

// Proposes a two-character number, split in two, at every even position.
class Pairs : public ws::Recognizer {
public:
    int doRecognize(TextSegmentation& seg) override {
        ws::NewWordBuffer& buffer = seg.newWordBuffers[seg.getPropIdx(ws::WS_PROPERTY_NUM)];
        for (unsigned int p = 0; p + 1 < seg.textLen; p += 2) {
            buffer.words[p].len = 2;
            buffer.words[p].subWords.assign({1, 1});
            buffer.words[p].flag = 1;
            buffer.words[p].attr = 9;
        }
        buffer.count = 1;
        return 0;
    }
    int getProperty(std::vector<unsigned short>& props) override {
        props.push_back(ws::WS_PROPERTY_NUM);
        return 1;
    }
};

// One pass of every kind of stage over `seg`, leaving something in each
// field that init must undo.
void runStages(TextSegmentation& seg) {
    DropFirst().doPreProcess(seg);
    Pairs().doRecognize(seg);
    seg.resultByDict.valid = 1;
    seg.resultByDict.scores[1] = 2.5;
    for (unsigned int p = 0; p + 1 < seg.textLen; p += 2) {
        seg.result.cells[p].len = 2;
        seg.result.cells[p].subWords.assign({1, 1});
        seg.result.cells[p].wordId = 42;
    }
}

TEST(TextSegmentation, RefusesAnEmptyOrMissingTextAndKeepsTheLastOne) {
    TextSegmentation seg;
    EXPECT_EQ(seg.getSegResultWordNum(), 0u);
    seg.addNewWordBuffer(ws::WS_PROPERTY_NUM, 10.0f);
    Text text(u"北京邮电大学");
    ASSERT_TRUE(text.initInto(seg));
    runStages(seg);

    Text empty(u"");
    EXPECT_FALSE(empty.initInto(seg));
    EXPECT_FALSE(seg.init(nullptr, text.spaceFree.data(), text.normalized.data(), 3));
    EXPECT_EQ(seg.text, text.spaceFree.data());
    EXPECT_EQ(seg.textLen, 5u);
    EXPECT_EQ(seg.removedSpaces.size(), 1u);
    EXPECT_EQ(seg.newWordBuffers[0].count, 1u);
    EXPECT_EQ(seg.getSegResultWordNum(), 3u);
}

TEST(TextSegmentation, InitUndoesEveryStageOfThePreviousText) {
    TextSegmentation seg;
    seg.addNewWordBuffer(ws::WS_PROPERTY_NUM, 10.0f);
    seg.denormalizeToSpaceFree = 1;
    seg.recordRemovedSpaces = 1;
    seg.normalizeMode = 4;
    Text text(u"清华大学计算机系");
    ASSERT_TRUE(text.initInto(seg));
    runStages(seg);
    ASSERT_TRUE(text.initInto(seg));

    EXPECT_EQ(seg.orgText, text.org.data());
    EXPECT_EQ(seg.text, seg.orgText);
    EXPECT_EQ(seg.spaceFreeText, text.spaceFree.data());
    EXPECT_EQ(seg.normalizedText, text.normalized.data());
    EXPECT_EQ(seg.textLen, 8u);
    EXPECT_EQ(seg.spaceFreeLen, 8u);
    EXPECT_EQ(seg.normalizedLen, 8u);
    EXPECT_TRUE(seg.removedSpaces.empty());
    const ws::NewWordBuffer& numbers = seg.newWordBuffers[0];
    EXPECT_EQ(numbers.count, 0u);
    for (const ws::NewWordBuffer::Record& r : numbers.words) {
        EXPECT_EQ(r.len, 0);
        EXPECT_EQ(r.flag, 0);
        EXPECT_EQ(r.attr, 0);
        EXPECT_TRUE(r.subWords.empty());
    }
    EXPECT_EQ(seg.resultByDict.valid, 0u);
    EXPECT_EQ(seg.resultByDict.scores[1], -1e300);
    EXPECT_EQ(seg.getSegResultWordNum(), 8u);
    EXPECT_EQ(seg.result.cells[0].wordId, -1);
    // The text processors' own state survives: it belongs to the segmenter, not the text.
    EXPECT_EQ(seg.denormalizeToSpaceFree, 1);
    EXPECT_EQ(seg.recordRemovedSpaces, 1);
    EXPECT_EQ(seg.normalizeMode, 4);
}

TEST(TextSegmentation, ShorterTextKeepsTheCapacityAndResetsOnlyItsPrefix) {
    TextSegmentation seg;
    seg.addNewWordBuffer(ws::WS_PROPERTY_NUM, 10.0f);
    Text longText(100), shortText(10);
    ASSERT_TRUE(longText.initInto(seg));
    for (ws::SegmentResult::Cell& c : seg.result.cells) c.len = 5;
    ASSERT_TRUE(shortText.initInto(seg));

    EXPECT_EQ(seg.result.capacity, 100u);
    EXPECT_EQ(seg.resultByDict.capacity, 100u);
    EXPECT_EQ(seg.newWordBuffers[0].capacity, 100u);
    EXPECT_EQ(seg.getSegResultWordNum(), 10u);
    EXPECT_EQ(seg.result.cells[9].len, 1);
    EXPECT_EQ(seg.result.cells[10].len, 5);
}

TEST(TextSegmentation, CountsWordsByWalkingTheCellLengths) {
    TextSegmentation seg;
    Text text(u"北京邮电大学");
    ASSERT_TRUE(text.initInto(seg));
    seg.result.cells[0].len = 2;
    seg.result.cells[2].len = 2;
    seg.result.cells[4].len = 9;  // runs past the end: still one word
    EXPECT_EQ(seg.getSegResultWordNum(), 3u);

    seg.result.cells[2].len = 0;  // 8-bit wrap of a 256-unit word: stepped over as one unit
    testing::internal::CaptureStderr();
    EXPECT_EQ(seg.getSegResultWordNum(), 4u);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("zero-length word at position 2"));
}

TEST(TextSegmentation, FindsTheFirstBufferOfAProperty) {
    TextSegmentation seg;
    EXPECT_EQ(seg.addNewWordBuffer(ws::WS_PROPERTY_NUM, 10.0f), 0u);
    EXPECT_EQ(seg.addNewWordBuffer(ws::WS_PROPERTY_PER_RULE, 2.5f), 1u);
    EXPECT_EQ(seg.addNewWordBuffer(ws::WS_PROPERTY_NUM, 3.0f), 2u);

    EXPECT_EQ(seg.getPropIdx(ws::WS_PROPERTY_NUM), 0u);
    EXPECT_EQ(seg.getPropIdx(ws::WS_PROPERTY_PER_RULE), 1u);
    EXPECT_EQ(seg.getPropIdx(ws::WS_PROPERTY_ORG), TextSegmentation::kNoBuffer);
    EXPECT_EQ(TextSegmentation::kNoBuffer, 0xFFFFFFFFu);
    EXPECT_EQ(seg.newWordBuffers[1].threshold, 2.5f);
    EXPECT_EQ(seg.newWordBuffers[1].capacity, 0u);
}

TEST(TextSegmentationMemory, InitAllocatesNothingOnceTheLongestTextHasBeenSeen) {
    TextSegmentation seg;
    seg.addNewWordBuffer(ws::WS_PROPERTY_NUM, 10.0f);
    seg.addNewWordBuffer(ws::WS_PROPERTY_PER_ME, 1.0f);
    Text longest(64);
    ASSERT_TRUE(longest.initInto(seg));
    runStages(seg);
    const ws::SegmentResult::Cell* cells = seg.result.cells.data();

    for (std::size_t n : {64, 10, 1, 63, 64}) {
        Text text(n);
        const std::size_t before = zeg_test::allocationCount();
        ASSERT_TRUE(text.initInto(seg));
        EXPECT_EQ(zeg_test::allocationCount() - before, 0u) << "text of " << n;
        runStages(seg);
    }
    EXPECT_EQ(seg.result.cells.data(), cells);

    Text longer(65);
    const std::size_t before = zeg_test::allocationCount();
    ASSERT_TRUE(longer.initInto(seg));
    EXPECT_GT(zeg_test::allocationCount() - before, 0u);
    EXPECT_EQ(seg.result.capacity, 65u);
}

TEST(TextSegmentationMemory, FailedGrowthIsLoggedAndLeavesNoTextToSegment) {
    TextSegmentation seg;
    seg.addNewWordBuffer(ws::WS_PROPERTY_NUM, 10.0f);
    Text text(10), longer(20);
    ASSERT_TRUE(text.initInto(seg));

    testing::internal::CaptureStderr();
    bool grown, added;
    {
        zeg_test::FailingAllocations failing;
        grown = longer.initInto(seg);
        added = seg.addNewWordBuffer(ws::WS_PROPERTY_ORG, 1.0f) != TextSegmentation::kNoBuffer;
    }
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                ContainsRegex("allocate memory fail in wsTextSegmentation\\.cpp:[0-9]+!"));
    EXPECT_FALSE(grown);
    EXPECT_FALSE(added);
    EXPECT_EQ(seg.newWordBuffers.size(), 1u);
    EXPECT_EQ(seg.textLen, 0u);
    EXPECT_EQ(seg.getSegResultWordNum(), 0u);
    // Each buffer is left freed with its capacity as it was.
    EXPECT_TRUE(seg.newWordBuffers[0].words.empty());
    EXPECT_EQ(seg.newWordBuffers[0].capacity, 10u);
    EXPECT_TRUE(seg.resultByDict.positions.empty());
    EXPECT_TRUE(seg.resultByDict.scores.empty());
    EXPECT_TRUE(seg.resultByDict.prev.empty());
    EXPECT_EQ(seg.resultByDict.capacity, 10u);
    EXPECT_TRUE(seg.result.cells.empty());
    EXPECT_EQ(seg.result.capacity, 10u);

    // A freed buffer is rebuilt by the next text, even a shorter one.
    Text shorter(5);
    ASSERT_TRUE(shorter.initInto(seg));
    EXPECT_EQ(seg.getSegResultWordNum(), 5u);
    EXPECT_EQ(seg.resultByDict.scores.size(), 7u);
}

}  // namespace
