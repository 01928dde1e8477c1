// gen_gbk_table OPENCC_TEXT VARIANTS OUTPUT
// Writes the translation table's source file from iconv's GBK code page,
// OpenCC's character table dumped as text (`opencc_dict -f ocd2 -t text`)
// and our list of variant characters OpenCC does not map (same format),
// then prints the counts of the four kinds of cell.
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "norm_utility/ErrorLine.h"
#include "tools/GBKTableBuilder.h"
#include "tools/StandardStreams.h"

namespace {

using norm_utility::writeErrorLine;

bool readT2S(const char* path, zeg_tools::T2SMap& t2s) {
    std::ifstream in(path, std::ios::binary);
    std::string error = "cannot open";
    if (in && zeg_tools::readOpenCCCharacters(in, t2s, error)) return true;
    writeErrorLine(std::string("[gen_gbk_table] ") + path + ": " + error);
    return false;
}

bool build(const zeg_tools::T2SMap& t2s, std::vector<unsigned char>& table) {
    zeg_tools::GBKCodePage gbk;
    if (!gbk.open()) {
        writeErrorLine("[gen_gbk_table] iconv has no GBK to UTF-32LE converter");
        return false;
    }
    std::string error;
    if (zeg_tools::buildGBKTable(gbk, t2s, table, error)) return true;
    writeErrorLine("[gen_gbk_table] " + error);
    return false;
}

// Writes through a temporary file, so a failed run leaves the old table.
bool writeFile(const std::string& path, const std::string& text) {
    const std::string temporary = path + ".tmp";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!(out << text) || !out.flush()) {
            writeErrorLine("[gen_gbk_table] cannot write [" + temporary + "]");
            return false;
        }
    }
    if (std::rename(temporary.c_str(), path.c_str()) == 0) return true;
    writeErrorLine("[gen_gbk_table] cannot replace [" + path + "]");
    std::remove(temporary.c_str());
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (!zeg_tools::guardStandardStreams("gen_gbk_table", false)) return 2;
    if (argc != 4) {
        writeErrorLine("usage: gen_gbk_table OPENCC_TEXT VARIANTS OUTPUT");
        return 2;
    }
    zeg_tools::T2SMap t2s, variants;
    std::vector<unsigned char> table;
    if (!readT2S(argv[1], t2s) || !readT2S(argv[2], variants)) return 1;
    t2s.insert(variants.begin(), variants.end());  // OpenCC's entries stay
    if (!build(t2s, table)) return 1;
    if (!writeFile(argv[3], zeg_tools::writeGBKTableSource(table))) return 1;
    const zeg_tools::CellCounts c = zeg_tools::countCells(table);
    std::printf("identity %d, traditional->simplified %d, non-characters %d, zero-led %d\n",
                c.identity, c.simplified, c.nonCharacters, c.ascii);
    return 0;
}
