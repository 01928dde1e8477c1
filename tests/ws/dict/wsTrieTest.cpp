// One suite over the three trie kinds, then what only one kind has.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "support/TempDir.h"
#include "ws/dict/wsDADLTrie.h"
#include "ws/dict/wsDoubleArrayTrie.h"
#include "ws/dict/wsDoubleTrie.h"
#include "wsTrieTestUtil.h"

using ws::DADLTrie;
using ws::DoubleArrayTrie;
using ws::DoubleTrie;
using ws::TrieBase;
using zeg_test::add;
using zeg_test::bytesOf;
using zeg_test::match;
using zeg_test::matchAll;
using zeg_test::u16;

namespace {

using Matches = std::vector<std::pair<int, int>>;
using Model = std::map<std::string, int>;

// Where each kind keeps its magic, and how many random keys its
// differential run takes (the plain array is quadratic to build).
template <class Trie> struct Kind;
template <> struct Kind<DoubleArrayTrie> {
    static constexpr size_t kMagicAt = 8;
    static constexpr int kKeys = 5000;
};
template <> struct Kind<DADLTrie> {
    static constexpr size_t kMagicAt = 8;
    static constexpr int kKeys = 20000;
};
template <> struct Kind<DoubleTrie> {
    static constexpr size_t kMagicAt = 0;
    static constexpr int kKeys = 100000;
};

std::mt19937 seeded(unsigned offset = 0) {
    return std::mt19937(testing::UnitTest::GetInstance()->random_seed() + offset);
}

// Keys of several shapes: random bytes (zero included), prefixes and
// extensions of other keys, keys sharing tails, UTF-16LE Chinese words.
Model randomModel(std::mt19937& rng, int n) {
    Model model;
    std::vector<std::string> keys;
    auto randomBytes = [&](size_t len) {
        std::string k(len, '\0');
        for (char& c : k) c = static_cast<char>(rng() % 4 == 0 ? rng() % 8 : rng());
        return k;
    };
    while (static_cast<int>(keys.size()) < n) {
        std::string k;
        const unsigned shape = rng() % 4;
        if (shape != 0 && shape != 3 && keys.empty()) continue;
        if (shape == 0) {
            k = randomBytes(1 + rng() % 12);
        } else if (shape == 1) {
            k = keys[rng() % keys.size()];
            k = rng() % 2 ? k.substr(0, 1 + rng() % k.size()) : k + randomBytes(1 + rng() % 4);
        } else if (shape == 2) {
            k = keys[rng() % keys.size()];
            k = randomBytes(1 + rng() % 3) + k.substr(k.size() / 2);
        } else {
            for (int i = 2 + rng() % 5; i > 0; --i) {
                const unsigned u = 0x4E00 + rng() % 3000;
                k.push_back(static_cast<char>(u & 0xFF));
                k.push_back(static_cast<char>(u >> 8));
            }
        }
        keys.push_back(k);
        model[k] = 1 + static_cast<int>(rng() % 1000000);
    }
    return model;
}

Matches modelMatchAll(const Model& model, const std::string& key) {
    Matches out;
    for (size_t len = 1; len <= key.size(); ++len) {
        auto it = model.find(key.substr(0, len));
        if (it != model.end()) out.emplace_back(static_cast<int>(len) - 1, it->second);
    }
    return out;
}

void expectAgrees(const TrieBase& trie, const Model& model, std::mt19937& rng, const char* stage) {
    for (const auto& kv : model) {
        ASSERT_EQ(match(trie, kv.first), kv.second) << stage;
        if (rng() % 8 == 0) {
            std::string probe = kv.first;
            probe.push_back(static_cast<char>(rng()));
            ASSERT_EQ(matchAll(trie, probe, 512), modelMatchAll(model, probe)) << stage;
        }
    }
    for (int i = 0; i < 20000; ++i) {  // mostly absent keys
        std::string probe(1 + rng() % 8, '\0');
        for (char& c : probe) c = static_cast<char>(rng() % 16);
        auto it = model.find(probe);
        ASSERT_EQ(match(trie, probe), it == model.end() ? 0 : it->second) << stage;
        ASSERT_EQ(matchAll(trie, probe, 512), modelMatchAll(model, probe)) << stage;
    }
}

// Lookups and new keys on a damaged trie must stay inside its section.
void exercise(TrieBase& t, const std::vector<std::string>& keys, bool extend) {
    TrieBase::MatchInfo out[16];
    for (const std::string& k : keys) {
        match(t, k);
        t.matchAll(bytesOf(k), static_cast<int>(k.size()), out, 16);
    }
    if (extend)
        for (size_t i = 0; i < 20; ++i) add(t, keys[i * 7 % keys.size()] + "zz", static_cast<int>(i) + 1);
}

template <class Trie>
class TrieTest : public ::testing::Test {
protected:
    void SetUp() override {
        trie.init();
        for (const char* w : {"清", "清華", "清華大學", "大學"}) add(trie, u16(w), ++values);
    }
    Trie trie;
    int values = 0;
};

using TrieKinds = ::testing::Types<DoubleArrayTrie, DADLTrie, DoubleTrie>;
TYPED_TEST_SUITE(TrieTest, TrieKinds);

TYPED_TEST(TrieTest, FindsKeysThatArePrefixesOfOthers) {
    const TypeParam& t = this->trie;
    EXPECT_EQ(match(t, u16("清華")), 2);
    EXPECT_EQ(match(t, u16("清華大")), 0);
    EXPECT_EQ(match(t, u16("華")), 0);
    EXPECT_EQ(matchAll(t, u16("清華大學生")), (Matches{{1, 1}, {3, 2}, {7, 3}}));
    EXPECT_EQ(matchAll(t, u16("清華大學生"), 2), (Matches{{1, 1}, {3, 2}}));
    EXPECT_EQ(matchAll(t, ""), Matches{});
    TypeParam empty;
    EXPECT_EQ(match(empty, "a"), 0);
    EXPECT_EQ(matchAll(empty, "a"), Matches{});
}

TYPED_TEST(TrieTest, AgreesWithAMapBuiltLoadedAndExtended) {
    std::mt19937 rng = seeded();
    Model model = randomModel(rng, Kind<TypeParam>::kKeys);
    TypeParam t;
    t.init();
    for (const auto& kv : model) add(t, kv.first, kv.second);
    expectAgrees(t, model, rng, "built");
    for (auto& kv : model) {
        if (rng() % 4 == 0) add(t, kv.first, kv.second = 1 + static_cast<int>(rng() % 1000));
    }
    expectAgrees(t, model, rng, "overwritten");

    const std::string bytes = zeg_test::serialize(t);
    TypeParam fromStream;
    ASSERT_TRUE(zeg_test::loadFromStream(fromStream, bytes));
    expectAgrees(fromStream, model, rng, "stream");
    zeg_test::AlignedBuffer buffer(bytes + "next section");
    TypeParam inPlace;
    char* end = inPlace.load(buffer.data(), buffer.size());
    ASSERT_NE(end, nullptr);
    EXPECT_EQ(std::string(end, 12), "next section");
    expectAgrees(inPlace, model, rng, "in place");

    for (const auto& kv : randomModel(rng, Kind<TypeParam>::kKeys / 10)) {
        model[kv.first] = kv.second;
        add(inPlace, kv.first, kv.second);
    }
    expectAgrees(inPlace, model, rng, "extended");
    EXPECT_EQ(std::string(buffer.data(), bytes.size()), bytes);  // a mapping is never written
    EXPECT_EQ(zeg_test::serialize(t), bytes);
}

TYPED_TEST(TrieTest, WritesItsMagicAndLoadsByPath) {
    TypeParam& t = this->trie;
    const std::string bytes = zeg_test::serialize(t);
    const std::string magic = t.toolsVersion();
    EXPECT_EQ(bytes.substr(Kind<TypeParam>::kMagicAt, magic.size() + 1), magic + '\0');

    zeg_test::TempDir dir;
    ASSERT_TRUE(t.write(dir.file("t.dat").c_str()));
    TypeParam byPath;
    ASSERT_TRUE(byPath.load(dir.file("t.dat").c_str()));
    EXPECT_EQ(match(byPath, u16("清華大學")), 3);
    ws::File f;
    ASSERT_TRUE(f.open(dir.file("t.dat").c_str(), "rb"));
    EXPECT_EQ(byPath.dictVersion(f.get()), magic);

    testing::internal::CaptureStderr();
    EXPECT_FALSE(byPath.load(dir.file("absent.dat").c_str()));
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err.rfind("Can not open and read from file: " + dir.file("absent.dat") + "\n", 0), 0u);
}

TYPED_TEST(TrieTest, DamagedSectionsFailAndLeaveTheTrieEmpty) {
    const std::string bytes = zeg_test::serialize(this->trie);
    std::string badMagic = bytes;
    badMagic[Kind<TypeParam>::kMagicAt] = 'X';
    struct Case {
        std::string bytes;
        const char* message;
    };
    for (const Case& c : {Case{bytes.substr(0, 35), "File size too small"},
                          Case{badMagic, "Magic check failed"},
                          Case{bytes.substr(0, bytes.size() - 1), nullptr}}) {
        TypeParam fromStream;
        EXPECT_FALSE(zeg_test::loadFromStream(fromStream, c.bytes));
        zeg_test::AlignedBuffer buffer(c.bytes);
        TypeParam inPlace;
        EXPECT_EQ(inPlace.load(buffer.data(), buffer.size()), nullptr);
        if (c.message != nullptr) {
            EXPECT_STREQ(fromStream.get_err(), c.message);
            EXPECT_STREQ(inPlace.get_err(), c.message);
        }
        EXPECT_EQ(match(fromStream, u16("清")), 0);
        EXPECT_EQ(match(inPlace, u16("清")), 0);
    }
}

TYPED_TEST(TrieTest, RandomByteFlipsNeverLeaveTheSection) {
    std::mt19937 rng = seeded(1);
    TypeParam good;
    good.init();
    std::vector<std::string> keys;
    for (int i = 0; i < 300; ++i) {
        keys.push_back(std::string(1 + rng() % 6, 'a'));
        for (char& c : keys.back()) c = static_cast<char>('a' + rng() % 6);
        add(good, keys.back(), i + 1);
    }
    const std::string bytes = zeg_test::serialize(good);
    for (int round = 0; round < 2000; ++round) {
        std::string d = bytes;
        for (int flips = 1 + rng() % 4; flips > 0; --flips) {
            const size_t at = rng() % d.size();
            d[at] = static_cast<char>(rng() % 3 == 0 ? d[at] ^ (1 << (rng() % 8)) : rng());
        }
        zeg_test::AlignedBuffer buffer(d);
        TypeParam t;
        if (t.load(buffer.data(), buffer.size()) != nullptr) exercise(t, keys, round % 10 == 0);
        TypeParam s;
        if (zeg_test::loadFromStream(s, d)) exercise(s, keys, false);
    }
}

TYPED_TEST(TrieTest, ListsEveryKeyInByteOrder) {
    testing::internal::CaptureStdout();
    this->trie.listAllEntriesUtf8();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "清\n清華\n清華大學\n大學\n");
    TypeParam t;
    t.init();
    for (const char* k : {"b", "abc", "ab"}) add(t, k, 1);
    testing::internal::CaptureStdout();
    t.listAllEntries();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ab\nabc\nb\n");
}

// Only the arrays.

TEST(DoubleArrayTrie, ValueZeroReadsAsAbsentAndKeysMayBeEmpty) {
    DoubleArrayTrie t;
    t.init();
    add(t, u16("北京"), 0);
    add(t, "", 9);
    EXPECT_EQ(match(t, u16("北京")), 0);
    EXPECT_EQ(matchAll(t, u16("北京")), (Matches{{3, 0}}));  // the end mark is still there
    EXPECT_EQ(match(t, ""), 9);
    const int cell = add(t, "ab", 1);
    EXPECT_EQ(add(t, "ab", 2), cell);
}

TEST(DoubleArrayTrie, LongestAndReverseWalks) {
    DoubleArrayTrie t;
    t.init();
    add(t, u16("清華"), 2);
    add(t, u16("清華大學"), 3);
    const std::string key = u16("清華大學生");
    int matched = -1;
    EXPECT_EQ(t.endValue(t.matchLongest(bytesOf(key), static_cast<int>(key.size()), matched)), 3);
    EXPECT_EQ(matched, 8);
    const int qh = t.matchLongest(bytesOf(key), 4, matched);
    const std::string reversed(key.rend() - 4, key.rend());
    EXPECT_EQ(t.matchReverse(bytesOf(reversed), 4, qh, matched), t.root());
    EXPECT_EQ(matched, 4);
    EXPECT_EQ(t.matchReverse(bytesOf(key), 4, qh, matched), qh);
    EXPECT_EQ(matched, 0);
}

TEST(DoubleArrayTrie, EmptyTrieLoadsFromStreamButNotInPlace) {
    DoubleArrayTrie empty;
    const std::string bytes = zeg_test::serialize(empty);
    ASSERT_EQ(bytes.size(), 40u);
    DoubleArrayTrie t;
    EXPECT_TRUE(zeg_test::loadFromStream(t, bytes));
    zeg_test::AlignedBuffer buffer(bytes);
    EXPECT_EQ(t.load(buffer.data(), buffer.size()), nullptr);
}

TEST(DoubleArrayTrie, ReportsEveryMovedState) {
    DoubleArrayTrie t;
    t.init();
    int moves = 0;
    t.setStateChangeCallback([](void* n, int from, int to) { *static_cast<int*>(n) += from != to; },
                             &moves);
    // Many first bytes under the root, then children that collide with them.
    for (int c = 0; c < 200; ++c) add(t, std::string(1, static_cast<char>(c)), c + 1);
    for (int c = 0; c < 200; ++c) add(t, std::string(2, static_cast<char>(c)), c + 1000);
    EXPECT_GT(moves, 0);
    for (int c = 0; c < 200; ++c) ASSERT_EQ(match(t, std::string(2, static_cast<char>(c))), c + 1000);
}

// The free list only speeds up the search for room: the cells come out as
// the plain array's first fit lays them, and the list survives relocations.
TEST(DADLTrie, LaysOutCellsLikeThePlainArray) {
    DADLTrie list;
    DoubleArrayTrie plain;
    list.init();
    plain.init();
    std::mt19937 rng = seeded(2);
    for (int i = 1; i <= 3000; ++i) {
        std::string k(1 + rng() % 6, '\0');
        for (char& c : k) c = static_cast<char>(rng() % 40);
        add(list, k, i);
        add(plain, k, i);
        if (i % 500 == 0) {
            ASSERT_TRUE(list.check_list()) << i;
        }
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

TEST(DADLTrie, RebuildsTheListAfterLoading) {
    DADLTrie t;
    t.init();
    for (const char* k : {"ab", "abc", "b", "ba"}) add(t, k, 1);
    const std::string bytes = zeg_test::serialize(t);
    DoubleArrayTrie plain;
    EXPECT_FALSE(zeg_test::loadFromStream(plain, bytes));
    zeg_test::AlignedBuffer buffer(bytes);
    DADLTrie loaded;
    ASSERT_NE(loaded.load(buffer.data(), buffer.size()), nullptr);
    for (int i = 0; i < 300; ++i) add(loaded, "x" + std::to_string(i), i + 1);
    EXPECT_TRUE(loaded.check_list());
    EXPECT_EQ(match(loaded, "abc"), 1);
}

// Only the double trie: a table, then the front and rear tries.

TEST(DoubleTrie, SharedTailsAreStoredOnce) {
    DoubleTrie t;
    t.init();
    EXPECT_EQ(t.entryCount(), 2);  // separator entries are numbered from 2
    add(t, "a-common-tail", 1);
    auto usedRear = [&] {
        int used = 0;
        for (int c = 1; c < t.rear().length(); ++c) used += t.rear().cells()[c].check > 0;
        return used;
    };
    const int before = usedRear();
    add(t, "b-common-tail", 2);
    EXPECT_EQ(usedRear(), before);
    EXPECT_EQ(t.entryCount(), 4);
    EXPECT_EQ(match(t, "a-common-tail"), 1);
    EXPECT_EQ(match(t, "a-common"), 0);
}

// Loading builds a first-two-bytes filter; over a small alphabet, keys of
// one byte, separators after one byte and absent pairs are all common.
TEST(DoubleTrie, LoadedSmallTriesMatchEveryPrefixAsAMapDoes) {
    std::mt19937 rng = seeded(7);
    for (int round = 0; round < 20; ++round) {
        Model model;
        const unsigned alphabet = 2 + round % 6;
        auto word = [&](size_t len) {
            std::string k(len, '\0');
            for (char& c : k) c = static_cast<char>(rng() % alphabet);
            return k;
        };
        for (int i = 0; i < 5 + round * 3; ++i) model[word(1 + rng() % 4)] = i + 1;
        DoubleTrie built;
        built.init();
        for (const auto& kv : model) add(built, kv.first, kv.second);
        const std::string bytes = zeg_test::serialize(built);
        zeg_test::AlignedBuffer buffer(bytes);
        DoubleTrie loaded;
        ASSERT_NE(loaded.load(buffer.data(), buffer.size()), nullptr);
        for (int i = 0; i < 300; ++i) {
            const std::string probe = word(1 + rng() % 6);
            ASSERT_EQ(matchAll(loaded, probe, 512), modelMatchAll(model, probe)) << round;
        }
    }
}

class DoubleTrieDamage : public ::testing::Test {
protected:
    void SetUp() override {
        trie.init();
        for (int i = 0; i < 300; ++i) add(trie, std::to_string(i * 7919), i + 1);
        bytes = zeg_test::serialize(trie);
        frontAt = 36 + 8 * static_cast<size_t>(trie.entryCount());
        rearAt = frontAt + 40 + 8 * static_cast<size_t>(trie.front().length());
    }
    // The in-place and the stream load's messages ("" on success).
    std::pair<std::string, std::string> load(const std::string& damaged) {
        zeg_test::AlignedBuffer buffer(damaged);
        DoubleTrie inPlace, fromStream;
        const bool ok = inPlace.load(buffer.data(), buffer.size()) != nullptr;
        const bool okStream = zeg_test::loadFromStream(fromStream, damaged);
        return {ok ? "" : inPlace.get_err(), okStream ? "" : fromStream.get_err()};
    }
    std::string withInt(size_t at, int32_t v) {
        std::string d = bytes;
        std::memcpy(&d[at], &v, 4);
        return d;
    }
    DoubleTrie trie;
    std::string bytes;
    size_t frontAt = 0, rearAt = 0;
};

TEST_F(DoubleTrieDamage, TruncationAtEverySectionBoundaryFails) {
    for (size_t cut : {size_t{36}, frontAt - 1, frontAt, frontAt + 39, frontAt + 40, rearAt - 1,
                       rearAt, rearAt + 39, rearAt + 40}) {
        const auto errors = load(bytes.substr(0, cut));
        EXPECT_NE(errors.first, "") << cut;
        EXPECT_NE(errors.second, "") << cut;
    }
}

TEST_F(DoubleTrieDamage, MessagesNameTheDamagedTrie) {
    const std::string tooSmall = "File size too small";
    // One entry more than the bytes after the header hold.
    const int32_t justOver = static_cast<int32_t>((bytes.size() - 36) / 8 + 1);
    EXPECT_EQ(load(withInt(32, justOver)), std::make_pair(tooSmall, tooSmall));
    for (int32_t n : {-1, INT32_MIN, INT32_MAX, 0x20000000}) {
        EXPECT_EQ(load(withInt(32, n)).first, tooSmall) << n;
        EXPECT_EQ(load(withInt(frontAt + 4, n)).first, "Left trie load failed: " + tooSmall) << n;
        EXPECT_EQ(load(withInt(rearAt + 4, n)).first, "Right trie load failed: " + tooSmall) << n;
    }
    for (int32_t root : {0, -5, 1 << 30}) EXPECT_NE(load(withInt(frontAt, root)).first, "") << root;
    std::string d = bytes;
    d[frontAt + 8] = 'X';
    EXPECT_EQ(load(d).second, "Left trie load failed: Magic check failed");
    d = bytes;
    d[rearAt + 8] = 'X';
    // The stream load names the rear trie with the front trie's message.
    EXPECT_EQ(load(d), std::make_pair(std::string("Right trie load failed: Magic check failed"),
                                      std::string("Rigth trie load failed: ")));
}

}  // namespace
