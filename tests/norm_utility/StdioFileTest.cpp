#include "norm_utility/StdioFile.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "support/TempDir.h"

using norm_utility::StdioFile;

namespace {

// A device such as /dev/zero never ends: a configuration naming it hung.
TEST(StdioFile, RefusesMissingFilesDirectoriesAndDevices) {
    zeg_test::TempDir dir;
    StdioFile f;
    EXPECT_FALSE(f.open(dir.file("absent").c_str()));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(f.open(dir.path().c_str()));
    EXPECT_EQ(errno, EISDIR);
    EXPECT_FALSE(f.open("/dev/zero"));
    EXPECT_EQ(errno, EINVAL);
    EXPECT_FALSE(f.open(nullptr));
    EXPECT_FALSE(f.isOpen());
}

TEST(StdioFile, ReadsLinesInPiecesOfTheBufferSize) {
    zeg_test::TempDir dir;
    StdioFile f;
    ASSERT_TRUE(f.open(dir.write("a.txt", "abcdef\nxy").c_str()));
    char buf[5];
    ASSERT_TRUE(f.readLine(buf, sizeof buf));
    EXPECT_STREQ(buf, "abcd");
    ASSERT_TRUE(f.readLine(buf, sizeof buf));
    EXPECT_STREQ(buf, "ef\n");
    ASSERT_TRUE(f.readLine(buf, sizeof buf));
    EXPECT_STREQ(buf, "xy");
    EXPECT_FALSE(f.readLine(buf, sizeof buf));
    EXPECT_FALSE(f.failed());
}

}  // namespace
