#include "normalize/SynonymFilter.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace {

using normalize::SynonymFilter;

// Keys as the synonym map holds them: ASCII letters upper-case, GBK bytes
// (some in the range that would look like letters after a wrong fold).
std::string randomKey(std::mt19937& rng) {
    const char* const pieces[] = {"A", "Z", "Q", "1", "-", "\xB1\xB1", "\xBE\xA9", "\xC1\xE1",
                                  "\xE1\xC1", "\x81\x61", "\xFE\x7A"};
    std::string key(rng() % 3 == 0 ? "" : "X");
    for (unsigned k = rng() % 13; k > 0; --k) key += pieces[rng() % 11];
    return key;
}

TEST(SynonymFilterTest, EveryKeyIsFoundWhateverTheCaseOfItsLetters) {
    std::mt19937 rng(static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed()));
    std::map<std::string, std::string> keys;
    for (int i = 0; i < 300; ++i) keys[randomKey(rng)] = "x";
    SynonymFilter filter;
    filter.refresh(keys);
    for (const auto& entry : keys) {
        std::string asked = entry.first;
        for (char& c : asked)
            if (c >= 'A' && c <= 'Z' && rng() % 2 == 0) c = static_cast<char>(c + 32);
        EXPECT_TRUE(filter.mayContain(asked)) << asked;
    }
    // And it is a filter: most words that are no key are told so.
    int passed = 0;
    for (int i = 0; i < 1000; ++i) passed += filter.mayContain("W" + randomKey(rng)) ? 1 : 0;
    EXPECT_LT(passed, 50);
}

}  // namespace
