#include "ws/dict/wsCoreDict.h"

#include <cstring>

#include "ws/core/wsHot.h"

namespace ws {

namespace {

const unsigned kPropertyBytes = 6;
const unsigned kSemItemBytes = 2;

}  // namespace

WsCoreDict::WsCoreDict() = default;

WsCoreDict::~WsCoreDict() = default;

bool WsCoreDict::split(const unsigned char* value, uint32_t len, Layout& out) {
    // Each count byte is checked before it is read, each list before it is
    // taken.
    uint64_t at = 0;
    if (at + 1 > len) return false;
    out.grans = value[at++];
    out.gran = value + at;
    at += out.grans;
    if (at + 1 > len) return false;
    out.props = value[at++];
    out.prop = value + at;
    at += uint64_t{out.props} * kPropertyBytes;
    if (at + 1 > len) return false;
    out.sems = value[at++];
    out.sem = value + at;
    at += uint64_t{out.sems} * kSemItemBytes;
    if (at > len) return false;
    out.usrLen = static_cast<unsigned>(len - at);
    out.usr = out.usrLen > 0 ? value + at : nullptr;
    return true;
}

WS_HOT bool WsCoreDict::splitValue(const unsigned char* value, Layout& out) {
    uint32_t len;
    std::memcpy(&len, value - 4, sizeof len);
    if (split(value, len, out)) return true;
    out = Layout();
    return false;
}

WordType WsCoreDict::propertyAt(const Layout& v, unsigned i) {
    WordType t;
    std::memcpy(&t.type, v.prop + i * kPropertyBytes, 2);
    std::memcpy(&t.weight, v.prop + i * kPropertyBytes + 2, 4);
    return t;
}

int WsCoreDict::getAllInfo(const unsigned char* value, std::vector<int>& gran,
                           std::vector<short>& props, std::vector<float>& weights,
                           std::vector<SemItem>& sems) const {
    if (value == nullptr) return -1;
    Layout v;
    splitValue(value, v);
    getGran(value, gran);
    getPropWght(value, props, weights);
    getSemItems(value, sems);
    return static_cast<int>(v.grans);
}

int WsCoreDict::getPropWght(const unsigned char* value, std::vector<short>& props,
                            std::vector<float>& weights) const {
    if (value == nullptr) return -1;
    Layout v;
    splitValue(value, v);
    props.reserve(props.size() + v.props);
    weights.reserve(weights.size() + v.props);
    for (unsigned i = 0; i < v.props; ++i) {
        const WordType t = propertyAt(v, i);
        props.push_back(t.type);
        weights.push_back(t.weight);
    }
    return static_cast<int>(v.props);
}

int WsCoreDict::getPropWght(const unsigned char* value, std::vector<WordType>& types) const {
    if (value == nullptr) return -1;
    Layout v;
    splitValue(value, v);
    types.reserve(types.size() + v.props);
    for (unsigned i = 0; i < v.props; ++i) types.push_back(propertyAt(v, i));
    return static_cast<int>(v.props);
}

int WsCoreDict::getProp(const unsigned char* value, std::vector<short>& props) const {
    if (value == nullptr) return -1;
    Layout v;
    splitValue(value, v);
    props.reserve(props.size() + v.props);
    for (unsigned i = 0; i < v.props; ++i) props.push_back(propertyAt(v, i).type);
    return static_cast<int>(props.size());
}

int WsCoreDict::getGran(const unsigned char* value, std::vector<int>& gran) const {
    if (value == nullptr) return -1;
    Layout v;
    splitValue(value, v);
    gran.reserve(gran.size() + v.grans);
    for (unsigned i = 0; i < v.grans; ++i) gran.push_back(v.gran[i]);
    return static_cast<int>(gran.size());
}

int WsCoreDict::getSemItems(const unsigned char* value, std::vector<SemItem>& sems) const {
    if (value == nullptr) return -1;
    Layout v;
    splitValue(value, v);
    sems.reserve(sems.size() + v.sems);
    for (unsigned i = 0; i < v.sems; ++i) {
        SemItem item;
        std::memcpy(&item, v.sem + i * kSemItemBytes, kSemItemBytes);
        sems.push_back(item);
    }
    return static_cast<int>(v.sems);
}

WS_HOT int WsCoreDict::getUsrValue(int id, unsigned char** usr) const {
    if (usr != nullptr) *usr = nullptr;
    unsigned char* value = nullptr;
    float weight = 0.0f;
    if (getValue(id, &value, weight) == 0) return 0;
    Layout v;
    if (!splitValue(value, v) || v.usrLen == 0) return 0;
    // Read-only bytes; the word records carry them as they are.
    if (usr != nullptr) *usr = const_cast<unsigned char*>(v.usr);
    return static_cast<int>(v.usrLen);
}

int WsCoreDict::getValue(int id, unsigned char** value, float& weight) const {
    return DATDict::getValue(id, value, weight);
}

std::vector<unsigned char> WsCoreDict::encodeValue(const std::vector<int>& gran,
                                                   const std::vector<WordType>& props,
                                                   const std::vector<SemItem>& sems,
                                                   const unsigned char* usr, unsigned usrLen) {
    std::vector<unsigned char> out;
    out.reserve(3 + gran.size() + props.size() * kPropertyBytes + sems.size() * kSemItemBytes +
                usrLen);
    out.push_back(static_cast<unsigned char>(gran.size()));
    for (int g : gran) out.push_back(static_cast<unsigned char>(g));
    out.push_back(static_cast<unsigned char>(props.size()));
    for (const WordType& t : props) {
        unsigned char b[kPropertyBytes];
        std::memcpy(b, &t.type, 2);
        std::memcpy(b + 2, &t.weight, 4);
        out.insert(out.end(), b, b + kPropertyBytes);
    }
    out.push_back(static_cast<unsigned char>(sems.size()));
    for (const SemItem& s : sems) {
        out.push_back(s.offset);
        out.push_back(s.length);
    }
    if (usrLen > 0) out.insert(out.end(), usr, usr + usrLen);
    return out;
}

}  // namespace ws
