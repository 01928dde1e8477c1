#include "ws/dict/wsDATDict.h"

#include <sys/mman.h>

#include <algorithm>
#include <climits>
#include <cstring>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsFile.h"
#include "ws/core/wsHot.h"
#include "ws/core/wsWsLogger.h"

namespace ws {

namespace {

const char kDATDictMagic[] = "DATDict_v_1_0";

bool writeBytes(std::FILE* fp, const void* data, size_t size) {
    return size == 0 || std::fwrite(data, 1, size, fp) == size;
}

const unsigned char* bytes(const char* p) { return reinterpret_cast<const unsigned char*>(p); }

int clampInt(unsigned v) { return v > INT_MAX ? INT_MAX : static_cast<int>(v); }

}  // namespace

DATDict::DATDict() : DATDict(kDATDictMagic) {}

DATDict::DATDict(const char* magic) : m_trie(new DoubleTrie()) {
    std::memcpy(m_magic, magic, std::min(std::strlen(magic), size_t{kMagicSize - 1}));
}

DATDict::~DATDict() = default;

// ---- loading ----

int DATDict::checkHeader(const char* magicField, const Header& h, uint64_t available,
                         int badSize) const {
    if (std::strncmp(magicField, m_magic, kMagicSize) != 0) return WS_ERR_VERSION;
    // dataMax is stored unsigned; a value with the top bit set is "negative".
    if (h.dataMax > static_cast<uint32_t>(INT32_MAX) || areaBytes(h.dataMax) > available)
        return badSize;
    // An empty dictionary has used 1 and dataMax 0; otherwise used stays
    // inside the area, so every id below it starts inside the area.
    if (h.used < 1 || static_cast<uint32_t>(h.used) > std::max<uint32_t>(h.dataMax, 1))
        return badSize;
    return 0;
}

int DATDict::failLoad(int code) {
    clearData();
    return code;
}

void DATDict::commit(const Header& h, const char* area, std::vector<char> storage,
                     std::unique_ptr<DoubleTrie> trie, std::unique_ptr<MMap> map) {
    m_header = h;
    m_storage = std::move(storage);
    m_owned = area == nullptr;
    m_area = m_owned ? m_storage.data() : area;
    m_trie = std::move(trie);
    m_map = std::move(map);
    m_loaded = true;
}

int DATDict::loadDict(const char* path) {
    m_readOnly = true;
    std::unique_ptr<MMap> map(new MMap());
    void* addr = map->mapFile(path);
    if (addr == MAP_FAILED) return failLoad(WS_ERR_OPEN_FILE);
    // Sizes past 4 GiB do not fit the interface; no dictionary comes near.
    const unsigned size = map->length() > UINT_MAX ? UINT_MAX
                                                   : static_cast<unsigned>(map->length());
    return loadMapped(static_cast<const char*>(addr), size, std::move(map));
}

int DATDict::loadDict(const char* buffer, unsigned size) {
    return loadMapped(buffer, size, nullptr);
}

int DATDict::loadMapped(const char* buffer, unsigned size, std::unique_ptr<MMap> map) {
    // The size test is against the 24-byte header although the magic comes
    // first; a buffer too short for both then fails on its counts.
    if (buffer == nullptr || size < kHeaderSize) return failLoad(WS_ERR_OPEN_FILE);
    char magicField[kMagicSize] = {};
    std::memcpy(magicField, buffer, std::min<unsigned>(size, kMagicSize));
    Header h;
    if (size < kSectionStart) {
        if (std::strncmp(magicField, m_magic, kMagicSize) != 0)
            return failLoad(WS_ERR_VERSION);
        return failLoad(WS_ERR_OPEN_FILE);
    }
    std::memcpy(&h, buffer + kMagicSize, kHeaderSize);
    const int rc = checkHeader(magicField, h, size - kSectionStart, WS_ERR_OPEN_FILE);
    if (rc != 0) return failLoad(rc);
    const char* area = buffer + kSectionStart;
    const uint64_t areaSize = areaBytes(h.dataMax);
    std::unique_ptr<DoubleTrie> trie(new DoubleTrie());
    // The trie is used in place and never written through (it copies its
    // cells before any change).
    char* end = trie->load(const_cast<char*>(area) + areaSize,
                           static_cast<unsigned long>(size - kSectionStart - areaSize));
    if (end == nullptr) return failLoad(WS_ERR_READ);
    commit(h, area, {}, std::move(trie), std::move(map));
    m_end = end;
    return 0;
}

int DATDict::loadDict(std::FILE* fp) {
    if (fp == nullptr) return failLoad(WS_ERR_FILE_TOO_SMALL);
    const int64_t remaining = TrieBase::remainingBytes(fp);
    if (remaining < static_cast<int64_t>(kHeaderSize)) return failLoad(WS_ERR_FILE_TOO_SMALL);
    char magicField[kMagicSize] = {};
    const size_t got = std::fread(magicField, 1, kMagicSize, fp);
    if (std::strncmp(magicField, m_magic, kMagicSize) != 0) return failLoad(WS_ERR_VERSION);
    Header h;
    if (got != kMagicSize || std::fread(&h, 1, kHeaderSize, fp) != kHeaderSize)
        return failLoad(WS_ERR_FILE_TOO_SMALL);
    // The area is checked against the bytes after the header as if the
    // magic's 32 bytes were not there; a short area then fails to read.
    const int rc = checkHeader(magicField, h, static_cast<uint64_t>(remaining) - kHeaderSize,
                               WS_ERR_FILE_TOO_SMALL);
    if (rc != 0) return failLoad(rc);
    std::vector<char> storage(static_cast<size_t>(areaBytes(h.dataMax)));
    if (std::fread(storage.data(), 1, storage.size(), fp) != storage.size())
        return failLoad(WS_ERR_READ);
    std::unique_ptr<DoubleTrie> trie(new DoubleTrie());
    if (!trie->load(fp)) return failLoad(WS_ERR_TEXT);
    commit(h, nullptr, std::move(storage), std::move(trie), nullptr);
    m_end = nullptr;
    return 0;
}

// ---- writing ----

int DATDict::writeDict(const char* path) {
    File f;
    if (!f.open(path, "wb")) return WS_ERR_OPEN_FILE;
    const int rc = writeDict(f.get());
    // Buffered bytes that cannot be flushed are a failed write too.
    return f.close() != 0 && rc == 0 ? WS_ERR_WRITE : rc;
}

int DATDict::writeDict(std::FILE* fp) {
    if (m_trie->front().length() == 0) m_trie->init();  // an empty trie cannot be used in place
    // m_magic is NUL-padded to its 32 bytes.
    if (!writeBytes(fp, m_magic, kMagicSize) || !writeBytes(fp, &m_header, kHeaderSize) ||
        !writeBytes(fp, m_area, static_cast<size_t>(areaBytes(m_header.dataMax))) ||
        !m_trie->write(fp))
        return WS_ERR_WRITE;
    // stdio may accept part of a block and fail on the rest; the stream's
    // error flag is the only trace of it.
    return std::fflush(fp) != 0 || std::ferror(fp) ? WS_ERR_WRITE : 0;
}

// ---- adding ----

void DATDict::growArea(uint32_t dataMax) {
    const size_t newSize = static_cast<size_t>(areaBytes(dataMax));
    if (m_owned && newSize == m_storage.size()) return;
    if (m_owned) {
        m_storage.resize(newSize, '\0');
    } else {
        // A borrowed area is copied: a dictionary loaded from a buffer may
        // still take words.
        std::vector<char> storage(newSize, '\0');
        const size_t old = static_cast<size_t>(areaBytes(m_header.dataMax));
        if (m_area != nullptr && old > 0) std::memcpy(storage.data(), m_area, std::min(old, newSize));
        m_storage.swap(storage);
        m_owned = true;
    }
    m_area = m_storage.data();
    m_header.dataMax = dataMax;
}

int DATDict::_add(const char* key, unsigned byteLen, float* weight, unsigned char* extra,
                  unsigned extraLen) {
    if (m_readOnly) return 0;
    if (byteLen > INT_MAX) return WS_ERR_WORD_TOO_LONG;
    if (m_trie->match(bytes(key), static_cast<int>(byteLen)) != 0) return WS_ERR_KEY_EXISTS;
    const uint64_t id = static_cast<uint64_t>(m_header.used);
    const uint64_t end = id + kRecordHead + extraLen;
    // One growth step of kAreaStep, whatever the record; a record that
    // still does not fit is refused before anything changes.
    uint64_t dataMax = m_header.dataMax;
    if (end >= dataMax) dataMax += kAreaStep;
    if (end > dataMax) return WS_ERR_TEXT;
    if (dataMax > static_cast<uint64_t>(INT32_MAX)) return WS_ERR_MEMORY;
    growArea(static_cast<uint32_t>(dataMax));  // also takes a borrowed area over
    m_trie->add(bytes(key), static_cast<int>(byteLen), static_cast<int>(id));
    char* record = writableArea() + id;
    std::memcpy(record, weight, 4);
    std::memcpy(record + 4, &extraLen, 4);
    if (extraLen > 0) std::memcpy(record + kRecordHead, extra, extraLen);
    m_header.used = static_cast<int32_t>(end);
    m_header.maxKeyLen = std::max(m_header.maxKeyLen, byteLen);
    return static_cast<int>(id);
}

int DATDict::add(unsigned short* key, unsigned len, float* weight, unsigned char* extra,
                 unsigned extraLen) {
    if (m_readOnly || (extraLen != 0 && extra == nullptr)) return 0;
    if (len > INT_MAX / 2) return WS_ERR_WORD_TOO_LONG;
    float one = 1.0f;
    return _add(reinterpret_cast<const char*>(key), len * 2, weight != nullptr ? weight : &one,
                extra, extraLen);
}

int DATDict::add(const char* utf8, unsigned len, float* weight, unsigned char* extra,
                 unsigned extraLen) {
    // One unit more than allowed tells an over-long word from a full buffer.
    unsigned short units[kMaxKeyUnits + 2];
    const int n = EncodeConverter::utf8ToUtf16(bytes(utf8), len, units, kMaxKeyUnits + 1);
    if (n > static_cast<int>(kMaxKeyUnits)) return WS_ERR_WORD_TOO_LONG;
    if (n < 1 || !EncodeConverter::isUTF8(bytes(utf8), len)) return WS_ERR_KEY_TO_UTF16;
    return add(units, static_cast<unsigned>(n), weight, extra, extraLen);
}

// ---- lookups ----

bool DATDict::recordFits(unsigned id) const {
    const uint64_t area = m_header.dataMax;
    if (id == 0 || id >= static_cast<uint32_t>(m_header.used) || id + uint64_t{kRecordHead} > area)
        return false;
    return recordLength(m_area + id) <= area - id - kRecordHead;
}

const char* DATDict::operator[](unsigned id) const {
    return recordFits(id) ? m_area + id : nullptr;
}

const char* DATDict::operator[](const char* key) const {
    return key != nullptr ? match(key, static_cast<unsigned>(std::strlen(key))) : nullptr;
}

const char* DATDict::match(const char* key, unsigned len) const {
    if (len > INT_MAX) return nullptr;
    const int id = m_trie->match(bytes(key), static_cast<int>(len));
    return id > 0 ? (*this)[static_cast<unsigned>(id)] : nullptr;
}

int DATDict::matchAll(const char* key, unsigned len, TrieBase::MatchInfo* out,
                      unsigned max) const {
    return matchRecords(key, len, out, nullptr, max);
}

WS_HOT int DATDict::matchRecords(const char* key, unsigned len, TrieBase::MatchInfo* out,
                                 const char** records, unsigned max) const {
    const int n = m_trie->matchAll(bytes(key), clampInt(len), out, clampInt(max));
    // Values that name no record (damaged data) are dropped.
    int kept = 0;
    for (int i = 0; i < n; ++i) {
        const char* record =
            out[i].value > 0 ? (*this)[static_cast<unsigned>(out[i].value)] : nullptr;
        if (record == nullptr) continue;
        if (records != nullptr) records[kept] = record;
        out[kept++] = out[i];
    }
    return kept;
}

int DATDict::getWordId(const unsigned short* key, unsigned len) const {
    if (len > INT_MAX / 2) return kNotFound;
    const int id = m_trie->match(reinterpret_cast<const unsigned char*>(key),
                                 static_cast<int>(len * 2));
    return id >= 1 && id < m_header.used ? id : kNotFound;
}

int DATDict::getWordId(const char* utf8, unsigned len) const {
    std::vector<unsigned short> units(static_cast<size_t>(len) + 15);
    const int n = EncodeConverter::utf8ToUtf16(bytes(utf8), len, units.data(), units.size());
    if (n < 1) return WS_ERR_KEY_TO_UTF16;
    return getWordId(units.data(), static_cast<unsigned>(n));
}

int DATDict::getValue(int id, unsigned char** extra, float& weight) const {
    if (extra != nullptr) *extra = nullptr;
    if (id < 0) return 0;
    const char* record = DATDict::operator[](static_cast<unsigned>(id));
    if (record == nullptr) return 0;
    weight = recordWeight(record);
    const uint32_t len = recordLength(record);
    // The bytes may lie in a read-only mapping; callers only read them.
    if (extra != nullptr && len > 0)
        *extra = reinterpret_cast<unsigned char*>(const_cast<char*>(record + kRecordHead));
    return static_cast<int>(len);
}

// ---- the rest ----

const char* DATDict::toolsVersion() const { return m_trie->toolsVersion(); }

const char* DATDict::getTrieErr() const { return m_trie->get_err(); }

const char* DATDict::dictVersion(const char* path) {
    if (m_loaded) return m_magic;
    WsLogger* log = WsLogger::getWsLogger();
    File f;
    if (!f.open(path, "rb")) {
        log->error("Can not open dictionary '%s': ", path != nullptr ? path : "");
        return nullptr;
    }
    if (TrieBase::remainingBytes(f.get()) < static_cast<int64_t>(kHeaderSize)) {
        log->errorPos("wsDATDict", 256, "File size too small");
        return nullptr;
    }
    char magicField[kMagicSize] = {};
    if (std::fread(magicField, 1, kMagicSize, f.get()) != kMagicSize ||
        std::strncmp(magicField, m_magic, kMagicSize) != 0) {
        log->info("the rich dictionary version is error");
        return nullptr;
    }
    return m_magic;
}

void DATDict::listAllEntries() { m_trie->listAllEntriesUtf8(); }

void DATDict::clearData() {
    m_header = Header();
    std::vector<char>().swap(m_storage);
    m_area = nullptr;
    m_owned = false;
    m_trie.reset(new DoubleTrie());
    m_map.reset();
    m_loaded = false;
    m_end = nullptr;
}

}  // namespace ws
