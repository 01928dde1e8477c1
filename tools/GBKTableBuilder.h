#ifndef ZEG_TOOLS_GBKTABLEBUILDER_H
#define ZEG_TOOLS_GBKTABLEBUILDER_H

#include <string>
#include <vector>

#include "tools/GBKCodePage.h"
#include "tools/OpenCCCharacters.h"

namespace zeg_tools {

// The four kinds of cell of the translation table.
struct CellCounts {
    int identity = 0;       // the pair itself
    int simplified = 0;     // another GBK code
    int nonCharacters = 0;  // 0xA1F5 in place of a pair that is no character
    int ascii = 0;          // a zero byte and an ASCII byte
};

// Builds the translation table in the layout of normalize/GBKTable.h
// (kGBKTableBytes bytes) from the GBK code page and a traditional-to-
// simplified map:
//   - a pair that `gbk` does not decode, column 0x7F included, gets 0xA1F5;
//   - a full-width form U+FF01-U+FF5E outside GBK's full-width row 0xA3 gets
//     a zero byte and its ASCII equivalent (row 0xA3 is folded by Translate);
//   - a character of `t2s` whose simplified form is also a GBK character gets
//     that form's code; a form that is itself mapped is followed to the end of
//     the chain, so every target cell holds its own code;
//   - every other character holds its own code.
// Returns false with `error` when a chain loops. REQUIRES: gbk.open() succeeded.
bool buildGBKTable(GBKCodePage& gbk, const T2SMap& t2s, std::vector<unsigned char>& table,
                   std::string& error);

// Counts the kinds of cell of a table of kGBKTableBytes bytes.
CellCounts countCells(const std::vector<unsigned char>& table);

// The C++ source that defines normalize::tbGBK_T2GBK_S with `table`'s bytes.
std::string writeGBKTableSource(const std::vector<unsigned char>& table);

}  // namespace zeg_tools

#endif
