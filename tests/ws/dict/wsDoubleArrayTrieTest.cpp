#include "ws/dict/wsDoubleArrayTrie.h"

#include <gtest/gtest.h>

#include "support/TempDir.h"
#include "wsTrieTestUtil.h"

using ws::DoubleArrayTrie;
using zeg_test::add;
using zeg_test::match;
using zeg_test::matchAll;
using zeg_test::u16;

namespace {

using Matches = std::vector<std::pair<int, int>>;

class DoubleArrayTrieTest : public ::testing::Test {
protected:
    void SetUp() override {
        trie.init();
        add(trie, u16("清"), 1);
        add(trie, u16("清華"), 2);
        add(trie, u16("清華大學"), 3);
        add(trie, u16("大學"), 4);
    }
    DoubleArrayTrie trie;
};

TEST_F(DoubleArrayTrieTest, FindsKeysThatArePrefixesOfOthers) {
    EXPECT_EQ(match(trie, u16("清")), 1);
    EXPECT_EQ(match(trie, u16("清華")), 2);
    EXPECT_EQ(match(trie, u16("清華大學")), 3);
    EXPECT_EQ(match(trie, u16("清華大")), 0);
    EXPECT_EQ(match(trie, u16("華")), 0);
    EXPECT_EQ(matchAll(trie, u16("清華大學生")), (Matches{{1, 1}, {3, 2}, {7, 3}}));
    EXPECT_EQ(matchAll(trie, u16("清華大學生"), 2), (Matches{{1, 1}, {3, 2}}));
    EXPECT_EQ(matchAll(trie, u16("學")), Matches{});
    EXPECT_EQ(matchAll(trie, ""), Matches{});
}

TEST_F(DoubleArrayTrieTest, AddOverwritesAndReturnsTheSameEndCell) {
    const int cell = add(trie, u16("清華"), 2);
    EXPECT_EQ(add(trie, u16("清華"), 20), cell);
    EXPECT_EQ(match(trie, u16("清華")), 20);
}

TEST_F(DoubleArrayTrieTest, ValueZeroReadsAsAbsent) {
    add(trie, u16("北京"), 0);
    EXPECT_EQ(match(trie, u16("北京")), 0);
    // matchAll still reports the end mark, with its value.
    EXPECT_EQ(matchAll(trie, u16("北京")), (Matches{{3, 0}}));
}

TEST_F(DoubleArrayTrieTest, KeysMayHoldZeroBytesAndBeEmpty) {
    add(trie, std::string("a\0b", 3), 7);
    add(trie, std::string("\0", 1), 8);
    add(trie, "", 9);
    EXPECT_EQ(match(trie, std::string("a\0b", 3)), 7);
    EXPECT_EQ(match(trie, "a"), 0);
    EXPECT_EQ(match(trie, std::string("\0", 1)), 8);
    EXPECT_EQ(match(trie, ""), 9);
}

TEST_F(DoubleArrayTrieTest, LongestAndReverseWalks) {
    const std::string key = u16("清華大學生");
    int matched = -1;
    const int s = trie.matchLongest(zeg_test::bytesOf(key), static_cast<int>(key.size()), matched);
    EXPECT_EQ(matched, 8);
    EXPECT_EQ(trie.endValue(s), 3);
    EXPECT_EQ(trie.matchLongest(zeg_test::bytesOf(key), 0, matched), trie.root());
    EXPECT_EQ(matched, 0);

    // Climbing from the state of "清華" consumes its bytes last to first.
    const std::string qh = u16("清華");
    trie.matchLongest(zeg_test::bytesOf(qh), 4, matched);
    const int qhState = trie.matchLongest(zeg_test::bytesOf(qh), 4, matched);
    const std::string reversed(qh.rbegin(), qh.rend());
    EXPECT_EQ(trie.matchReverse(zeg_test::bytesOf(reversed), 4, qhState, matched), trie.root());
    EXPECT_EQ(matched, 4);
    EXPECT_EQ(trie.matchReverse(zeg_test::bytesOf(qh), 4, qhState, matched), qhState);
    EXPECT_EQ(matched, 0);
    EXPECT_EQ(trie.matchReverse(zeg_test::bytesOf(qh), 4, trie.root(), matched), trie.root());
}

TEST_F(DoubleArrayTrieTest, RoundTripsThroughStreamAndBuffer) {
    const std::string bytes = zeg_test::serialize(trie);
    ASSERT_EQ(bytes.size(), 40u + 8u * static_cast<size_t>(trie.length()));
    EXPECT_EQ(bytes.substr(0, 4), std::string("\x01\0\0\0", 4));
    EXPECT_EQ(bytes.substr(8, 32), std::string("DATRIE V1.0.0") + std::string(19, '\0'));

    DoubleArrayTrie fromStream;
    ASSERT_TRUE(zeg_test::loadFromStream(fromStream, bytes));
    zeg_test::AlignedBuffer buffer(bytes + "next section");
    DoubleArrayTrie inPlace;
    char* end = inPlace.load(buffer.data(), buffer.size());
    ASSERT_NE(end, nullptr);
    EXPECT_EQ(std::string(end, 12), "next section");
    EXPECT_FALSE(inPlace.ownsCells());
    for (const char* w : {"清", "清華", "清華大學", "大學", "大", "清華大"}) {
        EXPECT_EQ(match(fromStream, u16(w)), match(trie, u16(w))) << w;
        EXPECT_EQ(match(inPlace, u16(w)), match(trie, u16(w))) << w;
    }
}

TEST_F(DoubleArrayTrieTest, AddingAfterAnInPlaceLoadCopiesTheCells) {
    const std::string bytes = zeg_test::serialize(trie);
    zeg_test::AlignedBuffer buffer(bytes);
    DoubleArrayTrie inPlace;
    ASSERT_NE(inPlace.load(buffer.data(), buffer.size()), nullptr);
    add(inPlace, u16("北京大學"), 5);
    EXPECT_TRUE(inPlace.ownsCells());
    EXPECT_EQ(match(inPlace, u16("北京大學")), 5);
    EXPECT_EQ(match(inPlace, u16("清華大學")), 3);
    EXPECT_EQ(std::string(buffer.data(), bytes.size()), bytes);  // the buffer is untouched
}

TEST(DoubleArrayTrieLoad, RejectsDamagedSectionsAndThenMisses) {
    DoubleArrayTrie good;
    good.init();
    add(good, "key", 1);
    const std::string bytes = zeg_test::serialize(good);

    struct Case {
        std::string bytes;
        const char* message;
    };
    std::string badMagic = bytes;
    badMagic[8] = 'X';
    std::string tooLong = bytes;
    tooLong[5] = 0x7F;  // length claims more cells than there are
    std::string negative = bytes;
    negative[7] = static_cast<char>(0x80);
    for (const Case& c : {Case{bytes.substr(0, 39), "File size too small"},
                          Case{badMagic, "Magic check failed"},
                          Case{tooLong, "File size too small"},
                          Case{negative, "File size too small"},
                          Case{bytes.substr(0, bytes.size() - 1), "File size too small"}}) {
        DoubleArrayTrie t;
        EXPECT_FALSE(zeg_test::loadFromStream(t, c.bytes));
        EXPECT_STREQ(t.get_err(), c.message);
        EXPECT_EQ(match(t, "key"), 0);
        zeg_test::AlignedBuffer buffer(c.bytes);
        DoubleArrayTrie m;
        EXPECT_EQ(m.load(buffer.data(), buffer.size()), nullptr);
        EXPECT_STREQ(m.get_err(), c.message);
        EXPECT_EQ(match(m, "key"), 0);
    }
}

TEST(DoubleArrayTrieLoad, EmptyTrieLoadsFromStreamButNotInPlace) {
    DoubleArrayTrie empty;
    const std::string bytes = zeg_test::serialize(empty);
    ASSERT_EQ(bytes.size(), 40u);
    DoubleArrayTrie t;
    EXPECT_TRUE(zeg_test::loadFromStream(t, bytes));
    EXPECT_EQ(match(t, ""), 0);
    zeg_test::AlignedBuffer buffer(bytes);
    EXPECT_EQ(t.load(buffer.data(), buffer.size()), nullptr);
}

TEST(DoubleArrayTrieLoad, MissingFileIsReported) {
    zeg_test::TempDir dir;
    DoubleArrayTrie t;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(t.load(dir.file("absent.dat").c_str()));
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err.rfind("Can not open and read from file: " + dir.file("absent.dat") + "\n", 0), 0u);
    EXPECT_NE(err.find("LoadFromFile: "), std::string::npos);
}

TEST(DoubleArrayTrieLoad, WritesAndLoadsByPath) {
    zeg_test::TempDir dir;
    DoubleArrayTrie t;
    t.init();
    add(t, "abc", 3);
    ASSERT_TRUE(t.write(dir.file("t.dat").c_str()));
    DoubleArrayTrie u;
    ASSERT_TRUE(u.load(dir.file("t.dat").c_str()));
    EXPECT_EQ(match(u, "abc"), 3);
    std::FILE* f = std::fopen(dir.file("t.dat").c_str(), "rb");
    DoubleArrayTrie v;
    EXPECT_STREQ(v.dictVersion(f), "DATRIE V1.0.0");
    std::fclose(f);
}

TEST_F(DoubleArrayTrieTest, ListsStatsAndConsistency) {
    DoubleArrayTrie t;
    t.init();
    add(t, "b", 1);
    add(t, "ab", 2);
    add(t, "a", 3);
    testing::internal::CaptureStdout();
    t.listAllEntries();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "a\nab\nb\n");
    testing::internal::CaptureStdout();
    trie.listAllEntriesUtf8();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "清\n清華\n清華大學\n大學\n");
    EXPECT_EQ(std::string(t.stats()).rfind("Trie Stats:\nTrie DA Length: 4096\nbase(1) = ", 0), 0u);
    t.appendKeyStr(zeg_test::bytesOf("ab"), 2);
    t.appendKeyStr(zeg_test::bytesOf("b"), 1);
    EXPECT_TRUE(t.isConsistent());
    t.appendKeyStr(zeg_test::bytesOf("zz"), 2);
    EXPECT_FALSE(t.isConsistent());
}

struct Moves {
    int count = 0;
    static void record(void* self, int from, int to) {
        auto* m = static_cast<Moves*>(self);
        ++m->count;
        EXPECT_NE(from, to);
    }
};

TEST(DoubleArrayTrieRelocation, ReportsEveryMovedState) {
    DoubleArrayTrie t;
    t.init();
    Moves moves;
    t.setStateChangeCallback(&Moves::record, &moves);
    // Many first bytes under the root, then children that collide with them.
    for (int c = 0; c < 200; ++c) add(t, std::string(1, static_cast<char>(c)), c + 1);
    for (int c = 0; c < 200; ++c) add(t, std::string(2, static_cast<char>(c)), c + 1000);
    EXPECT_GT(moves.count, 0);
    for (int c = 0; c < 200; ++c) {
        ASSERT_EQ(match(t, std::string(1, static_cast<char>(c))), c + 1);
        ASSERT_EQ(match(t, std::string(2, static_cast<char>(c))), c + 1000);
    }
}

}  // namespace
