#include "ws/pos/wsTagInfo.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "ws/pos/wsPosTextReader.h"

namespace ws {

namespace {

const char kBlanks[] = " \t\r";
const char kInitBlanks[] = " \t";
const int kMaxTags = 127;

int32_t readInt(const char* p) {
    int32_t v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

bool writeAll(std::FILE* fp, const void* data, size_t size) {
    return size == 0 || std::fwrite(data, 1, size, fp) == size;
}

// A positive base-10 integer that fits a double exactly; 0 otherwise.
double parseCount(const std::string& text) {
    if (text.empty() || text.size() > 15) return 0;
    for (char c : text)
        if (c < '0' || c > '9') return 0;
    return std::strtod(text.c_str(), nullptr);
}

}  // namespace

int64_t TagInfo::calcBufLen(int numTags) {
    const int64_t t = numTags;
    return 2 * t * t * t + 2 * t * t + 3 * t;
}

void TagInfo::clear() { *this = TagInfo(); }

int TagInfo::initTagInfo(int numTags, int nameBufSize) {
    if (numTags < 1 || numTags > kMaxTags || nameBufSize < 1) return -1;
    const int bufSize = (nameBufSize + 3) / 4 * 4;
    m_nameStore.assign(static_cast<size_t>(bufSize), '\0');
    m_floatStore.assign(static_cast<size_t>(calcBufLen(numTags)), 0.0f);
    m_names = m_nameStore.data();
    m_nameBufSize = bufSize;
    m_numTags = numTags;
    m_nameOffsets.assign(static_cast<size_t>(numTags), 0);
    m_index.assign(kIndexSize, 0);
    setVectors(m_floatStore.data());
    m_init = true;
    return 0;
}

void TagInfo::setVectors(float* base) {
    const int64_t t = m_numTags;
    m_tagFreq = base;
    m_tagProb = m_tagFreq + t;
    m_initProb = m_tagProb + t;
    m_bigramTrans = m_initProb + t;
    m_bigramFreq = m_bigramTrans + t * t;
    m_trigramTrans = m_bigramFreq + t * t;
    m_smoothed = m_trigramTrans + t * t * t;
}

const char* TagInfo::getTagName(int id) const {
    if (!m_init || id < 1 || id > m_numTags) return nullptr;
    return m_names + m_nameOffsets[static_cast<size_t>(id - 1)];
}

int TagInfo::getTagId(const char* name) const {
    if (!m_init || name == nullptr || name[0] == '\0') return -1;
    const int c = static_cast<signed char>(name[0]);
    if (c < 1) return -1;
    for (int id = m_index[static_cast<size_t>(c)]; id >= 1 && id <= m_numTags; ++id) {
        const int cmp = std::strcmp(getTagName(id), name);
        if (cmp == 0) return id;
        if (cmp > 0) return -1;
    }
    return -1;
}

float TagInfo::getTagFreq(int id) const {
    return m_init && id >= 1 && id <= m_numTags ? m_tagFreq[id - 1] : 0.0f;
}

// ---- text files ----

int TagInfo::loadTagInfo(const char* tagNames, const char* tagFreq, const char* initTags,
                         const char* bigrams, const char* trigrams) {
    TagInfo next;
    if (next.loadTagNames(tagNames) != 0 || next.loadTagFreqFile(tagFreq) != 0 ||
        next.loadInitialTagFile(initTags) != 0 || next.loadBigramTagFile(bigrams) != 0 ||
        next.loadTrigramTagFile(trigrams) != 0)
        return -1;
    *this = std::move(next);
    return 0;
}

int TagInfo::loadTagNames(const char* path) {
    PosTextReader reader;
    if (!reader.open(path)) {
        std::cerr << "cannot open tag name file: " << (path != nullptr ? path : "") << '\n';
        return -1;
    }
    std::vector<std::string> names, fields;
    while (reader.next(kBlanks, fields)) {
        if (fields.size() != 1) {
            reader.report("expected one tag name");
            continue;
        }
        if (!names.empty() && names.back().compare(fields[0]) >= 0) {
            std::cerr << "Tag Names are not in correct order: " << names.back() << " >=  ["
                      << fields[0] << "]: " << path << ':' << reader.lineNumber() << '\n';
            return -1;
        }
        names.push_back(fields[0]);
    }
    if (reader.failed() || names.empty() || names.size() > static_cast<size_t>(kMaxTags)) {
        std::cerr << path << ": "
                  << (reader.failed() ? std::strerror(errno) : "no usable tag names") << '\n';
        return -1;
    }
    size_t bytes = 0;
    for (const std::string& n : names) bytes += n.size() + 1;
    TagInfo next;
    next.initTagInfo(static_cast<int>(names.size()), static_cast<int>(bytes));
    size_t at = 0;
    for (size_t i = 0; i < names.size(); ++i) {
        std::memcpy(&next.m_nameStore[at], names[i].c_str(), names[i].size() + 1);
        next.m_nameOffsets[i] = static_cast<int32_t>(at);
        at += names[i].size() + 1;
        const int c = static_cast<signed char>(names[i][0]);
        if (c >= 1 && next.m_index[static_cast<size_t>(c)] == 0)
            next.m_index[static_cast<size_t>(c)] = static_cast<int32_t>(i + 1);
    }
    *this = std::move(next);
    return 0;
}

int TagInfo::loadCounts(const char* path, const char* what, int arity, const std::string& delims,
                        std::vector<CountLine>& lines) const {
    lines.clear();
    PosTextReader reader;
    if (!m_init || !reader.open(path)) {
        std::cerr << "cannot open " << what << " file: " << (path != nullptr ? path : "") << '\n';
        return -1;
    }
    std::vector<std::string> fields;
    while (reader.next(delims, fields)) {
        if (fields.size() != static_cast<size_t>(arity) + 1) {
            reader.report("expected a count and " + std::to_string(arity) + " tag(s)");
            continue;
        }
        CountLine line = {parseCount(fields[0]), {0, 0, 0}};
        bool ok = line.count > 0;
        for (int k = 0; ok && k < arity; ++k) {
            line.tags[k] = getTagId(fields[static_cast<size_t>(k) + 1].c_str()) - 1;
            ok = line.tags[k] >= 0;
        }
        if (!ok) {
            reader.report("bad count or unknown tag");
            continue;
        }
        lines.push_back(line);
    }
    if (reader.failed()) {
        std::cerr << path << ": " << std::strerror(errno) << '\n';
        return -1;
    }
    return 0;
}

int TagInfo::loadTagFreqFile(const char* path) {
    std::vector<CountLine> lines;
    if (loadCounts(path, "tag freq", 1, kBlanks, lines) != 0) return -1;
    double total = 0;
    for (const CountLine& l : lines) {
        m_tagFreq[l.tags[0]] = static_cast<float>(l.count);
        total += l.count;
    }
    for (int k = 0; k < m_numTags; ++k)
        m_tagProb[k] = total > 0 ? static_cast<float>(m_tagFreq[k] / total) : 0.0f;
    return 0;
}

int TagInfo::loadInitialTagFile(const char* path) {
    std::vector<CountLine> lines;
    if (loadCounts(path, "init tag", 1, kInitBlanks, lines) != 0) return -1;
    double total = 0;
    for (const CountLine& l : lines) total += l.count;
    // A tag never seen first is not impossible there, only unseen.
    for (int k = 0; k < m_numTags; ++k) m_initProb[k] = static_cast<float>(std::log(kFloorProb));
    for (const CountLine& l : lines)
        m_initProb[l.tags[0]] = static_cast<float>(std::log(l.count / total));
    return 0;
}

int TagInfo::loadBigramTagFile(const char* path) {
    std::vector<CountLine> lines;
    if (loadCounts(path, "bigram tag", 2, kBlanks, lines) != 0) return -1;
    const int t = m_numTags;
    for (const CountLine& l : lines) {
        const int at = l.tags[0] * t + l.tags[1];
        m_bigramFreq[at] = static_cast<float>(l.count);
        const float from = m_tagFreq[l.tags[0]];
        m_bigramTrans[at] = from > 0 ? static_cast<float>(l.count / from) : 0.0f;
    }
    return 0;
}

int TagInfo::loadTrigramTagFile(const char* path) {
    std::vector<CountLine> lines;
    if (loadCounts(path, "trigram tag", 3, kBlanks, lines) != 0) return -1;
    const int64_t t = m_numTags;
    for (const CountLine& l : lines) {
        const float pair = m_bigramFreq[l.tags[0] * t + l.tags[1]];
        m_trigramTrans[(l.tags[0] * t + l.tags[1]) * t + l.tags[2]] =
            pair > 0 ? static_cast<float>(l.count / pair) : 0.0f;
    }
    std::cout << "Smoothing probabilities p(ti|ti-2,ti-1) ...\n";
    smooth();
    return 0;
}

void TagInfo::smooth() {
    const int64_t t = m_numTags;
    for (int64_t j = 0; j < t; ++j) {
        for (int64_t k = 0; k < t; ++k) {
            const double p2 = m_bigramTrans[j * t + k];
            const double base = 0.1 * p2 + 0.05 * m_tagProb[k];
            m_bigramTrans[j * t + k] = static_cast<float>(std::log(std::max(p2, kFloorProb)));
            for (int64_t i = 0; i < t; ++i) {
                const int64_t at = (i * t + j) * t + k;
                m_smoothed[at] = static_cast<float>(std::log(0.85 * m_trigramTrans[at] + base));
            }
        }
    }
}

// ---- binary block ----

int TagInfo::write(std::FILE* fp) const {
    if (!m_init) return -1;
    const int32_t head[2] = {m_numTags, m_nameBufSize};
    const size_t floats = static_cast<size_t>(calcBufLen(m_numTags));
    const bool ok = writeAll(fp, head, sizeof head) && writeAll(fp, m_names, m_nameBufSize) &&
                    writeAll(fp, m_nameOffsets.data(), 4 * m_nameOffsets.size()) &&
                    writeAll(fp, m_index.data(), 4 * m_index.size()) &&
                    writeAll(fp, m_tagFreq, 4 * floats);
    return ok ? 0 : -1;
}

int64_t TagInfo::loadFromMem(const char* buf, int64_t size) {
    clear();
    if (buf == nullptr || size < kFixedBytes || reinterpret_cast<uintptr_t>(buf) % 4 != 0)
        return -1;
    const int32_t numTags = readInt(buf);
    const int32_t nameBytes = readInt(buf + 4);
    if (numTags < 1 || numTags > kMaxTags || nameBytes < 1 || nameBytes % 4 != 0) return -1;
    const int64_t floatsAt = kFixedBytes + int64_t{nameBytes} + 4 * int64_t{numTags};
    const int64_t total = floatsAt + 4 * calcBufLen(numTags);
    if (total > size) return -1;
    const char* names = buf + 8;
    // Every name must end inside the buffer.
    if (names[nameBytes - 1] != '\0') return -1;
    TagInfo next;
    next.m_numTags = numTags;
    next.m_nameBufSize = nameBytes;
    next.m_names = names;
    next.m_nameOffsets.resize(static_cast<size_t>(numTags));
    std::memcpy(next.m_nameOffsets.data(), names + nameBytes, 4 * static_cast<size_t>(numTags));
    for (int32_t off : next.m_nameOffsets)
        if (off < 0 || off >= nameBytes) return -1;
    next.m_index.resize(kIndexSize);
    std::memcpy(next.m_index.data(), names + nameBytes + 4 * numTags, 4 * kIndexSize);
    // The floats are only read; the block stays in the caller's buffer.
    next.setVectors(reinterpret_cast<float*>(const_cast<char*>(buf + floatsAt)));
    next.m_init = true;
    *this = std::move(next);
    return total;
}

void TagInfo::dumpTagInfo(std::FILE* out) const {
    std::fprintf(out, "NumTags: %d\n", m_numTags);
    for (int id = 1; id <= m_numTags; ++id) {
        const char* name = getTagName(id);
        std::fprintf(out, "%d\t%s\t%.0f\t%g\t%g\n", id, name != nullptr ? name : "",
                     m_tagFreq[id - 1], m_tagProb[id - 1], m_initProb[id - 1]);
    }
}

}  // namespace ws
