// Damaged sections: every failure is the specified one, and whatever loads
// answers lookups (and takes new keys) without leaving the section.
#include <gtest/gtest.h>

#include <random>

#include "ws/dict/wsDoubleArrayTrie.h"
#include "ws/dict/wsDoubleTrie.h"
#include "wsTrieTestUtil.h"

using ws::DoubleArrayTrie;
using ws::DoubleTrie;

namespace {

class TrieDamageTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::mt19937 rng(7);
        trie.init();
        for (int i = 0; i < 300; ++i) {
            std::string k(1 + rng() % 6, '\0');
            for (char& c : k) c = static_cast<char>('a' + rng() % 6);
            keys.push_back(k);
            zeg_test::add(trie, k, i + 1);
        }
        bytes = zeg_test::serialize(trie);
        entries = static_cast<size_t>(trie.entryCount());
        frontAt = 36 + 8 * entries;
        rearAt = frontAt + 40 + 8 * static_cast<size_t>(trie.front().length());
    }

    // Loads `damaged` in place and through a stream; returns the messages.
    std::pair<std::string, std::string> load(const std::string& damaged) {
        zeg_test::AlignedBuffer buffer(damaged);
        DoubleTrie inPlace;
        const bool ok = inPlace.load(buffer.data(), buffer.size()) != nullptr;
        exercise(inPlace);
        DoubleTrie fromStream;
        const bool okStream = zeg_test::loadFromStream(fromStream, damaged);
        exercise(fromStream);
        return {ok ? "" : inPlace.get_err(), okStream ? "" : fromStream.get_err()};
    }

    void exercise(DoubleTrie& t) {
        ws::TrieBase::MatchInfo out[16];
        for (const std::string& k : keys) {
            zeg_test::match(t, k);
            t.matchAll(zeg_test::bytesOf(k), static_cast<int>(k.size()), out, 16);
        }
    }

    void putInt(std::string& s, size_t at, int32_t v) { std::memcpy(&s[at], &v, 4); }

    DoubleTrie trie;
    std::vector<std::string> keys;
    std::string bytes;
    size_t entries = 0, frontAt = 0, rearAt = 0;
};

TEST_F(TrieDamageTest, TruncationAtEverySectionBoundaryFails) {
    for (size_t cut : {size_t{0}, size_t{35}, size_t{36}, frontAt - 1, frontAt, frontAt + 39,
                       frontAt + 40, rearAt - 1, rearAt, rearAt + 39, rearAt + 40,
                       bytes.size() - 1}) {
        const auto errors = load(bytes.substr(0, cut));
        EXPECT_NE(errors.first, "") << cut;
        EXPECT_NE(errors.second, "") << cut;
    }
    EXPECT_EQ(load(bytes), (std::pair<std::string, std::string>{"", ""}));
}

TEST_F(TrieDamageTest, OverflowingCountsFail) {
    const std::string tooSmall = "File size too small";
    for (int32_t n : {-1, INT32_MIN, INT32_MAX, 0x20000000}) {
        std::string d = bytes;
        putInt(d, 32, n);
        EXPECT_EQ(load(d).first, tooSmall) << n;
    }
    for (int32_t n : {-1, INT32_MAX, 0x20000000}) {
        std::string d = bytes;
        putInt(d, frontAt + 4, n);
        EXPECT_EQ(load(d).first, "Left trie load failed: " + tooSmall) << n;
        d = bytes;
        putInt(d, rearAt + 4, n);
        EXPECT_EQ(load(d).first, "Right trie load failed: " + tooSmall) << n;
    }
    for (int32_t root : {0, -5, 1 << 30}) {
        std::string d = bytes;
        putInt(d, frontAt, root);
        EXPECT_NE(load(d).first, "") << root;
    }
}

TEST_F(TrieDamageTest, RandomByteFlipsNeverLeaveTheSection) {
    std::mt19937 rng(testing::UnitTest::GetInstance()->random_seed());
    // Flip bytes in the table and in the used cells, where they matter.
    const size_t frontUsed = frontAt + 40 + 8 * 1024;
    const size_t rearUsed = rearAt + 40 + 8 * 1024;
    for (int round = 0; round < 3000; ++round) {
        std::string d = bytes;
        for (int flips = 1 + rng() % 4; flips > 0; --flips) {
            size_t at;
            switch (rng() % 3) {
                case 0: at = 32 + rng() % (frontAt - 32); break;
                case 1: at = frontAt + rng() % (std::min(frontUsed, rearAt) - frontAt); break;
                default: at = rearAt + rng() % (std::min(rearUsed, d.size()) - rearAt);
            }
            d[at] = static_cast<char>(rng() % 3 == 0 ? d[at] ^ (1 << (rng() % 8)) : rng());
        }
        zeg_test::AlignedBuffer buffer(d);
        DoubleTrie t;
        if (t.load(buffer.data(), buffer.size()) == nullptr) continue;
        exercise(t);
        if (round % 10 == 0) {  // extending a damaged trie must stay safe too
            for (int i = 0; i < 20; ++i) zeg_test::add(t, keys[rng() % keys.size()] + "zz", i + 1);
            exercise(t);
        }
    }
}

TEST(DoubleArrayTrieDamage, RandomByteFlipsNeverLeaveTheSection) {
    std::mt19937 rng(testing::UnitTest::GetInstance()->random_seed());
    DoubleArrayTrie good;
    good.init();
    std::vector<std::string> keys;
    for (int i = 0; i < 200; ++i) {
        keys.push_back(std::to_string(i * 7919));
        zeg_test::add(good, keys.back(), i + 1);
    }
    const std::string bytes = zeg_test::serialize(good);
    for (int round = 0; round < 2000; ++round) {
        std::string d = bytes;
        for (int flips = 1 + rng() % 4; flips > 0; --flips)
            d[rng() % std::min<size_t>(d.size(), 40 + 8 * 1024)] = static_cast<char>(rng());
        zeg_test::AlignedBuffer buffer(d);
        DoubleArrayTrie t;
        if (t.load(buffer.data(), buffer.size()) == nullptr) continue;
        ws::TrieBase::MatchInfo out[16];
        for (const std::string& k : keys) {
            zeg_test::match(t, k);
            t.matchAll(zeg_test::bytesOf(k), static_cast<int>(k.size()), out, 16);
        }
        if (round % 10 == 0) {
            for (int i = 0; i < 20; ++i) zeg_test::add(t, keys[rng() % keys.size()] + "x", i + 1);
        }
    }
}

}  // namespace
