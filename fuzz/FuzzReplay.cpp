// Runs one fuzz target without libFuzzer, with any compiler: on its
// built-in seeds, on the files given (seed corpora, regression inputs, a
// grown libFuzzer corpus), and on seeded random mutations of all of them.
// Each target links this main; a replay is a CTest test in every build.
//
//   fuzz_X_replay [--mutations N] [--seed S] [FILE|DIR]...
//   fuzz_X_replay --write-seeds DIR      (the built-in seeds, for libFuzzer)
#include <dirent.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/FuzzTarget.h"

namespace {

void runOne(const std::string& bytes) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

bool readFile(const std::string& path, std::string& bytes) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    bytes = s.str();
    return !in.bad() && in.is_open();
}

// Files of a directory (not recursive, dot files left out), or the path
// itself (which must then be readable).
void inputsOf(const std::string& path, std::vector<std::string>& files) {
    DIR* d = opendir(path.c_str());
    if (d == nullptr) {
        files.push_back(path);
        return;
    }
    while (dirent* e = readdir(d))
        if (e->d_name[0] != '.') files.push_back(path + "/" + e->d_name);
    closedir(d);
}

// Byte flips, 32-bit values (binary counts and offsets), cuts, splices
// within the input and from another one (text pieces that belong together).
std::string mutate(const std::string& seed, const std::string& other, std::mt19937& rng) {
    std::string s = seed;
    const int edits = 1 + static_cast<int>(rng() % 4);
    for (int e = 0; e < edits; ++e) {
        if (s.empty()) {
            s = other.substr(0, rng() % 64);
            continue;
        }
        const size_t at = rng() % s.size();
        switch (rng() % 5) {
        case 0: s[at] = static_cast<char>(rng()); break;
        case 1: {
            const uint32_t values[] = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF,
                                       static_cast<uint32_t>(s.size()), static_cast<uint32_t>(rng())};
            const uint32_t v = values[rng() % 7];
            for (int b = 0; b < 4 && at + b < s.size(); ++b) s[at + b] = static_cast<char>(v >> (8 * b));
            break;
        }
        case 2: s.resize(at); break;
        case 3: s.insert(at, s.substr(rng() % s.size(), rng() % 64)); break;
        default:
            if (!other.empty()) s.insert(at, other.substr(rng() % other.size(), rng() % 64));
            break;
        }
    }
    return s;
}

bool writeSeeds(const std::string& dir) {
    int i = 0;
    for (const std::string& seed : zeg_fuzz::builtInSeeds()) {
        std::ofstream out(dir + "/seed" + std::to_string(i++), std::ios::binary);
        if (!(out << seed)) {
            std::fprintf(stderr, "cannot write %s/seed%d\n", dir.c_str(), i - 1);
            return false;
        }
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    long mutations = 2000;
    unsigned seed = 1;
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--help") {
            std::printf("usage: %s [--mutations N] [--seed S] [FILE|DIR]...\n"
                        "       %s --write-seeds DIR\n",
                        argv[0], argv[0]);
            return 0;
        }
        if (arg == "--write-seeds" && i + 1 < argc) return writeSeeds(argv[i + 1]) ? 0 : 1;
        if (arg == "--mutations" && i + 1 < argc) mutations = std::atol(argv[++i]);
        else if (arg == "--seed" && i + 1 < argc) seed = static_cast<unsigned>(std::atol(argv[++i]));
        else inputsOf(arg, files);
    }
    std::vector<std::string> inputs = zeg_fuzz::builtInSeeds();
    const size_t builtIn = inputs.size();
    for (const std::string& f : files) {
        std::string bytes;
        if (!readFile(f, bytes)) {
            std::fprintf(stderr, "%s: cannot read %s\n", argv[0], f.c_str());
            return 1;
        }
        inputs.push_back(bytes);
    }
    for (const std::string& in : inputs) runOne(in);
    std::mt19937 rng(seed);
    if (!inputs.empty())
        for (long m = 0; m < mutations; ++m)
            runOne(mutate(inputs[rng() % inputs.size()], inputs[rng() % inputs.size()], rng));
    std::printf("%s: %zu built-in seeds, %zu files, %ld mutations (seed %u)\n", argv[0], builtIn,
                files.size(), inputs.empty() ? 0 : mutations, seed);
    return 0;
}
