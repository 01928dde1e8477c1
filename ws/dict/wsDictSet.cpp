#include "ws/dict/wsDictSet.h"

#include <algorithm>
#include <climits>

#include "ws/core/wsHot.h"
#include "ws/core/wsWsLogger.h"

namespace ws {

namespace {

// Below every weight a user word is chosen with.
const float kUserThreshold = -0.5f;

// Loads `path` into a new dictionary of type D; null with `code` set on
// failure.
template <typename D>
std::unique_ptr<D> loadOne(const std::string& path, int& code) {
    std::unique_ptr<D> dict(new D());
    code = dict->loadDict(path.c_str());
    if (code != 0) dict.reset();
    return dict;
}

}  // namespace

WsDictSet::WsDictSet() = default;

WsDictSet::~WsDictSet() { clearData(); }

int WsDictSet::loadDict(const std::string& basePath, const std::string& alnumPath,
                        const std::vector<std::string>& userPaths) {
    clearData();
    int code = 0;
    const std::string* failed = &basePath;
    m_base = loadOne<WsSegmentDict>(basePath, code);
    if (code == 0) {
        failed = &alnumPath;
        m_alnum = loadOne<WsAlnumDict>(alnumPath, code);
    }
    for (size_t i = 0; code == 0 && i < userPaths.size(); ++i) {
        failed = &userPaths[i];
        std::unique_ptr<WsCoreDict> user = loadOne<WsCoreDict>(userPaths[i], code);
        if (code == 0) m_users.push_back(std::move(user));
    }
    // Global ids are ints: the areas together must stay below INT_MAX.
    if (code == 0 && !buildOffsets()) code = WS_ERR_TEXT;
    if (code != 0) {
        clearData();
        WsLogger::getWsLogger()->printErr(failed->c_str(), code, "wsDictSet", 58,
                                          "Load Dict Failed");
        return code;
    }
    m_totalFreq = 0.0;
    for (size_t k = 0; dictAt(k) != nullptr; ++k) m_totalFreq += dictAt(k)->getTotalFreq();
    buildFirstUnits();
    m_loaded = true;
    return 0;
}

bool WsDictSet::buildOffsets() {
    m_offsets.assign(1, 0);
    int64_t sum = 0;
    for (size_t k = 0; dictAt(k) != nullptr; ++k) {
        sum += dictAt(k)->getDataMax();
        if (sum > INT_MAX) return false;
        m_offsets.push_back(static_cast<int>(sum));
    }
    return true;
}

void WsDictSet::buildFirstUnits() {
    for (unsigned mask = 0; mask < kMasks; ++mask)
        m_maskDicts[mask] = dictBits(static_cast<unsigned char>(mask));
    std::vector<uint8_t>().swap(m_firstUnitDicts);
    std::vector<uint8_t>().swap(m_shortDicts);
    std::vector<uint8_t>().swap(m_pairDicts);
    const size_t users = m_users.size();
    if (users + 2 > kFirstUnitDicts) return;
    std::vector<uint8_t> table(kFirstUnits, 0);
    for (size_t k = 0; k < users + 2; ++k)
        mergeDict(k).markFirstPairs(table.data(), static_cast<uint8_t>(1u << k));
    m_firstUnitDicts.swap(table);
    buildPairs();
}

void WsDictSet::buildPairs() {
    std::vector<uint8_t> shortDicts(kFirstUnits, 0);
    std::vector<uint8_t> pairDicts(kPairSlots, 0);
    unsigned whole = 0;
    for (size_t k = 0; k < m_users.size() + 2; ++k) {
        const uint8_t bit = static_cast<uint8_t>(1u << k);
        const bool read = mergeDict(k).forEachKeyHead(4, [&](const unsigned char* head, int n) {
            if (n >= 4) {
                pairDicts[pairSlot(head)] |= bit;
            } else if (n >= 2) {
                shortDicts[head[0] | head[1] << 8] |= bit;
            } else {
                for (unsigned b1 = 0; b1 < 256; ++b1) shortDicts[head[0] | b1 << 8] |= bit;
            }
        });
        if (!read) whole |= bit;
    }
    m_shortDicts.swap(shortDicts);
    m_pairDicts.swap(pairDicts);
    m_wholeDicts = whole;
}

void WsDictSet::clearData() {
    m_loaded = false;
    std::vector<uint8_t>().swap(m_firstUnitDicts);
    std::vector<uint8_t>().swap(m_shortDicts);
    std::vector<uint8_t>().swap(m_pairDicts);
    if (m_base) m_base->clearData();
    if (m_alnum) m_alnum->clearData();
    for (auto& user : m_users) user->clearData();
    m_base.reset();
    m_alnum.reset();
    m_users.clear();
    m_offsets.clear();
    m_totalFreq = 0.0;
}

WsCoreDict* WsDictSet::dictAt(size_t k) const {
    if (k == 0) return m_base.get();
    if (k == 1) return m_alnum.get();
    return k - 2 < m_users.size() ? m_users[k - 2].get() : nullptr;
}

WS_HOT const WsCoreDict& WsDictSet::mergeDict(size_t at) const {
    const size_t users = m_users.size();
    if (at < users) return *m_users[at];
    if (at == users) return *m_base;
    return *m_alnum;
}

WS_HOT int WsDictSet::mergeOffset(size_t at) const {
    const size_t users = m_users.size();
    return m_offsets[at < users ? at + 2 : at - users];
}

WS_HOT WsCoreDict* WsDictSet::whichDict(int id, int& localId) const {
    if (id < 0 || m_offsets.empty()) return nullptr;
    // A handful of dictionaries, and most ids are the base's: a scan from
    // the front beats a binary search.
    for (size_t k = 1; k < m_offsets.size(); ++k) {
        if (id < m_offsets[k]) {
            localId = id - m_offsets[k - 1];
            return dictAt(k - 1);
        }
    }
    return nullptr;
}

int WsDictSet::getValue(int id, unsigned char** value, float& weight) const {
    int local = 0;
    const WsCoreDict* dict = whichDict(id, local);
    if (dict == nullptr) {
        if (value != nullptr) *value = nullptr;
        return 0;
    }
    return dict->getValue(local, value, weight);
}

WS_HOT int WsDictSet::getUsrValue(int id, unsigned char** usr) const {
    int local = 0;
    const WsCoreDict* dict = whichDict(id, local);
    if (dict == nullptr) {
        if (usr != nullptr) *usr = nullptr;
        return 0;
    }
    return dict->getUsrValue(local, usr);
}

const char* WsDictSet::match(const char* key, unsigned len, unsigned char mask) const {
    if ((mask & kUser) != 0) {
        const char* best = nullptr;
        float bestWeight = kUserThreshold;
        for (const auto& user : m_users) {
            const char* record = user->match(key, len);
            if (record != nullptr && DATDict::recordWeight(record) > bestWeight) {
                best = record;
                bestWeight = DATDict::recordWeight(record);
            }
        }
        if (best != nullptr) return best;
    }
    const char* record = nullptr;
    if ((mask & kBase) != 0 && m_base) record = m_base->match(key, len);
    if (record == nullptr && (mask & kAlnum) != 0 && m_alnum) record = m_alnum->match(key, len);
    return record;
}

int WsDictSet::getWordId(const unsigned short* word, unsigned len, unsigned char mask) const {
    if ((mask & kUser) != 0) {
        int best = -1;
        float bestWeight = kUserThreshold;
        for (size_t i = 0; i < m_users.size(); ++i) {
            const int local = m_users[i]->getWordId(word, len);
            const char* record =
                local > 0 ? (*m_users[i])[static_cast<unsigned>(local)] : nullptr;
            if (record != nullptr && DATDict::recordWeight(record) > bestWeight) {
                best = m_offsets[i + 2] + local;
                bestWeight = DATDict::recordWeight(record);
            }
        }
        if (best >= 0) return best;
    }
    int id = -1;
    if ((mask & kBase) != 0 && m_base) {
        const int local = m_base->getWordId(word, len);
        id = local >= 0 ? local : -1;
    }
    if (id < 0 && (mask & kAlnum) != 0 && m_alnum) {
        const int local = m_alnum->getWordId(word, len);
        id = local >= 0 ? m_offsets[1] + local : -1;
    }
    return id;
}

WS_HOT void WsDictSet::collect(const WsCoreDict& dict, int offset, const char* key, unsigned len,
                               unsigned max, Matches& out) {
    if (!dict.mayMatch(key, len)) {
        out.count = 0;
        return;
    }
    collectPassed(dict, offset, key, len, max, out);
}

WS_HOT void WsDictSet::collectPassed(const WsCoreDict& dict, int offset, const char* key,
                                     unsigned len, unsigned max, Matches& out) {
    out.count = dict.matchRecords(key, len, out.info, out.record, max);
    if (offset == 0) return;  // the base dictionary's ids are global ids
    for (int i = 0; i < out.count; ++i) out.info[i].value += offset;
}

void WsDictSet::merge(const Matches& list, const Matches& next, bool userRule, unsigned max,
                      Matches& out) {
    int i = 0, j = 0, n = 0;
    while ((i < list.count || j < next.count) && static_cast<unsigned>(n) < max) {
        const bool takeList = j >= next.count ||
                              (i < list.count && list.info[i].pos < next.info[j].pos);
        const bool takeNext = i >= list.count || next.info[j].pos < list.info[i].pos;
        if (takeList || takeNext) {
            const Matches& from = takeList ? list : next;
            int& at = takeList ? i : j;
            out.info[n] = from.info[at];
            out.record[n++] = from.record[at++];
            continue;
        }
        const bool listWins = !userRule || DATDict::recordWeight(list.record[i]) >
                                               DATDict::recordWeight(next.record[j]);
        out.info[n] = listWins ? list.info[i] : next.info[j];
        out.record[n++] = listWins ? list.record[i] : next.record[j];
        ++i;
        ++j;
    }
    out.count = n;
}

WS_HOT int WsDictSet::matchAll(const char* key, unsigned len, TrieBase::MatchInfo* out,
                               unsigned max, unsigned char mask) const {
    const char* records[kMaxMatches];
    return matchAll(key, len, out, records, max, mask);
}

unsigned WsDictSet::dictBits(unsigned char mask) const {
    const size_t users = m_users.size();
    if (users + 2 > kFirstUnitDicts) return ~0u;  // no table: every masked one is asked
    unsigned bits = (mask & kUser) != 0 ? (1u << users) - 1 : 0;
    if ((mask & kBase) != 0) bits |= 1u << users;
    if ((mask & kAlnum) != 0) bits |= 1u << (users + 1);
    return bits;
}

WS_HOT int WsDictSet::matchAll(const char* key, unsigned len, TrieBase::MatchInfo* out,
                               const char** records, unsigned max, unsigned char mask) const {
    if (!m_loaded || out == nullptr || records == nullptr) return 0;
    max = std::min(max, kMaxMatches);
    unsigned dicts = m_maskDicts[mask & (kBase | kAlnum | kUser)];
    if (!m_firstUnitDicts.empty() && len >= 2) {
        const auto* k = reinterpret_cast<const unsigned char*>(key);
        const unsigned unit = k[0] | k[1] << 8;
        dicts &= m_firstUnitDicts[unit];
        if ((dicts & (dicts - 1)) != 0 && len >= 4)  // several: sharpen by two units
            dicts &= m_wholeDicts | m_shortDicts[unit] | m_pairDicts[pairSlot(k)];
        if ((dicts & (dicts - 1)) == 0) {  // one dictionary (its list is the answer) or none
            if (dicts == 0) return 0;
            const size_t at = static_cast<size_t>(__builtin_ctz(dicts));
            Matches only = {out, records, 0};
            collectPassed(mergeDict(at), mergeOffset(at), key, len, max, only);
            return only.count;
        }
    }
    return mergeAll(key, len, out, records, max, mask, dicts);
}

WS_HOT int WsDictSet::mergeAll(const char* key, unsigned len, TrieBase::MatchInfo* out,
                               const char** records, unsigned max, unsigned char mask,
                               unsigned dicts) const {
    // The list so far lives in the caller's arrays: most keys match in one
    // dictionary only, and its matches are then the answer as collected. A
    // second non-empty list is merged aside and copied back.
    Matches sofar = {out, records, 0};
    TrieBase::MatchInfo info[2][kMaxMatches];
    const char* record[2][kMaxMatches];
    Matches fresh = {info[0], record[0], 0};
    Matches merged = {info[1], record[1], 0};
    // Merges in the dictionary at `at` in merge order.
    auto mergeIn = [&](size_t at) {
        const WsCoreDict& dict = mergeDict(at);
        const int offset = mergeOffset(at);
        if (sofar.count == 0) {  // nothing to merge with: the new list is the merge
            collect(dict, offset, key, len, max, sofar);
            return;
        }
        collect(dict, offset, key, len, max, fresh);
        if (fresh.count == 0) return;  // nothing new: the list so far is the merge
        merge(sofar, fresh, at < m_users.size(), max, merged);
        std::copy(merged.info, merged.info + merged.count, out);
        std::copy(merged.record, merged.record + merged.count, records);
        sofar.count = merged.count;
    };
    if (!m_firstUnitDicts.empty()) {  // `dicts` names exactly the ones to ask
        for (unsigned left = dicts; left != 0; left &= left - 1)
            mergeIn(static_cast<size_t>(__builtin_ctz(left)));
        return sofar.count;
    }
    const size_t users = m_users.size();
    if ((mask & kUser) != 0) {
        for (size_t i = 0; i < users; ++i) mergeIn(i);
    }
    if ((mask & kBase) != 0) mergeIn(users);
    if ((mask & kAlnum) != 0) mergeIn(users + 1);
    return sofar.count;
}

int WsDictSet::getProp(const unsigned char* value, std::vector<short>& props) const {
    return m_base ? m_base->getProp(value, props) : -1;
}

int WsDictSet::getPropWght(const unsigned char* value, std::vector<short>& props,
                           std::vector<float>& weights) const {
    return m_base ? m_base->getPropWght(value, props, weights) : -1;
}

int WsDictSet::getPropWght(const unsigned char* value, std::vector<WordType>& types) const {
    return m_base ? m_base->getPropWght(value, types) : -1;
}

int WsDictSet::getGran(const unsigned char* value, std::vector<int>& gran) const {
    return m_base ? m_base->getGran(value, gran) : -1;
}

int WsDictSet::getSemItems(const unsigned char* value, std::vector<SemItem>& sems) const {
    return m_base ? m_base->getSemItems(value, sems) : -1;
}

}  // namespace ws
