#include "ws/dict/wsDoubleTrie.h"

#include <gtest/gtest.h>

#include "wsTrieTestUtil.h"

using ws::DoubleTrie;
using zeg_test::add;
using zeg_test::match;
using zeg_test::matchAll;
using zeg_test::u16;

namespace {

using Matches = std::vector<std::pair<int, int>>;

// Prefix keys, extensions and overwrites of every node kind are checked
// against a map in wsTrieRandomTest.
TEST(DoubleTrie, AKeyThatIsAPrefixOfAStoredTailDoesNotMatch) {
    DoubleTrie t;
    t.init();
    add(t, u16("中华人民共和国"), 7);
    EXPECT_EQ(match(t, u16("中华人民共和国")), 7);
    EXPECT_EQ(match(t, u16("中华人民")), 0);
    EXPECT_EQ(match(t, u16("中")), 0);
    EXPECT_EQ(matchAll(t, u16("中华人民共和国万岁")), (Matches{{13, 7}}));
    EXPECT_EQ(matchAll(t, u16("中华人民")), Matches{});
}

TEST(DoubleTrie, SeparatorEntriesAreNumberedFromTwo) {
    DoubleTrie t;
    t.init();
    EXPECT_EQ(t.entryCount(), 2);
    add(t, "x", 1);
    add(t, "yz", 2);
    EXPECT_EQ(t.entryCount(), 4);
    EXPECT_EQ(match(t, "x"), 1);
    EXPECT_EQ(match(t, "yz"), 2);
}

TEST(DoubleTrie, SharedTailsAreStoredOnce) {
    DoubleTrie t;
    t.init();
    add(t, "a-common-tail", 1);
    const int rearAfterOne = t.rear().length();
    int statesBefore = 0;
    for (int c = 1; c < t.rear().length(); ++c) statesBefore += t.rear().cells()[c].check > 0;
    add(t, "b-common-tail", 2);
    int statesAfter = 0;
    for (int c = 1; c < t.rear().length(); ++c) statesAfter += t.rear().cells()[c].check > 0;
    EXPECT_EQ(t.rear().length(), rearAfterOne);
    EXPECT_EQ(statesAfter, statesBefore);
    EXPECT_EQ(match(t, "a-common-tail"), 1);
    EXPECT_EQ(match(t, "b-common-tail"), 2);
}

TEST(DoubleTrie, EmptyOrUninitialisedTrieMisses) {
    DoubleTrie t;
    EXPECT_EQ(match(t, "a"), 0);
    EXPECT_EQ(matchAll(t, "a"), Matches{});
    add(t, "a", 5);  // add initialises on demand
    EXPECT_EQ(match(t, "a"), 5);
}

TEST(DoubleTrie, SectionLayoutAndRoundTrip) {
    DoubleTrie t;
    t.init();
    add(t, u16("清華"), 1);
    add(t, u16("清華大學"), 2);
    const std::string bytes = zeg_test::serialize(t);
    EXPECT_EQ(bytes.substr(0, 32), std::string("DoubleTrie V1.0.0") + std::string(15, '\0'));
    int n = 0;
    std::memcpy(&n, bytes.data() + 32, 4);
    EXPECT_EQ(n, t.entryCount());
    EXPECT_EQ(bytes.substr(36 + 8 * n + 8, 16), std::string("DADLTrie V1.0.0") + '\0');

    DoubleTrie fromStream;
    ASSERT_TRUE(zeg_test::loadFromStream(fromStream, bytes));
    zeg_test::AlignedBuffer buffer(bytes + "tail");
    DoubleTrie inPlace;
    char* end = inPlace.load(buffer.data(), buffer.size());
    ASSERT_NE(end, nullptr);
    EXPECT_EQ(std::string(end, 4), "tail");
    for (DoubleTrie* x : {&fromStream, &inPlace}) {
        EXPECT_EQ(match(*x, u16("清華")), 1);
        EXPECT_EQ(match(*x, u16("清華大學")), 2);
        EXPECT_EQ(matchAll(*x, u16("清華大學")), (Matches{{3, 1}, {7, 2}}));
    }
    std::FILE* f = std::tmpfile();
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::rewind(f);
    DoubleTrie v;
    EXPECT_STREQ(v.dictVersion(f), "DoubleTrie V1.0.0");
    std::fclose(f);
}

TEST(DoubleTrie, DamagedRearTrieNamesTheRightTrie) {
    DoubleTrie t;
    t.init();
    add(t, "abc", 1);
    std::string bytes = zeg_test::serialize(t);
    const size_t rear = bytes.size() - 40 - 8 * static_cast<size_t>(t.rear().length());
    bytes[rear + 8] = 'X';  // the rear trie's magic
    DoubleTrie fromStream;
    EXPECT_FALSE(zeg_test::loadFromStream(fromStream, bytes));
    EXPECT_STREQ(fromStream.get_err(), "Rigth trie load failed: ");
    zeg_test::AlignedBuffer buffer(bytes);
    DoubleTrie inPlace;
    EXPECT_EQ(inPlace.load(buffer.data(), buffer.size()), nullptr);
    EXPECT_STREQ(inPlace.get_err(), "Right trie load failed: Magic check failed");
    EXPECT_EQ(match(inPlace, "abc"), 0);

    bytes = zeg_test::serialize(t);
    bytes[36 + 8 * static_cast<size_t>(t.entryCount()) + 8] = 'X';  // the front trie's magic
    EXPECT_FALSE(zeg_test::loadFromStream(fromStream, bytes));
    EXPECT_STREQ(fromStream.get_err(), "Left trie load failed: Magic check failed");
}

TEST(DoubleTrie, ListsEveryKey) {
    DoubleTrie t;
    t.init();
    for (const char* w : {"清華大學", "清華", "北京", "北京大學"}) add(t, u16(w), 1);
    testing::internal::CaptureStdout();
    t.listAllEntriesUtf8();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "清華\n清華大學\n北京\n北京大學\n");
    DoubleTrie bytesTrie;
    bytesTrie.init();
    for (const char* w : {"b", "ab", "abc"}) add(bytesTrie, w, 1);
    testing::internal::CaptureStdout();
    bytesTrie.listAllEntries();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ab\nabc\nb\n");
}

}  // namespace
