#ifndef ZEG_WS_DICT_WSBASEDICT_H
#define ZEG_WS_DICT_WSBASEDICT_H

#include "ws/dict/wsDATDict.h"

namespace ws {

// A DATDict whose area is an array of distinct float32 values: dataMax and
// used count entries (from 1), and a key's trie value is the index of its
// float. Keys that carry equal values share one entry. Magic
// "BaseDict_v_1_0"; otherwise the DATDict file, with 4 x dataMax area bytes.
// Copying and thread safety as DATDict.
class BaseDict : public DATDict {
public:
    static constexpr unsigned kEntryBytes = 4;

    BaseDict();
    ~BaseDict() override;

    using DATDict::loadDict;
    using DATDict::operator[];

    // Returns 0 at once when already loaded; otherwise as DATDict.
    int loadDict(const char* path) override;

    // The float entry `id` (4 bytes, unaligned); null when id is 0, not
    // below used or outside the array.
    const char* operator[](unsigned id) const override;
    // Always 0: entries have no extra bytes.
    int getValue(int id, unsigned char** extra, float& weight) const override;

    // The record adds of DATDict do not apply to float entries: they add
    // nothing and return 0.
    int add(const char* utf8, unsigned len, float* weight, unsigned char* extra,
            unsigned extraLen) override;
    int add(unsigned short* key, unsigned len, float* weight, unsigned char* extra,
            unsigned extraLen) override;

    // Maps the key (raw bytes, `len` bytes) to `value`: to the first entry
    // equal to it, or to a new entry appended at index used. A key that
    // already exists with another value is re-pointed. Returns the index,
    // or 0 when read-only.
    virtual int add(const char* key, unsigned len, float& value);

    // The float at entry `id`, or 0.0 when there is none.
    float valueAt(unsigned id) const;

protected:
    uint64_t areaBytes(uint64_t dataMax) const override { return dataMax * kEntryBytes; }

private:
    // The first entry equal to `value`, or 0.
    int findValue(float value) const;
    int appendValue(float value);
};

}  // namespace ws

#endif
