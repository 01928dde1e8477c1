#include "ws/dict/wsMaxentDict.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "support/TempDir.h"
#include "ws/core/wsWsLogger.h"

using testing::HasSubstr;
using ws::MaxentDict;

namespace {

std::string key(const char16_t* s) {
    return std::string(reinterpret_cast<const char*>(s), std::char_traits<char16_t>::length(s) * 2);
}

// Alphas 0.5 (the smallest) .. 4.0 (the largest); the last id, 1.0, is the
// default.
const char kAlphas[] = "1 0.5\n2 4.0\n3 2.0\nbad line\n4 1.0\n";
const char kFeatures[] =
    "1 10 0 王 0\n"      // one character, template 0 (group 2), label 0: slot 8
    "2 10 1 小 2\n"      // template 2 (group 1), label 1: slot 5
    "3 10 3 王小 5\n"    // a pair, template 5 (group 1), label 3: slot 7
    "1 10 2 张三丰 0\n"  // three characters: skipped
    "9 10 0 李 0\n";     // an id without an alpha: skipped

class MaxentDictTest : public testing::Test {
protected:
    void SetUp() override {
        alphas = dir.write("alpha.txt", kAlphas);
        features = dir.write("freq.txt", kFeatures);
        model = dir.file("model.bin");
        ws::WsLogger::getWsLogger()->init("ws", "", ws::Logger::LEVEL_WARN, ws::Logger::LEVEL_WARN);
        testing::internal::CaptureStderr();
        built = dict.buildDict(features.c_str(), alphas.c_str(), model.c_str());
        log = testing::internal::GetCapturedStderr();
        ws::WsLogger::getWsLogger()->init("ws", "", ws::Logger::LEVEL_ERROR, ws::Logger::LEVEL_ERROR);
    }

    std::string bytes() const { return zeg_test::TempDir::read(model); }

    zeg_test::TempDir dir;
    std::string alphas, features, model, log;
    MaxentDict dict;
    bool built = false;
};

TEST_F(MaxentDictTest, BuildsCodesFromTheAlphaRange) {
    ASSERT_TRUE(built) << log;
    EXPECT_EQ(dict.match(key(u"王").data(), 2)[8], 0);    // the smallest alpha
    EXPECT_EQ(dict.match(key(u"小").data(), 2)[5], 254);  // the largest; 255 is reserved
    EXPECT_EQ(dict.match(key(u"王小").data(), 4)[7], dict.alphaF2I(2.0f));
    EXPECT_EQ(dict.defaultCode(), dict.alphaF2I(1.0f));
    EXPECT_EQ(dict.match(key(u"王").data(), 2)[0], dict.defaultCode());
    // Twelve codes of 0 are twelve smallest alphas; twelve of 254 nearly the largest.
    EXPECT_NEAR(dict.codeSum(0) / std::pow(0.5, 12), 1.0, 1e-6);
    EXPECT_NEAR(dict.codeSum(12 * 254) / std::pow(4.0, 12), std::exp(-12 * std::log(8.0) / 255), 1e-6);
    EXPECT_TRUE(dict.isCharFeature(u'王'));
    EXPECT_FALSE(dict.isCharFeature(u'小'));
    EXPECT_THAT(log, HasSubstr("What should I suppose to do?"));
    EXPECT_THAT(log, HasSubstr("freq.txt:5: a feature id without an alpha"));
    EXPECT_THAT(log, HasSubstr("alpha.txt:4:"));
}

TEST_F(MaxentDictTest, UnknownKeysAndIndexZeroReadTheDefaultRecord) {
    for (const unsigned char* r : {dict[0u], dict.match(key(u"的").data(), 2), dict[9999u]}) {
        EXPECT_EQ(r, dict.defaultRecord());
        for (int i = 0; i < MaxentDict::kRecordSize; ++i) EXPECT_EQ(r[i], dict.defaultCode());
    }
}

TEST_F(MaxentDictTest, RecordsOfALaterBlockStartAtTheDefaultCode) {
    float alpha = 4.0f;
    int last = 0;
    for (char16_t c = 0x4E00; c < 0x4E00 + 1100; ++c) last = dict.add(key(std::u16string(1, c).c_str()).data(), 2, 3, alpha);
    EXPECT_EQ(dict.capacity(), 2048);
    const unsigned char* r = dict[static_cast<unsigned>(last)];
    for (int i = 0; i < MaxentDict::kRecordSize; ++i)
        EXPECT_EQ(r[i], i == 3 ? 254 : dict.defaultCode()) << i;
}

TEST_F(MaxentDictTest, StreamBufferAndMappedLoadsAgree) {
    ASSERT_TRUE(built);
    const std::string b = bytes();
    MaxentDict fromBuffer, fromStream, mapped;
    ASSERT_EQ(fromBuffer.loadDict(b.data(), static_cast<unsigned>(b.size())), 0);
    std::FILE* f = std::fopen(model.c_str(), "rb");
    ASSERT_EQ(fromStream.loadDict(f), 0);
    std::fclose(f);
    ASSERT_EQ(mapped.loadDict(model.c_str()), 0);
    float alpha = 1.0f;
    EXPECT_EQ(mapped.add(key(u"新").data(), 2, 0, alpha), 0);  // mapped models are read-only
    for (const MaxentDict* d : {&fromBuffer, &fromStream, &mapped}) {
        for (const char16_t* k : {u"王", u"小", u"王小", u"的"})
            EXPECT_EQ(0, std::memcmp(d->match(key(k).data(), key(k).size()),
                                     dict.match(key(k).data(), key(k).size()), 20));
        EXPECT_TRUE(d->isCharFeature(u'王'));
        EXPECT_EQ(d->codeSum(3000), dict.codeSum(3000));
        EXPECT_EQ(d->defaultCode(), dict.defaultCode());
    }
}

TEST_F(MaxentDictTest, DamagedFilesFailToLoadAndLeaveTheModelEmpty) {
    ASSERT_TRUE(built);
    const std::string good = bytes();
    std::vector<std::pair<std::string, int>> cases;
    for (size_t cut : {size_t{0}, size_t{100}, size_t{MaxentDict::kHeaderBytes - 1}})
        cases.emplace_back(good.substr(0, cut), ws::WS_ERR_FILE_TOO_SMALL);
    for (size_t cut : {size_t{MaxentDict::kHeaderBytes + 10}, size_t{MaxentDict::kRecordsOffset + 30},
                       good.size() - 40})
        cases.emplace_back(good.substr(0, cut), cut < good.size() - 100 ? ws::WS_ERR_OPEN_FILE : ws::WS_ERR_TEXT);
    std::string negative = good, overUsed = good;
    const int32_t minus = -1, tooMany = 1 << 20;
    std::memcpy(&negative[0], &minus, 4);
    std::memcpy(&overUsed[4], &tooMany, 4);
    cases.emplace_back(negative, ws::WS_ERR_OPEN_FILE);
    cases.emplace_back(overUsed, ws::WS_ERR_OPEN_FILE);
    for (const auto& c : cases) {
        MaxentDict d;
        EXPECT_EQ(d.loadDict(c.first.data(), static_cast<unsigned>(c.first.size())), c.second)
            << c.first.size();
        EXPECT_EQ(d.match(key(u"王").data(), 2), d.defaultRecord());
    }
}

TEST_F(MaxentDictTest, LabelPairSumsAddTheDigitKeysOuterGroups) {
    float alpha = 4.0f;
    dict.add(key(u"1").data(), 2, 16 + 2, alpha);  // group 4 of label 1's key, label 2
    dict.add(key(u"3").data(), 2, 2, alpha);       // group 0 of label 3's key, label 2
    dict.buildPOSConditionalProbTable();
    const int d = dict.defaultCode();
    EXPECT_EQ(dict.labelPairSum(1, 3, 2), 1 + 254 + 254);
    EXPECT_EQ(dict.labelPairSum(1, 3, 0), 1 + d + d);
    EXPECT_EQ(dict.labelPairSum(0, 0, 2), 1 + d + d);
}

}  // namespace
