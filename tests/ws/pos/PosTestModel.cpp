#include "PosTestModel.h"

#include <random>
#include <sstream>

#include "ws/pos/wsTrigramPosDict.h"

namespace zeg_test {

const char* const kPosTags[11] = {"a", "m", "n", "nr", "ns", "nt", "nx", "t", "u", "v", "w"};

namespace {

const char* const kWords[] = {"北京", "学生", "学习", "的", "好", "大学", "在", "我"};

PosModelFiles writeRandom(const TempDir& dir, unsigned seed) {
    std::mt19937 rng(seed);
    const auto count = [&](int max) { return 1 + static_cast<int>(rng() % max); };
    std::ostringstream names, freq, init, bigrams, trigrams, words;
    for (const char* a : kPosTags) {
        names << a << '\n';
        freq << 50 + count(450) << ' ' << a << '\n';
        init << count(100) << ' ' << a << '\n';
        for (const char* b : kPosTags) {
            if (rng() % 2 == 0) bigrams << count(50) << ' ' << a << ' ' << b << '\n';
            for (const char* c : kPosTags)
                if (rng() % 3 == 0)
                    trigrams << count(20) << ' ' << a << ' ' << b << ' ' << c << '\n';
        }
    }
    for (const char* w : kWords) {
        words << w;
        for (int n = count(3), i = 0; i < n; ++i)
            words << ' ' << kPosTags[i * 3 + rng() % 3] << '/' << count(40);
        words << '\n';
    }
    return {dir.write("tags.txt", names.str()),        dir.write("freq.txt", freq.str()),
            dir.write("init.txt", init.str()),         dir.write("bigrams.txt", bigrams.str()),
            dir.write("trigrams.txt", trigrams.str()), dir.write("words.txt", words.str())};
}

}  // namespace

PosModelFiles writePosModel(const TempDir& dir, unsigned seed) {
    if (seed != 0) return writeRandom(dir, seed);
    std::string names;
    for (const char* t : kPosTags) names += std::string(t) + "\n";
    // Every tag 100 times, so a word's score is ln(count / 100).
    std::string freq;
    for (const char* t : kPosTags) freq += "100 " + std::string(t) + "\n";
    return {dir.write("tags.txt", names),
            dir.write("freq.txt", freq),
            dir.write("init.txt", "60 n\n30 v\n10 r\n"),
            dir.write("bigrams.txt", "50 n v\n20 v n\n10 a n\n"),
            dir.write("trigrams.txt", "10 n v n\n5 a n v\n"),
            dir.write("words.txt", "北京 ns/50\n学习 v/20 n/5\n好 a/10 v/10\n的 u/80\n")};
}

std::string writePosDict(const TempDir& dir, unsigned seed) {
    const PosModelFiles f = writePosModel(dir, seed);
    ws::TrigramPosDict dict(nullptr);
    if (dict.loadFromFiles(f.names.c_str(), f.freq.c_str(), f.init.c_str(), f.bigrams.c_str(),
                           f.trigrams.c_str(), f.words.c_str()) != 0 ||
        dict.writeDict(dir.file("pos.dict").c_str()) != 0)
        return std::string();
    return dir.file("pos.dict");
}

}  // namespace zeg_test
