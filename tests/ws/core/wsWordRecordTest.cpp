#include "ws/core/wsWordRecord.h"

#include <gtest/gtest.h>

namespace {

TEST(WordRecord, CopySharesTheTextAndCopiesTheLists) {
    const char utf8[] = "北京大学";
    unsigned char usr[2] = {};
    ws::WORD_UTF8_T w(utf8 + 3, 3, nullptr, 0, ws::WS_PROPERTY_WORD, 6, 12, usr, 2, 5, 9);
    EXPECT_EQ(w.subWordNum, 5u);
    EXPECT_EQ(w.subWordStart, 9);
    EXPECT_TRUE(w.types.empty() && w.props.empty() && w.semItems.empty());
    w.types.push_back({3, 0.5f});
    w.semItems.push_back({0, 3});

    ws::WORD_UTF8_T copy(w);
    EXPECT_EQ(copy.word, utf8 + 3);
    EXPECT_EQ(copy.usrValue, usr);
    copy.types[0].weight = 2.0f;
    copy.props.push_back(8);
    copy.semItems[0].length = 6;
    EXPECT_EQ(w.types[0].weight, 0.5f);
    EXPECT_TRUE(w.props.empty());
    EXPECT_EQ(w.semItems[0].length, 3);
}

}  // namespace
