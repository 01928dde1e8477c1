#include "ws/dict/wsBaseDict.h"

#include <gtest/gtest.h>

#include "ws/core/wsWsLogger.h"
#include "wsDictTestUtil.h"

using ws::BaseDict;

namespace {

int addKey(BaseDict& d, const std::string& key, float value) {
    return d.add(key.data(), static_cast<unsigned>(key.size()), value);
}

float valueOf(const BaseDict& d, const std::string& key) {
    const char* entry = d.match(key.data(), static_cast<unsigned>(key.size()));
    return entry != nullptr ? ws::DATDict::recordWeight(entry) : -1.0f;
}

TEST(BaseDict, EqualValuesShareOneEntry) {
    BaseDict d;
    EXPECT_EQ(addKey(d, "a", 0.5f), 1);
    EXPECT_EQ(addKey(d, "b", 0.25f), 2);
    EXPECT_EQ(addKey(d, "c", 0.5f), 1);
    EXPECT_EQ(d.used(), 3);
    EXPECT_EQ(d.getDataMax(), 1024u);
    // Same key, same value: the same index; another value re-points it.
    EXPECT_EQ(addKey(d, "a", 0.5f), 1);
    EXPECT_EQ(addKey(d, "a", 0.75f), 3);
    EXPECT_EQ(valueOf(d, "a"), 0.75f);
    EXPECT_EQ(valueOf(d, "c"), 0.5f);
    EXPECT_EQ(d.used(), 4);
    EXPECT_EQ(d.maxKeyBytes(), 1u);
    EXPECT_EQ(d[0u], nullptr);
    EXPECT_EQ(d[4u], nullptr);
    unsigned char* extra = reinterpret_cast<unsigned char*>(&d);
    float w = 0;
    EXPECT_EQ(d.getValue(1, &extra, w), 0);
    EXPECT_EQ(extra, nullptr);
    // Records with extra bytes have no place among the floats.
    EXPECT_EQ(d.add("d", 1, &w, nullptr, 0), 0);
    unsigned short key[] = {0x4e2d};
    EXPECT_EQ(d.add(key, 1, &w, nullptr, 0), 0);
    EXPECT_EQ(d.used(), 4);
}

TEST(BaseDict, RoundTripAndItsOwnMagic) {
    BaseDict d;
    for (int i = 0; i < 50; ++i) addKey(d, "key" + std::to_string(i), static_cast<float>(i % 7));
    const std::string bytes = zeg_test::serializeDict(d);
    EXPECT_EQ(bytes.substr(0, 15), std::string("BaseDict_v_1_0\0", 15));
    EXPECT_EQ(bytes.size() % 4, 0u);

    zeg_test::TempDir dir;
    const std::string path = dir.write("base.dict", bytes);
    BaseDict mapped, stream;
    ASSERT_EQ(mapped.loadDict(path.c_str()), 0);
    ASSERT_EQ(zeg_test::loadDictFromStream(stream, bytes), 0);
    for (int i = 0; i < 50; ++i) {
        const std::string k = "key" + std::to_string(i);
        EXPECT_EQ(valueOf(mapped, k), static_cast<float>(i % 7));
        EXPECT_EQ(valueOf(stream, k), static_cast<float>(i % 7));
    }
    EXPECT_EQ(addKey(mapped, "new", 1.0f), 0);
    // Loaded already: a second path is not even looked at.
    EXPECT_EQ(mapped.loadDict(dir.file("missing").c_str()), 0);

    ws::DATDict plain;
    EXPECT_EQ(plain.loadDict(path.c_str()), ws::WS_ERR_VERSION);
    BaseDict wrong;
    zeg_test::AlignedBuffer words(zeg_test::serializeDict(plain));
    EXPECT_EQ(wrong.loadDict(words.data(), static_cast<unsigned>(words.size())),
              ws::WS_ERR_VERSION);
}

TEST(BaseDict, AnArrayLargerThanTheFileIsRefused) {
    BaseDict d;
    addKey(d, "a", 1.0f);
    std::string bytes = zeg_test::serializeDict(d);
    // 4 x dataMax must fit: a count that fits as bytes but not as entries.
    const uint32_t dataMax = static_cast<uint32_t>(bytes.size()) / 2;
    std::memcpy(&bytes[32], &dataMax, 4);
    zeg_test::AlignedBuffer buffer(bytes);
    BaseDict l;
    EXPECT_EQ(l.loadDict(buffer.data(), static_cast<unsigned>(buffer.size())),
              ws::WS_ERR_OPEN_FILE);
    EXPECT_EQ(zeg_test::loadDictFromStream(l, bytes), ws::WS_ERR_FILE_TOO_SMALL);
}

}  // namespace
