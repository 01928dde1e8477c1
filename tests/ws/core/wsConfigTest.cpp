#include "ws/core/wsConfig.h"

#include <gtest/gtest.h>

#include "support/TempDir.h"

using ws::Config;

namespace {

class ConfigTest : public testing::Test {
protected:
    // Writes `text` as `name` and loads it into `config`.
    bool load(const std::string& name, const std::string& text) {
        return config.init(dir.write(name, text).c_str());
    }

    zeg_test::TempDir dir;
    Config config;
};

TEST_F(ConfigTest, TrimsKeysAndValuesOfBlanks) {
    ASSERT_TRUE(load("a.conf", "A = 1\nB=1\n \tC \t=\t 1 \t\nD\a=\a1\nE = two words \n"));
    EXPECT_EQ(config.getString("A", "x"), "1");
    EXPECT_EQ(config.getString("B", "x"), "1");
    EXPECT_EQ(config.getString("C", "x"), "1");
    EXPECT_EQ(config.getString("D", "x"), "1");
    EXPECT_EQ(config.getString("E", "x"), "two words");
}

TEST_F(ConfigTest, SkipsCommentsAndMalformedLines) {
    ASSERT_TRUE(load("a.conf",
                     "#A=1\n//B=1\n #C=1\nD\n=5\n \t = 6\n/E=1\n\n   \n"
                     "F = 1 = 2\n"));
    EXPECT_EQ(config.getString("#A", "absent"), "absent");
    EXPECT_EQ(config.getString("A", "absent"), "absent");
    EXPECT_EQ(config.getString("//B", "absent"), "absent");
    EXPECT_EQ(config.getString("#C", "absent"), "1");  // blank before '#': not a comment
    EXPECT_EQ(config.getString("D", "absent"), "absent");
    EXPECT_EQ(config.getString("", "absent"), "absent");
    EXPECT_EQ(config.getString("/E", "absent"), "1");
    EXPECT_EQ(config.getString("F", "absent"), "1 = 2");
}

TEST_F(ConfigTest, TypedGettersParseAndFallBackOnlyWhenAbsent) {
    ASSERT_TRUE(load("a.conf",
                     "EMPTY =\nT = true\nU = TRUE\nONE = 1\nL = 12abc\nBAD = abc\n"
                     "NEG = -3\nD = 2.5\nLAST = 1\nLAST = 2\n"));
    EXPECT_EQ(config.getString("EMPTY", "x"), "");
    EXPECT_EQ(config.getLong("EMPTY", 5), 0);
    EXPECT_EQ(config.getLong("ABSENT", 5), 5);
    EXPECT_EQ(config.getLong("L", 5), 12);
    EXPECT_EQ(config.getLong("BAD", 5), 0);
    EXPECT_EQ(config.getLong("NEG", 5), -3);
    EXPECT_TRUE(config.getBool("T", false));
    EXPECT_FALSE(config.getBool("U", true));
    EXPECT_FALSE(config.getBool("ONE", true));
    EXPECT_TRUE(config.getBool("ABSENT", true));
    EXPECT_DOUBLE_EQ(config.getDouble("D", 9.0), 2.5);
    EXPECT_DOUBLE_EQ(config.getDouble("BAD", 9.0), 0.0);
    EXPECT_DOUBLE_EQ(config.getDouble("ABSENT", 2.25), 2.25);
    EXPECT_DOUBLE_EQ(config.getDouble("ABSENT", 1e-9), 0.0);  // the default goes through "%f"
    EXPECT_EQ(config.getLong("LAST", 0), 2);
}

TEST_F(ConfigTest, SettersStoreTextAndDollarKeysSetVariables) {
    config.setLong("N", -42);
    config.setDouble("D", 1.5);
    config.setBool("B", true);
    config.setString("S", "$X/y");
    config.setString("$X", "/x");
    EXPECT_EQ(config.getString("N", ""), "-42");
    EXPECT_EQ(config.getString("D", ""), "1.500000");
    EXPECT_EQ(config.getString("B", ""), "true");
    EXPECT_EQ(config.getString("S", ""), "/x/y");
    EXPECT_EQ(config.getString("$X", "not an item"), "not an item");
}

TEST_F(ConfigTest, VariablesAreSubstitutedWhenValuesAreRead) {
    ASSERT_TRUE(load("a.conf", "DICT = $ROOT/base\n$ROOT = /data\nDEF = $ROOT\n"));
    EXPECT_EQ(config.getString("DICT", ""), "/data/base");
    config.setString("$ROOT", "/x");
    EXPECT_EQ(config.getString("DICT", ""), "/x/base");
    EXPECT_EQ(config.getString("ABSENT", "$ROOT/d"), "$ROOT/d");  // defaults stay as given
}

TEST_F(ConfigTest, IncludesLoadInPlace) {
    const std::string sub = dir.write("sub.conf", "B = sub\nC = sub\n");
    ASSERT_TRUE(load("main.conf",
                     "A = main\nB = main\n  \t#include \"" + sub + "\" trailing\nC = main\n"));
    EXPECT_EQ(config.getString("A", ""), "main");
    EXPECT_EQ(config.getString("B", ""), "sub");
    EXPECT_EQ(config.getString("C", ""), "main");
}

TEST_F(ConfigTest, FailedIncludeStopsItsFileButInitSucceeds) {
    const std::string missing = dir.file("missing.conf");
    testing::internal::CaptureStderr();
    ASSERT_TRUE(load("main.conf", "A = 1\n#include \"" + missing + "\"\nB = 2\n"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "can't open file " + missing + "\n");
    EXPECT_EQ(config.getString("A", ""), "1");
    EXPECT_EQ(config.getString("B", "absent"), "absent");
}

TEST_F(ConfigTest, SelfIncludeStopsAtTheDepthLimit) {
    const std::string path = dir.file("loop.conf");
    dir.write("loop.conf", "A = 1\n#include \"" + path + "\"\nB = 2\n");
    testing::internal::CaptureStderr();
    ASSERT_TRUE(config.init(path.c_str()));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "can't include file " + path + ": more than 16 nested includes\n");
    EXPECT_EQ(config.getString("A", ""), "1");
    EXPECT_EQ(config.getString("B", ""), "2");
}

// Three self-includes a line would be 3^16 loads under the depth limit alone.
TEST_F(ConfigTest, RepeatedSelfIncludeStopsAtTheIncludeLimit) {
    const std::string path = dir.file("fan.conf");
    const std::string include = "#include \"" + path + "\"\n";
    dir.write("fan.conf", include + include + include + "A = 1\n");
    testing::internal::CaptureStderr();
    ASSERT_TRUE(config.init(path.c_str()));
    EXPECT_NE(testing::internal::GetCapturedStderr().find(
                  "can't include file " + path + ": more than 256 includes\n"),
              std::string::npos);
    EXPECT_EQ(config.getString("A", ""), "1");
}

TEST_F(ConfigTest, UnopenableFileFailsInitAndKeepsSettings) {
    ASSERT_TRUE(load("a.conf", "A = 1\n"));
    const std::string missing = dir.file("missing.conf");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(config.init(missing.c_str()));
    EXPECT_FALSE(config.init(nullptr));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "can't open file " + missing + "\ncan't open file (null)\n");
    EXPECT_EQ(config.getString("A", ""), "1");
}

}  // namespace
