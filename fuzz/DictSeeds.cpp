#include "fuzz/DictSeeds.h"

#include <cstdio>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsFile.h"
#include "ws/dict/wsBaseDict.h"
#include "ws/dict/wsCoreDict.h"

namespace zeg_fuzz {

namespace {

const char* const kWords[] = {"清", "清华", "清华大学", "北京", "北京大学", "大学", "学生",
                              "mp3", "5g", "b2b", "中华人民共和国"};

std::string bytesOf(ws::DATDict& d) {
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
    return {coreDict(0), coreDict(2), bytesOf(empty), baseDict()};
}

}  // namespace zeg_fuzz
