#ifndef ZEG_TESTS_WS_POS_POSTESTMODEL_H
#define ZEG_TESTS_WS_POS_POSTESTMODEL_H

#include <string>

#include "support/TempDir.h"

namespace zeg_test {

// The tags of every test model, in byte order (ids 1..11).
extern const char* const kPosTags[11];

// The six text files of a tag model in `dir`, for loadFromFiles. With a
// seed, every count is drawn from it (tags, first tags, about half of the
// bigrams and a third of the trigrams, and one to three tags for each of
// the words 北京 学生 学习 的 好 大学 在 我); seed 0 gives the hand-made
// model the edge cases are written against.
struct PosModelFiles {
    std::string names, freq, init, bigrams, trigrams, words;
};
PosModelFiles writePosModel(const TempDir& dir, unsigned seed);

// Builds the model of `seed` and writes it as a dictionary file; its path.
std::string writePosDict(const TempDir& dir, unsigned seed);

}  // namespace zeg_test

#endif
