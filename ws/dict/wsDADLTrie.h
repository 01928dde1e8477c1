#ifndef ZEG_WS_DICT_WSDADLTRIE_H
#define ZEG_WS_DICT_WSDADLTRIE_H

#include <cstdint>
#include <vector>

#include "ws/dict/wsDoubleArrayTrie.h"

namespace ws {

// A double-array trie that keeps its free cells on a list, so that finding
// room for a state visits free cells only.
//
// The list lives in the free cells themselves, in ascending cell order,
// with cell 0 (never a state) as its head:
//
//     cell:   0 (head)        5            9          ...
//     check:  -5          ->  -9       ->  -0  (end)
//     base:   -last       <-  -0       <-  -5
//
// A free cell's check holds minus the next free cell, its base minus the
// previous one; both stay below 1, so the cell still reads as free. The
// root (cell 1) is never on the list. Magic "DADLTrie V1.0.0".
// After a load the stored list is not trusted: it is rebuilt from the
// cells before the first change. Thread safety as TrieBase.
class DADLTrie : public DoubleArrayTrie {
public:
    DADLTrie();
    ~DADLTrie() override;

    using DoubleArrayTrie::load;

    bool init() override;
    void clear() override;
    bool load(std::FILE* fp) override;
    char* load(char* buffer, unsigned long size) override;
    const char* toolsVersion() const override;
    bool checkMagic() const override;
    void setMagic() override;
    int getNewBase(const int* codes, int count, int minCode, int maxCode) override;
    void extend() override;
    void getState(int state) override;
    void freeState(int state) override;

    // True when the free list holds exactly the free cells above the root,
    // ascending, with consistent back links.
    bool check_list() const;

private:
    int nextFree(int cell) const { return -cells()[cell].check; }
    int prevFree(int cell) const { return -cells()[cell].base; }
    void link(int prev, int cell, int next);
    void rebuildList();
    void ensureList();
    // The bit map mirrors the list so that a freed cell finds its place
    // without walking the cells below it one by one.
    void markFree(int cell, bool free);
    int freeCellBelow(int cell) const;

    bool m_listValid = false;
    std::vector<uint64_t> m_freeBits;
};

}  // namespace ws

#endif
