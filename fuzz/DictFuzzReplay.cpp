// Runs the dictionary fuzz target without libFuzzer: on the seed
// dictionaries, on seeded random mutations of them, and on the files given
// (regression inputs, or a libFuzzer corpus).
//
//   fuzz_dict_replay [--mutations N] [--seed S] [FILE|DIR]...
//   fuzz_dict_replay --write-seeds DIR      (a starting corpus for fuzz_dict)
#include <dirent.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/DictSeeds.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

void runOne(const std::string& bytes) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// Files of a directory (not recursive), or the path itself.
std::vector<std::string> inputsOf(const std::string& path) {
    std::vector<std::string> files;
    DIR* d = opendir(path.c_str());
    if (d == nullptr) return {path};
    while (dirent* e = readdir(d))
        if (e->d_name[0] != '.') files.push_back(path + "/" + e->d_name);
    closedir(d);
    return files;
}

// Byte flips, 32-bit values at section boundaries, cuts and splices.
std::string mutate(const std::string& seed, std::mt19937& rng) {
    std::string s = seed;
    if (s.empty()) return s;
    const int edits = 1 + static_cast<int>(rng() % 4);
    for (int e = 0; e < edits && !s.empty(); ++e) {
        const size_t at = rng() % s.size();
        switch (rng() % 4) {
        case 0: s[at] = static_cast<char>(rng()); break;
        case 1: {
            const uint32_t values[] = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF,
                                       static_cast<uint32_t>(s.size()), static_cast<uint32_t>(rng())};
            const uint32_t v = values[rng() % 7];
            for (int b = 0; b < 4 && at + b < s.size(); ++b) s[at + b] = static_cast<char>(v >> (8 * b));
            break;
        }
        case 2: s.resize(at); break;
        default: s.insert(at, s.substr(rng() % s.size(), rng() % 64)); break;
        }
    }
    return s;
}

bool writeSeeds(const std::string& dir) {
    int i = 0;
    for (const std::string& seed : zeg_fuzz::dictSeeds()) {
        std::ofstream out(dir + "/seed" + std::to_string(i++), std::ios::binary);
        if (!(out << seed)) return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    long mutations = 2000;
    unsigned seed = 1;
    std::vector<std::string> inputs;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--write-seeds" && i + 1 < argc) return writeSeeds(argv[i + 1]) ? 0 : 1;
        if (arg == "--mutations" && i + 1 < argc) mutations = std::atol(argv[++i]);
        else if (arg == "--seed" && i + 1 < argc) seed = static_cast<unsigned>(std::atol(argv[++i]));
        else for (const std::string& f : inputsOf(arg)) inputs.push_back(f);
    }
    const std::vector<std::string> seeds = zeg_fuzz::dictSeeds();
    for (const std::string& s : seeds) runOne(s);
    std::mt19937 rng(seed);
    for (long m = 0; m < mutations; ++m) runOne(mutate(seeds[rng() % seeds.size()], rng));
    for (const std::string& f : inputs) runOne(readFile(f));
    std::printf("fuzz_dict_replay: %zu seeds, %ld mutations (seed %u), %zu files\n", seeds.size(),
                mutations, seed, inputs.size());
    return 0;
}
