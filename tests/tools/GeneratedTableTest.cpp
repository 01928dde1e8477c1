// The committed table must be what the generator makes of the installed
// sources: OpenCC's character table, our variants and iconv's GBK.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "ToolPaths.h"
#include "normalize/GBKTable.h"
#include "support/TempDir.h"
#include "tools/GBKTableBuilder.h"

namespace {

const char kRegenerate[] =
    "regenerate it with `cmake --build build --target regen_gbk_table` and review the diff";

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Dumps OpenCC's binary character table as text and reads it.
bool loadOpenCC(const zeg_test::TempDir& dir, zeg_tools::T2SMap& t2s, std::string& error) {
    const std::string text = dir.file("TSCharacters.txt");
    const std::string command = std::string("'") + ZEG_OPENCC_DICT + "' -i '" +
                                ZEG_OPENCC_TS_CHARACTERS + "' -o '" + text +
                                "' -f ocd2 -t text >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) {
        error = "cannot run [" + command + "]; is the opencc package installed (make deps)?";
        return false;
    }
    std::ifstream in(text, std::ios::binary), variantsIn(ZEG_TS_VARIANTS, std::ios::binary);
    zeg_tools::T2SMap variants;
    if (!zeg_tools::readOpenCCCharacters(in, t2s, error) ||
        !zeg_tools::readOpenCCCharacters(variantsIn, variants, error))
        return false;
    t2s.insert(variants.begin(), variants.end());
    return true;
}

class GeneratedTableTest : public ::testing::Test {
protected:
    void SetUp() override {
        zeg_tools::T2SMap t2s;
        std::string error;
        ASSERT_TRUE(loadOpenCC(dir, t2s, error)) << error;
        zeg_tools::GBKCodePage gbk;
        ASSERT_TRUE(gbk.open());
        ASSERT_TRUE(zeg_tools::buildGBKTable(gbk, t2s, generated, error)) << error;
    }

    zeg_test::TempDir dir;
    std::vector<unsigned char> generated;
};

TEST_F(GeneratedTableTest, CompiledTableMatchesTheGenerator) {
    int differences = 0;
    for (int at = 0; at < normalize::kGBKTableBytes; at += 2) {
        if (generated[at] == normalize::tbGBK_T2GBK_S[at] &&
            generated[at + 1] == normalize::tbGBK_T2GBK_S[at + 1])
            continue;
        if (++differences <= 10)
            ADD_FAILURE() << "cell " << std::hex << 0x8140 + (at / 2 / 191) * 256 + at / 2 % 191
                          << " differs; " << kRegenerate;
    }
    EXPECT_EQ(differences, 0);
}

TEST_F(GeneratedTableTest, CommittedSourceMatchesTheGenerator) {
    EXPECT_TRUE(readFile(ZEG_GBK_TABLE_SOURCE) == zeg_tools::writeGBKTableSource(generated))
        << ZEG_GBK_TABLE_SOURCE << " is stale; " << kRegenerate;
}

TEST_F(GeneratedTableTest, CellKinds) {
    const zeg_tools::CellCounts c = zeg_tools::countCells(generated);
    EXPECT_EQ(c.identity, 18861);
    EXPECT_EQ(c.simplified, 2928);
    EXPECT_EQ(c.nonCharacters, 2275);
    EXPECT_EQ(c.ascii, 2);
}

}  // namespace
