#include "norm_utility/FileConfiguration.h"

#include <gtest/gtest.h>

#include <ctime>
#include <random>

#include "norm_utility/YException.h"
#include "support/TempDir.h"

using norm_utility::FileConfiguration;
using norm_utility::YException;

namespace {

class FileConfigurationTest : public ::testing::Test {
protected:
    // Writes `text` as the configuration file and loads it.
    FileConfiguration& load(const std::string& text) {
        FileConfiguration::configFileName = dir.write("zeg.ini", text);
        config = std::make_unique<FileConfiguration>();
        return *config;
    }

    std::string missedMessage(const char* section, const char* key) {
        try {
            config->getValue(section, key);
        } catch (const YException& e) {
            return e.GetMsg();
        }
        return "(found)";
    }

    zeg_test::TempDir dir;
    std::unique_ptr<FileConfiguration> config;
};

TEST_F(FileConfigurationTest, ReadsOptionsOfASection) {
    FileConfiguration& c = load("  [SERVER]  \nWS_CONFIG = /a/b.conf\n\tOTHER\t=\t x y \n");
    EXPECT_EQ(c.getValue("SERVER", "WS_CONFIG"), "/a/b.conf");
    EXPECT_EQ(c.getValue("[SERVER]", "WS_CONFIG"), "/a/b.conf");
    EXPECT_EQ(c.getValue("SERVER", "OTHER"), "x y ");
}

TEST_F(FileConfigurationTest, KeepsValueBytesVerbatim) {
    FileConfiguration& c = load("[S]\nTRAIL=abc  \nMARKS=a;b#c\nCRLF=v1\r\nEMPTY=\nBLANKS=   \r\n");
    EXPECT_EQ(c.getValue("S", "TRAIL"), "abc  ");
    EXPECT_EQ(c.getValue("S", "MARKS"), "a;b#c");
    EXPECT_EQ(c.getValue("S", "CRLF"), "v1");
    EXPECT_EQ(c.getValue("S", "EMPTY"), "");
    EXPECT_EQ(c.getValue("S", "BLANKS"), "");
}

TEST_F(FileConfigurationTest, DefaultsAnswerOnlyWhereTheFileIsSilent) {
    FileConfiguration& c = load("[SERVER]\nA=file\n");
    c.setDefaultValue("SERVER", "A", "default-a");
    c.setDefaultValue("SERVER", "B", "default-b");
    c.setDefaultValue("SERVER", "B", "ignored");
    c.setDefaultValue("C", "default-c");
    EXPECT_EQ(c.getValue("SERVER", "A"), "file");
    EXPECT_EQ(c.getValue("SERVER", "B"), "default-b");
    EXPECT_EQ(c.getValue("C"), "default-c");
    EXPECT_EQ(c.getValue("", "C"), "default-c");
}

TEST_F(FileConfigurationTest, UnreadableFileThrowsWithTheSystemReason) {
    const std::pair<std::string, const char*> cases[] = {
        {dir.file("absent.ini"), "No such file or directory"},
        {dir.mkdir("sub"), "Is a directory"}};
    for (const auto& c : cases) {
        FileConfiguration::configFileName = c.first;
        try {
            FileConfiguration opened;
            ADD_FAILURE() << "no exception for " << c.first;
        } catch (const YException& e) {
            EXPECT_EQ(std::string(e.GetMsg()),
                      "Cannot open configuration file " + c.first + ": " + c.second);
        }
    }
}

TEST_F(FileConfigurationTest, FailedReloadDropsFileValuesButKeepsDefaults) {
    FileConfiguration& c = load("[S]\nK=1\n");
    c.setDefaultValue("S", "D", "d");
    FileConfiguration::configFileName = dir.file("gone.ini");
    EXPECT_FALSE(c.initialize());
    EXPECT_EQ(missedMessage("S", "K"), "[S]K is missed in configuration file.");
    EXPECT_EQ(c.getValue("S", "D"), "d");
}

TEST_F(FileConfigurationTest, ExpiryControlsReload) {
    FileConfiguration& c = load("[S]\nK=old\n");
    dir.write("zeg.ini", "[S]\nK=new\n");

    EXPECT_EQ(c.setExpiry(-5), 0);
    c.setLastLoadTime(0);
    c.checkExpiry();
    EXPECT_EQ(c.getValue("S", "K"), "old");

    EXPECT_EQ(c.setExpiry(3600), 3600);
    c.setLastLoadTime(time(nullptr));
    c.checkExpiry();
    EXPECT_EQ(c.getValue("S", "K"), "old");

    c.setLastLoadTime(time(nullptr) - 3600);
    c.checkExpiry();
    EXPECT_EQ(c.getValue("S", "K"), "new");
    EXPECT_GE(c.getLastLoadTime(), time(nullptr) - 5);
}

TEST_F(FileConfigurationTest, OverlongLineIsParsedInPieces) {
    const std::string value(2045, 'x');  // "K=" + value fills one 2047-byte piece
    FileConfiguration& c = load("[S]\nK=" + value + "Z=9\n");
    EXPECT_EQ(c.getValue("S", "K"), value);
    EXPECT_EQ(c.getValue("S", "Z"), "9");
}

struct PairCase {
    const char* line;
    bool isPair;
    const char* key;
    const char* value;
    const char* section;  // section after the line, starting from "[OLD]"
};

class GetPairsTest : public ::testing::TestWithParam<PairCase> {};

TEST_P(GetPairsTest, ParsesOneLine) {
    const PairCase& p = GetParam();
    std::string section = "[OLD]", key = "-", value = "-";
    EXPECT_EQ(FileConfiguration::getPairs(p.line, section, key, value), p.isPair);
    EXPECT_EQ(section, p.section);
    if (p.isPair) {
        EXPECT_EQ(key, p.key);
        EXPECT_EQ(value, p.value);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Syntax, GetPairsTest,
    ::testing::Values(PairCase{"", false, "", "", "[OLD]"},
                      PairCase{"   \n", false, "", "", "[OLD]"},
                      PairCase{"# K=V\n", false, "", "", "[OLD]"},
                      PairCase{"  ; K=V\n", false, "", "", "[OLD]"},
                      PairCase{"no equals sign\n", false, "", "", "[OLD]"},
                      PairCase{" [NEW] x=y\n", false, "", "", "[NEW]"},
                      PairCase{"[NEW\n", false, "", "", "[OLD]"},
                      PairCase{"K = V\n", true, "K", "V", "[OLD]"},
                      PairCase{"K\t=\tV # not a comment\n", true, "K", "V # not a comment", "[OLD]"},
                      PairCase{"K=a=b\n", true, "K", "a=b", "[OLD]"},
                      PairCase{"=V\n", false, "", "", "[OLD]"},
                      PairCase{"=K=V\n", true, "=K", "V", "[OLD]"},
                      PairCase{"K=V\rjunk\n", true, "K", "V", "[OLD]"},
                      PairCase{"\xD6\xD0=\xCE\xC4\n", true, "\xD6\xD0", "\xCE\xC4", "[OLD]"}));

}  // namespace
