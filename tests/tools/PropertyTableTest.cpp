#include "tools/PropertyTable.h"

#include <gtest/gtest.h>

#include "support/TempDir.h"

using zeg_tools::PropertyTable;

namespace {

TEST(PropertyTable, ExtendsAnExistingTableAfterItsHighestId) {
    zeg_test::TempDir dir;
    const std::string path = dir.write("props", "1\tn\n5\tv\r\n\n");
    PropertyTable t;
    std::string error;
    ASSERT_TRUE(t.load(path, error)) << error;
    EXPECT_FALSE(t.changed());
    EXPECT_EQ(t.idOf("v"), 5);
    EXPECT_FALSE(t.changed());
    EXPECT_EQ(t.idOf("nr"), 6);
    EXPECT_EQ(t.find("ns"), -1);
    EXPECT_TRUE(t.changed());
    ASSERT_TRUE(t.write(path, error)) << error;
    EXPECT_EQ(zeg_test::TempDir::read(path), "1\tn\n5\tv\n6\tnr\n");
}

TEST(PropertyTable, AMissingFileIsAnEmptyTableToWrite) {
    zeg_test::TempDir dir;
    PropertyTable t;
    std::string error;
    ASSERT_TRUE(t.load(dir.file("none"), error));
    EXPECT_TRUE(t.changed());
    EXPECT_EQ(t.idOf("n"), 1);
    EXPECT_EQ(t.text(), "1\tn\n");
    EXPECT_FALSE(t.write(dir.file("no/dir/props"), error));
    EXPECT_NE(error.find("no/dir/props"), std::string::npos);
}

TEST(PropertyTable, MalformedTablesAreRefusedWithTheirLine) {
    zeg_test::TempDir dir;
    const std::pair<std::string, std::string> cases[] = {
        {"1\tn\nx\n", ":2: expected ID<TAB>NAME"},
        {"0\tn\n", ":1: bad property id '0'"},
        {"40000\tn\n", ":1: bad property id '40000'"},
        {"1\tn\n1\tv\n", ":2: property id 1 appears twice"},
        {"1\tn\n2\tn\n", ":2: property 'n' appears twice"},
        {"1\t\n", ":1: bad property name ''"},
    };
    for (const auto& c : cases) {
        const std::string path = dir.write("bad", c.first);
        PropertyTable t;
        std::string error;
        EXPECT_FALSE(t.load(path, error)) << c.first;
        EXPECT_EQ(error, path + c.second);
    }
    PropertyTable t;
    std::string error;
    EXPECT_FALSE(t.load(dir.path(), error));
}

TEST(PropertyTable, HoldsAtMostTheIdsADictionaryCanStore) {
    zeg_test::TempDir dir;
    PropertyTable t;
    std::string error;
    ASSERT_TRUE(t.load(dir.write("full", "32767\tlast\n"), error));
    EXPECT_EQ(t.idOf("more"), -1);
    EXPECT_EQ(t.idOf("last"), 32767);
}

}  // namespace
