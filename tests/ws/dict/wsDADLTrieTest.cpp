#include "ws/dict/wsDADLTrie.h"

#include <gtest/gtest.h>

#include <random>

#include "ws/dict/wsDoubleArrayTrie.h"
#include "wsTrieTestUtil.h"

using ws::DADLTrie;
using ws::DoubleArrayTrie;
using zeg_test::add;
using zeg_test::match;

namespace {

std::vector<std::string> randomKeys(unsigned seed, int n) {
    std::mt19937 rng(seed);
    std::vector<std::string> keys;
    for (int i = 0; i < n; ++i) {
        std::string k(1 + rng() % 6, '\0');
        for (char& c : k) c = static_cast<char>(rng() % 40);
        keys.push_back(k);
    }
    return keys;
}

TEST(DADLTrie, FreeListStaysExactThroughRelocations) {
    DADLTrie t;
    t.init();
    EXPECT_TRUE(t.check_list());
    const auto keys = randomKeys(testing::UnitTest::GetInstance()->random_seed(), 3000);
    for (size_t i = 0; i < keys.size(); ++i) {
        add(t, keys[i], static_cast<int>(i) + 1);
        if (i % 500 == 0) {
            ASSERT_TRUE(t.check_list()) << i;
        }
    }
    EXPECT_TRUE(t.check_list());
}

// The free list only speeds up the search for room: the cells come out
// exactly as the plain array's bottom-up first fit lays them.
TEST(DADLTrie, LaysOutCellsLikeThePlainArray) {
    DADLTrie list;
    DoubleArrayTrie plain;
    list.init();
    plain.init();
    const auto keys = randomKeys(testing::UnitTest::GetInstance()->random_seed() + 1, 2000);
    for (size_t i = 0; i < keys.size(); ++i) {
        add(list, keys[i], static_cast<int>(i) + 1);
        add(plain, keys[i], static_cast<int>(i) + 1);
    }
    ASSERT_EQ(list.length(), plain.length());
    for (int c = 1; c < plain.length(); ++c) {
        if (plain.cells()[c].check < 1) {
            ASSERT_LT(list.cells()[c].check, 1) << c;  // free in both (list links differ)
        } else {
            ASSERT_EQ(list.cells()[c].check, plain.cells()[c].check) << c;
            ASSERT_EQ(list.cells()[c].base, plain.cells()[c].base) << c;
        }
    }
}

TEST(DADLTrie, WritesItsOwnMagicAndRebuildsTheListAfterLoading) {
    DADLTrie t;
    t.init();
    for (const char* k : {"ab", "abc", "b", "ba"}) add(t, k, 1);
    const std::string bytes = zeg_test::serialize(t);
    EXPECT_EQ(bytes.substr(8, 16), std::string("DADLTrie V1.0.0") + '\0');

    DoubleArrayTrie plain;
    EXPECT_FALSE(zeg_test::loadFromStream(plain, bytes));
    EXPECT_STREQ(plain.get_err(), "Magic check failed");

    zeg_test::AlignedBuffer buffer(bytes);
    DADLTrie loaded;
    ASSERT_NE(loaded.load(buffer.data(), buffer.size()), nullptr);
    for (int i = 0; i < 300; ++i) add(loaded, "x" + std::to_string(i), i + 1);
    EXPECT_TRUE(loaded.check_list());
    EXPECT_EQ(match(loaded, "abc"), 1);
    EXPECT_EQ(match(loaded, "x299"), 300);
}

}  // namespace
