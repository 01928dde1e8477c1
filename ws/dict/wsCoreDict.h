#ifndef ZEG_WS_DICT_WSCOREDICT_H
#define ZEG_WS_DICT_WSCOREDICT_H

#include <vector>

#include "ws/core/wsWordRecord.h"
#include "ws/dict/wsDATDict.h"

namespace ws {

// A word dictionary: a DATDict whose records' extra bytes carry the core
// word information, in this order, unpadded:
//
//   G (1 byte), G granularities (1 byte each)
//   P (1 byte), P properties: type id (int16), weight (float32), unaligned
//   S (1 byte), S semantic items (2 bytes each, carried as stored)
//   the user value: the remaining bytes
//
// The record's own weight is the word's dictionary weight.
//
// The readers take the extra bytes as getValue returns them (the record's
// length L sits in the 4 bytes just before), return -1 for a null pointer,
// and append to their vectors without clearing them. A value whose counts
// do not fit in its L bytes (damaged data) reads as empty: nothing is
// appended and the counts are 0.
//
// Copying and thread safety as DATDict; the readers only read.
class WsCoreDict : public DATDict {
public:
    WsCoreDict();
    ~WsCoreDict() override;

    // Granularities, properties with weights and semantic items; returns G.
    virtual int getAllInfo(const unsigned char* value, std::vector<int>& gran,
                           std::vector<short>& props, std::vector<float>& weights,
                           std::vector<SemItem>& sems) const;
    // Property ids and weights; returns P.
    virtual int getPropWght(const unsigned char* value, std::vector<short>& props,
                            std::vector<float>& weights) const;
    virtual int getPropWght(const unsigned char* value, std::vector<WordType>& types) const;
    // Property ids; returns the size of `props` afterwards.
    virtual int getProp(const unsigned char* value, std::vector<short>& props) const;
    // Granularities; returns the size of `gran` afterwards.
    virtual int getGran(const unsigned char* value, std::vector<int>& gran) const;
    // Semantic items; returns S.
    virtual int getSemItems(const unsigned char* value, std::vector<SemItem>& sems) const;
    // The user value of the word `id` (local): sets *usr (null when there
    // is none) and returns its length in bytes; 0 for a negative or unknown
    // id.
    virtual int getUsrValue(int id, unsigned char** usr) const;

    int getValue(int id, unsigned char** value, float& weight) const override;

    // The extra bytes of a record in the layout above. REQUIRES: at most
    // 255 granularities, properties and semantic items.
    static std::vector<unsigned char> encodeValue(const std::vector<int>& gran,
                                                  const std::vector<WordType>& props,
                                                  const std::vector<SemItem>& sems,
                                                  const unsigned char* usr, unsigned usrLen);

private:
    // One value, split into its parts.
    struct Layout {
        unsigned grans = 0;
        const unsigned char* gran = nullptr;
        unsigned props = 0;
        const unsigned char* prop = nullptr;  // 6 bytes per property
        unsigned sems = 0;
        const unsigned char* sem = nullptr;   // 2 bytes per item
        const unsigned char* usr = nullptr;
        unsigned usrLen = 0;
    };
    // Splits the `len` bytes at `value`; false when the counts do not fit.
    static bool split(const unsigned char* value, uint32_t len, Layout& out);
    // Splits the value that getValue returned (its length stored before it).
    static bool splitValue(const unsigned char* value, Layout& out);
    static WordType propertyAt(const Layout& v, unsigned i);
};

}  // namespace ws

#endif
