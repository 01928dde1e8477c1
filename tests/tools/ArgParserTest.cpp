#include <gtest/gtest.h>

#include "tools/ArgParser.h"

namespace {

using Args = std::vector<std::string>;

zeg_tools::ArgParser parser() {
    zeg_tools::ArgParser p("zeg-x", "zeg-x sub");
    p.value("input").flag("strict");
    return p;
}

TEST(ArgParser, BothValueSpellingsAndFlags) {
    for (const Args& args : {Args{"--input", "a=b", "--strict"}, Args{"--strict", "--input=a=b"},
                             Args{"--input=x", "--input", "a=b", "--strict"}}) {
        auto p = parser();
        ASSERT_TRUE(p.parse(args)) << p.error();
        EXPECT_EQ(p.get("input"), "a=b");
        EXPECT_TRUE(p.has("strict"));
        EXPECT_FALSE(p.has("help"));
    }
    auto p = parser();
    ASSERT_TRUE(p.parse({"-h", "--version", "--input="}));
    EXPECT_TRUE(p.has("help") && p.has("version") && p.has("input"));
    EXPECT_EQ(p.get("input", "d"), "");
    EXPECT_EQ(p.get("output", "d"), "d");
    std::string value;
    EXPECT_FALSE(p.require("input", value));
    EXPECT_EQ(p.error(), "zeg-x: missing --input (see zeg-x sub --help)");
}

TEST(ArgParser, BadArgumentsGiveOneLineWithTheHint) {
    const std::pair<Args, std::string> cases[] = {
        {{"--input"}, "option --input needs a value"},
        {{"--inptu", "a"}, "unknown option '--inptu'"},
        {{"--strict=yes"}, "unknown option '--strict=yes'"},
        {{"words.txt"}, "unexpected argument 'words.txt'"},
        {{"--"}, "unexpected argument '--'"},
        {{"-s"}, "unexpected argument '-s'"},
    };
    for (const auto& c : cases) {
        auto p = parser();
        EXPECT_FALSE(p.parse(c.first));
        EXPECT_EQ(p.error(), "zeg-x: " + c.second + " (see zeg-x sub --help)");
    }
}

}  // namespace
