#include "ws/core/wsTextSegmentation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/AllocationCounter.h"

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

// What the stages of one call leave behind: a shortened text in a work
// buffer, a removed space, candidates, a filled lattice and two-unit words.
void runStages(TextSegmentation& seg) {
    seg.text = seg.spaceFreeText;
    seg.textLen = seg.spaceFreeLen = seg.textLen - 1;
    seg.removedSpaces.push_back(0);
    for (ws::NewWordBuffer& buffer : seg.newWordBuffers) {
        buffer.words[0] = {2, {1, 1}, 1, 9};
        buffer.count = 1;
    }
    seg.resultByDict.valid = 1;
    seg.resultByDict.scores[1] = 2.5;
    for (unsigned int p = 0; p + 1 < seg.textLen; p += 2) {
        seg.result.cells[p].len = 2;
        seg.result.cells[p].subWords.assign({1, 1});
    }
}

TEST(TextSegmentation, InitStartsEachTextAfreshButRefusesAnEmptyOne) {
    TextSegmentation seg;
    EXPECT_EQ(seg.getSegResultWordNum(), 0u);
    seg.addNewWordBuffer(ws::WS_PROPERTY_NUM, 10.0f);
    seg.denormalizeToSpaceFree = 1;
    seg.normalizeMode = 4;
    Text text(u"北京邮电大学");
    ASSERT_TRUE(text.initInto(seg));
    EXPECT_EQ(seg.getSegResultWordNum(), 6u);
    runStages(seg);

    Text empty(u"");
    EXPECT_FALSE(empty.initInto(seg));
    EXPECT_FALSE(seg.init(nullptr, text.spaceFree.data(), text.normalized.data(), 3));
    EXPECT_EQ(seg.text, text.spaceFree.data());
    EXPECT_EQ(seg.getSegResultWordNum(), 3u);

    ASSERT_TRUE(text.initInto(seg));
    EXPECT_EQ(seg.text, text.org.data());
    EXPECT_EQ(seg.textLen + seg.spaceFreeLen + seg.normalizedLen, 18u);
    EXPECT_TRUE(seg.removedSpaces.empty());
    const ws::NewWordBuffer::Record& r = seg.newWordBuffers[0].words[0];
    EXPECT_EQ(seg.newWordBuffers[0].count + r.len + r.flag + r.attr + r.subWords.size(), 0u);
    EXPECT_EQ(seg.resultByDict.valid, 0u);
    EXPECT_EQ(seg.getSegResultWordNum(), 6u);
    // The text processors' settings belong to the segmenter, not to the text.
    EXPECT_EQ(seg.denormalizeToSpaceFree, 1);
    EXPECT_EQ(seg.normalizeMode, 4);
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
    Text text(10), longer(20), shorter(5);
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
    EXPECT_EQ(seg.getSegResultWordNum(), 0u);
    // Every buffer is left freed with its capacity as it was.
    EXPECT_TRUE(seg.newWordBuffers[0].words.empty());
    EXPECT_TRUE(seg.resultByDict.scores.empty());
    EXPECT_TRUE(seg.result.cells.empty());
    EXPECT_EQ(seg.newWordBuffers[0].capacity + seg.resultByDict.capacity + seg.result.capacity,
              30u);

    // The next text rebuilds the freed buffers, even a shorter one.
    ASSERT_TRUE(shorter.initInto(seg));
    EXPECT_EQ(seg.getSegResultWordNum(), 5u);
    EXPECT_EQ(seg.resultByDict.scores.size(), 7u);
}

}  // namespace
