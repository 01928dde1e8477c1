// Differential tests of the tries against std::map over many random keys.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "ws/dict/wsDADLTrie.h"
#include "ws/dict/wsDoubleArrayTrie.h"
#include "ws/dict/wsDoubleTrie.h"
#include "wsTrieTestUtil.h"

using ws::TrieBase;
using zeg_test::bytesOf;

namespace {

using Model = std::map<std::string, int>;

// Keys of several shapes: random bytes (zero included), prefixes of other
// keys, keys sharing tails, and UTF-16LE words of common Chinese characters.
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
        switch (rng() % 4) {
            case 0:
                k = randomBytes(1 + rng() % 12);
                break;
            case 1:  // a prefix of an earlier key, or an earlier key extended
                if (keys.empty()) continue;
                k = keys[rng() % keys.size()];
                k = rng() % 2 ? k.substr(0, 1 + rng() % k.size()) : k + randomBytes(1 + rng() % 4);
                break;
            case 2:  // a new head on an earlier key's tail
                if (keys.empty()) continue;
                k = keys[rng() % keys.size()];
                k = randomBytes(1 + rng() % 3) + k.substr(k.size() / 2);
                break;
            default:  // 2-6 characters from the CJK block's common start
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

// Every prefix match the model predicts for `key`, shortest first.
std::vector<std::pair<int, int>> modelMatchAll(const Model& model, const std::string& key) {
    std::vector<std::pair<int, int>> out;
    for (size_t len = 1; len <= key.size(); ++len) {
        auto it = model.find(key.substr(0, len));
        if (it != model.end()) out.emplace_back(static_cast<int>(len) - 1, it->second);
    }
    return out;
}

void expectAgrees(const TrieBase& trie, const Model& model, std::mt19937& rng, const char* stage) {
    int checked = 0;
    for (const auto& kv : model) {
        ASSERT_EQ(zeg_test::match(trie, kv.first), kv.second) << stage;
        if (rng() % 8 == 0) {  // matchAll on the key with a random continuation
            std::string probe = kv.first;
            probe.push_back(static_cast<char>(rng()));
            ASSERT_EQ(zeg_test::matchAll(trie, probe, 512), modelMatchAll(model, probe)) << stage;
            ++checked;
        }
    }
    for (int i = 0; i < 20000; ++i) {  // keys that are mostly absent
        std::string probe(1 + rng() % 8, '\0');
        for (char& c : probe) c = static_cast<char>(rng() % 16);
        auto it = model.find(probe);
        ASSERT_EQ(zeg_test::match(trie, probe), it == model.end() ? 0 : it->second) << stage;
    }
    EXPECT_GT(checked, 0);
}

template <class Trie>
void runDifferential(int keyCount) {
    std::mt19937 rng(testing::UnitTest::GetInstance()->random_seed());
    Model model = randomModel(rng, keyCount);
    Trie trie;
    trie.init();
    for (const auto& kv : model) zeg_test::add(trie, kv.first, kv.second);
    expectAgrees(trie, model, rng, "built");

    for (auto& kv : model) {  // re-adding overwrites
        if (rng() % 4 == 0) {
            kv.second = 1 + static_cast<int>(rng() % 1000);
            zeg_test::add(trie, kv.first, kv.second);
        }
    }
    expectAgrees(trie, model, rng, "overwritten");

    const std::string bytes = zeg_test::serialize(trie);
    Trie fromStream;
    ASSERT_TRUE(zeg_test::loadFromStream(fromStream, bytes));
    expectAgrees(fromStream, model, rng, "stream");

    zeg_test::AlignedBuffer buffer(bytes);
    Trie inPlace;
    ASSERT_NE(inPlace.load(buffer.data(), buffer.size()), nullptr);
    expectAgrees(inPlace, model, rng, "in place");

    Model more = randomModel(rng, keyCount / 10);  // adding after an in-place load
    for (const auto& kv : more) {
        model[kv.first] = kv.second;
        zeg_test::add(inPlace, kv.first, kv.second);
    }
    expectAgrees(inPlace, model, rng, "extended");
    EXPECT_EQ(zeg_test::serialize(trie), bytes);
}

TEST(TrieRandom, DoubleTrieAgreesWithAMap) { runDifferential<ws::DoubleTrie>(100000); }

TEST(TrieRandom, DoubleArrayTrieAgreesWithAMap) { runDifferential<ws::DoubleArrayTrie>(5000); }

TEST(TrieRandom, DADLTrieAgreesWithAMap) { runDifferential<ws::DADLTrie>(20000); }

}  // namespace
