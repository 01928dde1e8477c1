#include "ws/dict/wsMaxentDict.h"

#include <sys/mman.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsFile.h"
#include "ws/core/wsWsLogger.h"
#include "ws/core/wsLineReader.h"

namespace ws {

namespace {

const char kSource[] = "wsMaxentDict";
// The line the build failure has always been reported with.
const int kWriteFailLine = 621;
const std::size_t kLineBuffer = 1024;
const unsigned kProgressLines = 100000;

const unsigned char* bytes(const char* p) { return reinterpret_cast<const unsigned char*>(p); }

int clampInt(uint64_t v) { return v > INT_MAX ? INT_MAX : static_cast<int>(v); }

}  // namespace

const int MaxentDict::kTemplateGroup[kTemplates] = {2, 0, 1, 3, 4, 1, 2, 0, 3, 4, 0, 1};

template <typename H, typename F>
void MaxentDict::forEachField(H& h, F&& f) {
    f(&h.capacity, 4);
    f(&h.used, 4);
    f(&h.maxKeyLen, 4);
    f(&h.defaultAlpha, 8);
    f(h.powers, sizeof h.powers);
    f(h.defaultRecord, sizeof h.defaultRecord);
    f(&h.minAlpha, 4);
    f(&h.maxAlpha, 4);
    f(&h.step, 4);
    f(&h.defaultCode, 4);
    f(h.i2f, sizeof h.i2f);
    f(h.charBits, sizeof h.charBits);
}

MaxentDict::MaxentDict() : m_trie(new DoubleTrie()) { setDefaultFeatureAlpha(1.0); }

MaxentDict::~MaxentDict() = default;

int MaxentDict::cmpFloat(const void* a, const void* b) {
    const float x = *static_cast<const float*>(a);
    const float y = *static_cast<const float*>(b);
    return x > y ? 1 : (x < y ? -1 : 0);
}

// ---- coding ----

int MaxentDict::alphaF2I(float alpha) const {
    const double v = (std::log(alpha) - std::log(m_h.minAlpha)) / m_h.step;
    // NaN (a zero step, a non-positive alpha) fails both tests and codes 0.
    if (!(v >= 0)) return 0;
    if (v >= 255) return 254;
    return static_cast<int>(v);
}

void MaxentDict::setDefaultFeatureAlpha(double alpha) {
    m_h.defaultAlpha = alpha;
    m_h.powers[0] = 1.0;
    for (int i = 1; i < kPowers; ++i) m_h.powers[i] = m_h.powers[i - 1] * alpha;
    m_h.defaultCode = alphaF2I(static_cast<float>(alpha));
    std::memset(m_h.defaultRecord, m_h.defaultCode, kRecordSize);
}

void MaxentDict::setI2FTable(const double* table) {
    std::memcpy(m_h.i2f, table, sizeof m_h.i2f);
}

bool MaxentDict::_setCoding() {
    float lo = 0, hi = 0;
    for (int id = 1; id <= m_lastFeature; ++id) {
        const float a = m_alphas[id];
        if (!(a > 0)) continue;  // ids the file skipped
        if (lo == 0 || a < lo) lo = a;
        if (a > hi) hi = a;
    }
    if (lo == 0) return false;
    m_h.minAlpha = lo;
    m_h.maxAlpha = hi;
    m_h.step = static_cast<float>((std::log(hi) - std::log(lo)) / 255);
    for (int s = 0; s < kCodeSums; ++s)
        m_h.i2f[s] = std::exp(s * static_cast<double>(m_h.step) + 12 * std::log(lo));
    return true;
}

// ---- building ----

int MaxentDict::loadAlphaFromText(const char* path) {
    WsLogger* log = WsLogger::getWsLogger();
    std::vector<float>().swap(m_alphas);
    m_lastFeature = -1;
    LineReader reader(kLineBuffer);
    if (!reader.open(path)) {
        log->error("Can not open file '%s': ", path != nullptr ? path : "");
        return -1;
    }
    std::string line;
    for (unsigned lineNo = 1; reader.next(line); ++lineNo) {
        if (lineNo % kProgressLines == 0) log->info("alpha file line: %d", lineNo);
        int id = -1;
        double alpha = 0;
        if (std::sscanf(line.c_str(), "%d%lf", &id, &alpha) != 2 || id < 0 ||
            id > kMaxFeatureId || !(alpha > 0) || !(alpha < FLT_MAX)) {
            log->warn("%s:%u: not a feature id and a positive alpha", path, lineNo);
            log->warn("%s\n", line.c_str());
            continue;
        }
        if (static_cast<size_t>(id) >= m_alphas.size()) m_alphas.resize(id + kAlphaStep, 0.0f);
        m_alphas[id] = static_cast<float>(alpha);
        m_lastFeature = id;
    }
    log->info("done\n");
    log->info("last feature: %d val: %f\n", m_lastFeature,
              m_lastFeature >= 0 ? m_alphas[m_lastFeature] : 0.0f);
    return m_lastFeature;
}

int MaxentDict::_addFeature(const char* line, const char* path, unsigned lineNo) {
    WsLogger* log = WsLogger::getWsLogger();
    int id = 0, label = 0, tmpl = 0;
    float freq = 0;
    char key[kLineBuffer];
    const char* why = nullptr;
    if (std::sscanf(line, "%d%f%d%1023s%d", &id, &freq, &label, key, &tmpl) != 5)
        why = "not five fields";
    else if (id < 1 || id > m_lastFeature)
        why = "a feature id without an alpha";
    else if (label < 0 || label >= kLabels || tmpl < 0 || tmpl >= kTemplates)
        why = "a label or template out of range";
    if (why != nullptr) {
        log->warn("%s:%u: %s", path, lineNo, why);
        log->warn("%s\n", line);
        return 0;
    }
    unsigned short units[3];
    const int n = EncodeConverter::utf8ToUtf16(bytes(key), std::strlen(key), units, 3);
    if (n > 2) {
        log->warn("What should I suppose to do?\n");
        return 0;
    }
    if (n < 1) return 0;
    if (n == 1 && label == 0 && tmpl == 0)
        m_h.charBits[units[0] >> 3] |= static_cast<unsigned char>(1u << (units[0] & 7));
    const char* k = reinterpret_cast<const char*>(units);
    float alpha = m_alphas[id];
    add(k, n * 2, label + kLabels * kTemplateGroup[tmpl], alpha);
    if (m_trie->match(bytes(k), n * 2) <= 0) {
        log->error("Insertion failed: %s\n", key);
        return -1;
    }
    return 1;
}

int MaxentDict::loadFreqFromText(const char* path) {
    WsLogger* log = WsLogger::getWsLogger();
    if (m_lastFeature < 1) {
        log->error("Please load alpha file first\n");
        return -1;
    }
    LineReader reader(kLineBuffer);
    if (!reader.open(path)) {
        log->error("Can not open file '%s': ", path != nullptr ? path : "");
        return -1;
    }
    std::string line;
    for (unsigned lineNo = 1; reader.next(line); ++lineNo) {
        if (lineNo % kProgressLines == 0) log->info("freq file line: %d", lineNo);
        if (_addFeature(line.c_str(), path, lineNo) < 0) return -1;
    }
    log->info("done\n");
    return 0;
}

bool MaxentDict::buildDict(const char* freqPath, const char* alphaPath, const char* outPath) {
    WsLogger* log = WsLogger::getWsLogger();
    if (loadAlphaFromText(alphaPath) < 1) return false;
    log->info("LOG_ALPHAS");
    if (!_setCoding()) {
        log->error("%s: no positive alpha", alphaPath);
        return false;
    }
    setDefaultFeatureAlpha(m_alphas[m_lastFeature]);
    if (loadFreqFromText(freqPath) != 0) return false;
    const int rc = writeDict(outPath);
    if (rc != 0) {
        log->printErr(outPath, rc, kSource, kWriteFailLine, "cannot write the model");
        return false;
    }
    return true;
}

bool MaxentDict::_reserveRecord() {
    const bool owned = m_records != nullptr && m_records == m_recordStorage.data();
    const int32_t cap = m_h.used >= m_h.capacity ? m_h.capacity + kRecordStep : m_h.capacity;
    if (owned && cap == m_h.capacity) return true;
    try {
        std::vector<unsigned char> grown(static_cast<size_t>(cap) * kRecordSize,
                                         static_cast<unsigned char>(m_h.defaultCode));
        if (m_records != nullptr)
            std::memcpy(grown.data(), m_records, static_cast<size_t>(m_h.capacity) * kRecordSize);
        m_recordStorage.swap(grown);
    } catch (const std::bad_alloc&) {
        return false;
    }
    m_records = m_recordStorage.data();
    m_h.capacity = cap;
    return true;
}

int MaxentDict::add(const char* key, unsigned len, int slot, float& alpha) {
    if (m_readOnly || slot < 0 || slot >= kRecordSize || len == 0 || len > INT_MAX) return 0;
    int index = m_trie->match(bytes(key), static_cast<int>(len));
    if (index <= 0 || index >= m_h.used) {
        if (!_reserveRecord()) return 0;
        index = m_h.used++;
        m_trie->add(bytes(key), static_cast<int>(len), index);
    } else if (!_reserveRecord()) {
        return 0;
    }
    m_recordStorage[static_cast<size_t>(index) * kRecordSize + slot] =
        static_cast<unsigned char>(alphaF2I(alpha));
    m_h.maxKeyLen = std::max(m_h.maxKeyLen, len);
    return index;
}

// ---- lookups ----

const unsigned char* MaxentDict::operator[](unsigned index) const {
    if (index == 0 || index >= static_cast<unsigned>(m_h.used)) return m_h.defaultRecord;
    return m_records + static_cast<size_t>(index) * kRecordSize;
}

const unsigned char* MaxentDict::operator[](const char* key) const {
    return key != nullptr ? match(key, static_cast<unsigned>(std::strlen(key)))
                          : m_h.defaultRecord;
}

const unsigned char* MaxentDict::match(const char* key, unsigned len) const {
    const int index = m_trie->match(bytes(key), clampInt(len));
    return index > 0 ? (*this)[static_cast<unsigned>(index)] : m_h.defaultRecord;
}

int MaxentDict::matchAll(const char* key, unsigned len, TrieBase::MatchInfo* out,
                         unsigned max) const {
    return m_trie->matchAll(bytes(key), clampInt(len), out, clampInt(max));
}

void MaxentDict::buildPOSConditionalProbTable() {
    for (int i = 0; i < kLabels; ++i) {
        for (int j = 0; j < kLabels; ++j) {
            const unsigned short ki = static_cast<unsigned short>('0' + i);
            const unsigned short kj = static_cast<unsigned short>('0' + j);
            const unsigned char* ri = match(reinterpret_cast<const char*>(&ki), 2);
            const unsigned char* rj = match(reinterpret_cast<const char*>(&kj), 2);
            for (int l = 0; l < kLabels; ++l) {
                int sum = 1;
                if (ri[16 + l] != kNoAlpha) sum += ri[16 + l];
                if (rj[l] != kNoAlpha) sum += rj[l];
                m_labelPairs[i][j][l] = sum;
            }
        }
    }
}

// ---- loading and writing ----

int MaxentDict::_failLoad(int code) {
    clearData();
    return code;
}

int MaxentDict::_parse(const char* data, uint64_t size, std::vector<char> keep,
                       std::unique_ptr<MMap> map) {
    if (data == nullptr || size < kHeaderBytes) return _failLoad(WS_ERR_FILE_TOO_SMALL);
    Header h;
    const char* at = data;
    forEachField(h, [&](void* field, size_t n) {
        std::memcpy(field, at, n);
        at += n;
    });
    if (size < kRecordsOffset) return _failLoad(WS_ERR_OPEN_FILE);
    const uint64_t recordBytes = static_cast<uint64_t>(h.capacity) * kRecordSize;
    if (h.capacity < 0 || recordBytes > size - kRecordsOffset || h.used < 1 ||
        h.used > std::max(h.capacity, 1))
        return _failLoad(WS_ERR_OPEN_FILE);
    std::unique_ptr<DoubleTrie> trie(new DoubleTrie());
    // Used in place; the trie copies its cells before any change.
    const uint64_t trieAt = kRecordsOffset + recordBytes;
    if (trie->load(const_cast<char*>(data) + trieAt, static_cast<unsigned long>(size - trieAt)) ==
        nullptr)
        return _failLoad(WS_ERR_TEXT);
    std::memcpy(h.reserved, data + kHeaderBytes, kReservedBytes);
    m_h = h;
    m_records = h.capacity > 0 ? bytes(data + kRecordsOffset) : nullptr;
    std::vector<unsigned char>().swap(m_recordStorage);
    m_bytes = std::move(keep);
    m_trie = std::move(trie);
    m_map = std::move(map);
    return 0;
}

int MaxentDict::loadDict(const char* buffer, unsigned size) {
    return _parse(buffer, size, {}, nullptr);
}

int MaxentDict::loadDict(const char* path) {
    m_readOnly = true;
    std::unique_ptr<MMap> map(new MMap());
    void* addr = map->mapFile(path);
    if (addr == MAP_FAILED) return _failLoad(WS_ERR_OPEN_FILE);
    const uint64_t size = map->length();  // before the map moves into the call
    return _parse(static_cast<const char*>(addr), size, {}, std::move(map));
}

int MaxentDict::loadDict(std::FILE* fp) {
    const int64_t remaining = fp != nullptr ? TrieBase::remainingBytes(fp) : -1;
    if (remaining < static_cast<int64_t>(kHeaderBytes)) return _failLoad(WS_ERR_FILE_TOO_SMALL);
    std::vector<char> copy;
    try {
        copy.resize(static_cast<size_t>(remaining));
    } catch (const std::bad_alloc&) {
        return _failLoad(WS_ERR_MEMORY);
    }
    if (std::fread(copy.data(), 1, copy.size(), fp) != copy.size())
        return _failLoad(WS_ERR_FILE_TOO_SMALL);
    const char* data = copy.data();
    const uint64_t size = copy.size();
    return _parse(data, size, std::move(copy), nullptr);
}

int MaxentDict::writeDict(const char* path) {
    File f;
    if (!f.open(path, "wb")) return WS_ERR_OPEN_FILE;
    const int rc = writeDict(f.get());
    return f.close() != 0 && rc == 0 ? WS_ERR_WRITE : rc;
}

int MaxentDict::writeDict(std::FILE* fp) {
    if (m_trie->front().length() == 0) m_trie->init();  // an empty trie cannot be used in place
    bool ok = true;
    forEachField(m_h, [&](const void* field, size_t n) {
        ok = ok && std::fwrite(field, 1, n, fp) == n;
    });
    const size_t recordBytes = static_cast<size_t>(m_h.capacity) * kRecordSize;
    ok = ok && std::fwrite(m_h.reserved, 1, kReservedBytes, fp) == kReservedBytes &&
         (recordBytes == 0 || std::fwrite(m_records, 1, recordBytes, fp) == recordBytes) &&
         m_trie->write(fp);
    if (!ok) return WS_ERR_WRITE;
    return std::fflush(fp) != 0 || std::ferror(fp) ? WS_ERR_WRITE : 0;
}

const char* MaxentDict::getTrieErr() const { return m_trie->get_err(); }

void MaxentDict::clearData() {
    m_h = Header();
    setDefaultFeatureAlpha(1.0);
    m_records = nullptr;
    std::vector<unsigned char>().swap(m_recordStorage);
    std::vector<char>().swap(m_bytes);
    m_trie.reset(new DoubleTrie());
    m_map.reset();
    std::memset(m_labelPairs, 0, sizeof m_labelPairs);
}

}  // namespace ws
