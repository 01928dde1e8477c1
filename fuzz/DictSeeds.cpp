#include "fuzz/DictSeeds.h"

#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsFile.h"
#include "ws/dict/wsBaseDict.h"
#include "ws/dict/wsCoreDict.h"
#include "ws/dict/wsMaxentDict.h"
#include "ws/dict/wsPhraseDict.h"
#include "ws/pos/wsTrigramPosDict.h"

namespace zeg_fuzz {

namespace {

const char* const kWords[] = {"清", "清华", "清华大学", "北京", "北京大学", "大学", "学生",
                              "mp3", "5g", "b2b", "中华人民共和国"};

template <typename Dict>
std::string bytesOf(Dict& d) {
    ws::File f(std::tmpfile());
    if (!f) return std::string();
    d.writeDict(f.get());
    std::string out(static_cast<size_t>(std::ftell(f.get())), '\0');
    std::rewind(f.get());
    if (!out.empty() && std::fread(&out[0], 1, out.size(), f.get()) != out.size()) out.clear();
    return out;
}

std::string coreDict(int richness) {
    ws::WsCoreDict d;
    int i = 0;
    for (const char* w : kWords) {
        const unsigned char usr[] = {'u', static_cast<unsigned char>(i)};
        std::vector<int> gran;
        std::vector<ws::WordType> props;
        std::vector<ws::SemItem> sems;
        for (int g = 0; g < i % (richness + 1); ++g) gran.push_back(2);
        for (int p = 0; p < i % 3; ++p) props.push_back(ws::WordType{5, 1.5f});
        for (int s = 0; s < richness; ++s) sems.push_back(ws::SemItem{0, 1});
        std::vector<unsigned char> value = ws::WsCoreDict::encodeValue(
            gran, props, sems, usr, static_cast<unsigned>(i % 3));
        float weight = static_cast<float>(i++);
        d.add(w, static_cast<unsigned>(std::char_traits<char>::length(w)), &weight, value.data(),
              static_cast<unsigned>(value.size()));
    }
    d.setTotalFreq(1000.0);
    return bytesOf(d);
}

std::string baseDict() {
    ws::BaseDict d;
    float v = 0.5f;
    for (const std::string& k : seedKeys()) {
        d.add(k.data(), static_cast<unsigned>(k.size()), v);
        v += 0.25f;
    }
    return bytesOf(d);
}

// A phrase dictionary over the seed words: each pair of neighbours as one
// phrase cut into the two.
std::string phraseDict() {
    std::string text;
    for (size_t i = 0; i + 1 < sizeof kWords / sizeof kWords[0]; ++i)
        text += std::string(kWords[i]) + kWords[i + 1] + " " + kWords[i] + " " + kWords[i + 1] + "\n";
    const int in = memfd_create("phrases.txt", MFD_CLOEXEC);
    const int out = memfd_create("phrases.dict", MFD_CLOEXEC);
    std::string bytes;
    ws::PhraseDict d;
    if (in >= 0 && out >= 0 && write(in, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
        d.loadText(("/proc/self/fd/" + std::to_string(in)).c_str()) == 0 &&
        d.writeDict(("/proc/self/fd/" + std::to_string(out)).c_str()) == 0) {
        bytes.resize(static_cast<size_t>(lseek(out, 0, SEEK_END)));
        if (pread(out, &bytes[0], bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) bytes.clear();
    }
    if (in >= 0) close(in);
    if (out >= 0) close(out);
    return bytes;
}

// A person-name model over the seed words' characters and pairs.
std::string maxentDict() {
    ws::MaxentDict d;
    int slot = 0;
    for (const std::string& k : seedKeys()) {
        for (size_t len : {size_t{2}, size_t{4}}) {
            float alpha = 0.5f + slot;
            if (k.size() >= len) d.add(k.data(), static_cast<unsigned>(len), slot++ % 20, alpha);
        }
    }
    return bytesOf(d);
}

std::string readAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A part-of-speech dictionary over four tags that knows three seed words.
std::string posDict() {
    char dir[] = "/tmp/zeg-pos-seed-XXXXXX";
    if (mkdtemp(dir) == nullptr) return std::string();
    const std::string base = std::string(dir) + "/";
    const char* const files[][2] = {
        {"tags", "m\nn\nns\nv\n"},
        {"freq", "10 m\n40 n\n20 ns\n30 v\n"},
        {"init", "5 n\n3 v\n"},
        {"bigrams", "8 n v\n6 v n\n2 ns n\n"},
        {"trigrams", "4 n v n\n1 ns n v\n"},
        {"words", "清华 ns/4\n学生 n/12\n大学 n/8 ns/1\n"}};
    for (const auto& f : files) std::ofstream(base + f[0], std::ios::binary) << f[1];
    ws::TrigramPosDict d(nullptr);
    std::string out;
    if (d.loadFromFiles((base + "tags").c_str(), (base + "freq").c_str(), (base + "init").c_str(),
                        (base + "bigrams").c_str(), (base + "trigrams").c_str(),
                        (base + "words").c_str()) == 0 &&
        d.writeDict((base + "pos.dict").c_str()) == 0)
        out = readAll(base + "pos.dict");
    for (const char* name : {"tags", "freq", "init", "bigrams", "trigrams", "words", "pos.dict"})
        unlink((base + name).c_str());
    rmdir(dir);
    return out;
}

}  // namespace

const std::vector<std::string>& seedKeys() {
    static const std::vector<std::string> keys = [] {
        std::vector<std::string> out;
        for (const char* w : kWords) {
            const std::string s(w);
            const auto units = EncodeConverter::utf8ToUtf16(
                EncodeConverter::Utf8String(s.begin(), s.end()));
            out.emplace_back(reinterpret_cast<const char*>(units.data()), units.size() * 2);
        }
        return out;
    }();
    return keys;
}

std::vector<std::string> dictSeeds() {
    ws::WsCoreDict empty;
    return {coreDict(0), coreDict(2), bytesOf(empty), baseDict(), posDict(), phraseDict(),
            maxentDict(), "王\t12\n欧阳\t3.5\n李\n",
            "清 10 2 3 4\n华 1 0 0 9\r\n大\t0\t5\t1\t2\n"};
}

}  // namespace zeg_fuzz
