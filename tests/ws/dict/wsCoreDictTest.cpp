#include "ws/dict/wsCoreDict.h"

#include <gtest/gtest.h>

#include "wsDictTestUtil.h"

using ws::SemItem;
using ws::WordType;
using ws::WsCoreDict;

namespace {

std::string asString(const std::vector<unsigned char>& v) { return std::string(v.begin(), v.end()); }

class WsCoreDictTest : public ::testing::Test {
protected:
    void SetUp() override {
        const unsigned char usr[] = {'u', 's', 'r'};
        rich = zeg_test::addWord(
            dict, "北京大学", 4.5f,
            asString(WsCoreDict::encodeValue({2, 4}, {{3, 0.5f}, {-7, 2.0f}}, {{0, 2}, {2, 2}},
                                             usr, 3)));
        bare = zeg_test::addWord(dict, "大学", 1.0f, asString(WsCoreDict::encodeValue({}, {}, {},
                                                                                      nullptr, 0)));
        none = zeg_test::addWord(dict, "学", 1.0f);
    }

    unsigned char* value(int id) {
        unsigned char* v = nullptr;
        float w = 0;
        dict.getValue(id, &v, w);
        return v;
    }

    WsCoreDict dict;
    int rich = 0, bare = 0, none = 0;
};

TEST_F(WsCoreDictTest, EncodesTheDocumentedLayout) {
    const unsigned char usr[] = {9};
    const std::vector<unsigned char> v =
        WsCoreDict::encodeValue({7}, {{0x0102, 1.0f}}, {{3, 4}}, usr, 1);
    const std::vector<unsigned char> expected = {1, 7, 1, 0x02, 0x01, 0, 0, 0x80, 0x3F, 1, 3, 4, 9};
    EXPECT_EQ(v, expected);
}

TEST_F(WsCoreDictTest, ReadersReturnEveryPart) {
    std::vector<int> gran;
    std::vector<short> props;
    std::vector<float> weights;
    std::vector<SemItem> sems;
    EXPECT_EQ(dict.getAllInfo(value(rich), gran, props, weights, sems), 2);
    EXPECT_EQ(gran, (std::vector<int>{2, 4}));
    EXPECT_EQ(props, (std::vector<short>{3, -7}));
    EXPECT_EQ(weights, (std::vector<float>{0.5f, 2.0f}));
    ASSERT_EQ(sems.size(), 2u);
    EXPECT_EQ(sems[1].offset, 2);
    EXPECT_EQ(sems[1].length, 2);

    std::vector<WordType> types;
    EXPECT_EQ(dict.getPropWght(value(rich), types), 2);
    EXPECT_EQ(types[1].type, -7);
    EXPECT_EQ(types[1].weight, 2.0f);

    unsigned char* usr = nullptr;
    EXPECT_EQ(dict.getUsrValue(rich, &usr), 3);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(usr), 3), "usr");
}

TEST_F(WsCoreDictTest, EmptyAndMissingValues) {
    unsigned char* usr = reinterpret_cast<unsigned char*>(this);
    EXPECT_EQ(dict.getUsrValue(bare, &usr), 0);
    EXPECT_EQ(usr, nullptr);
    std::vector<int> gran;
    EXPECT_EQ(dict.getGran(value(bare), gran), 0);
    EXPECT_EQ(value(none), nullptr);
    EXPECT_EQ(dict.getGran(nullptr, gran), -1);
    std::vector<short> props;
    std::vector<float> weights;
    std::vector<SemItem> sems;
    std::vector<WordType> types;
    EXPECT_EQ(dict.getAllInfo(nullptr, gran, props, weights, sems), -1);
    EXPECT_EQ(dict.getPropWght(nullptr, types), -1);
    EXPECT_EQ(dict.getSemItems(nullptr, sems), -1);
    EXPECT_EQ(dict.getUsrValue(-1, &usr), 0);
    EXPECT_EQ(dict.getUsrValue(none, &usr), 0);
}

TEST_F(WsCoreDictTest, CountsThatOverrunTheRecordReadAsEmpty) {
    // G = 3 with one byte after it, then P = 200 with nothing after it.
    const int g = zeg_test::addWord(dict, "国", 1.0f, std::string("\x03\x01", 2));
    const int p = zeg_test::addWord(dict, "家", 1.0f, std::string("\x00\xC8\x00", 3));
    for (int id : {g, p}) {
        std::vector<int> gran;
        std::vector<short> props;
        std::vector<float> weights;
        std::vector<SemItem> sems;
        EXPECT_EQ(dict.getAllInfo(value(id), gran, props, weights, sems), 0) << id;
        EXPECT_TRUE(gran.empty() && props.empty() && sems.empty()) << id;
        unsigned char* usr = nullptr;
        EXPECT_EQ(dict.getUsrValue(id, &usr), 0);
        EXPECT_EQ(usr, nullptr);
    }
}

}  // namespace
