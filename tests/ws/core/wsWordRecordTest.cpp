#include "ws/core/wsWordRecord.h"

#include <gtest/gtest.h>

#include <string>

using ws::WORD_T;
using ws::WORD_UTF8_T;

namespace {

TEST(WordRecord, ConstructorTakesTheFieldsInInterfaceOrder) {
    const std::u16string text = u"北京大学";
    const unsigned short* t = reinterpret_cast<const unsigned short*>(text.data());
    unsigned char usr[3] = {};
    WORD_T w(t + 2, 2, t, 4, ws::WS_PROPERTY_ORG, 6, 77, usr, 3, 5, 9);
    EXPECT_EQ(w.word, t + 2);
    EXPECT_EQ(w.wordLen, 2u);
    EXPECT_EQ(w.orgWord, t);
    EXPECT_EQ(w.orgWordLen, 4u);
    EXPECT_EQ(w.prop, ws::WS_PROPERTY_ORG);
    EXPECT_EQ(w.tag, 6);
    EXPECT_EQ(w.wordId, 77);
    EXPECT_EQ(w.usrValue, usr);
    EXPECT_EQ(w.usrValueLen, 3u);
    EXPECT_EQ(w.subWordNum, 5u);
    EXPECT_EQ(w.subWordStart, 9);
    EXPECT_TRUE(w.types.empty());
    EXPECT_TRUE(w.props.empty());
    EXPECT_TRUE(w.semItems.empty());
}

TEST(WordRecord, CopySharesTheTextAndCopiesTheLists) {
    const char utf8[] = "北京大学";
    WORD_UTF8_T w(utf8, 6, nullptr, 0, ws::WS_PROPERTY_WORD, 0, 12, nullptr, 0, 2, 0);
    w.types.push_back({3, 0.5f});
    w.props.push_back(-4);
    w.semItems.push_back({0, 3});

    WORD_UTF8_T copy(w);
    EXPECT_EQ(copy.word, utf8);
    copy.types[0].weight = 2.0f;
    copy.props.push_back(8);
    copy.semItems[0].length = 6;
    EXPECT_EQ(w.types[0].weight, 0.5f);
    EXPECT_EQ(w.props.size(), 1u);
    EXPECT_EQ(w.semItems[0].length, 3);
    EXPECT_EQ(copy.semItems[0].offset, 0);
}

}  // namespace
