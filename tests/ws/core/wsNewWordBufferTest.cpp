#include "ws/core/wsNewWordBuffer.h"

#include <gtest/gtest.h>

#include "ws/core/wsWordRecord.h"

using ws::NewWordBuffer;

namespace {

TEST(NewWordBuffer, HoldsNoRecordsUntilTheFirstText) {
    NewWordBuffer names(ws::WS_PROPERTY_PER_ME, 0.75f);
    EXPECT_EQ(names.capacity, 0u);
    EXPECT_TRUE(names.words.empty());
    EXPECT_EQ(names.count, 0u);
    EXPECT_EQ(names.prop, ws::WS_PROPERTY_PER_ME);
    EXPECT_EQ(names.threshold, 0.75f);

    ASSERT_TRUE(names.init(6));
    EXPECT_EQ(names.capacity, 6u);
    ASSERT_EQ(names.words.size(), 6u);
    EXPECT_EQ(names.words[5].len, 0);
}

TEST(NewWordBuffer, ReinitWithdrawsTheCandidatesOfThePrefix) {
    NewWordBuffer numbers(ws::WS_PROPERTY_NUM, 10.0f);
    ASSERT_TRUE(numbers.init(6));
    for (NewWordBuffer::Record& r : numbers.words) {
        r.len = 3;
        r.subWords.assign({2, 1});
        r.flag = 1;
        r.attr = 4;
    }
    numbers.count = 6;

    ASSERT_TRUE(numbers.init(3));
    EXPECT_EQ(numbers.capacity, 6u);
    EXPECT_EQ(numbers.count, 0u);
    for (unsigned int i = 0; i < 3; ++i) {
        EXPECT_EQ(numbers.words[i].len, 0);
        EXPECT_TRUE(numbers.words[i].subWords.empty());
        EXPECT_EQ(numbers.words[i].flag, 0);
        EXPECT_EQ(numbers.words[i].attr, 0);
    }
    EXPECT_EQ(numbers.words[3].len, 3);
}

}  // namespace
