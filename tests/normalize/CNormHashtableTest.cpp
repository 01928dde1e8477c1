#include "normalize/CNormHashtable.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "support/Gbk.h"

using normalize::CNormHashtable;

namespace {

TEST(CNormHashtableTest, TableFollowsThePublishedRule) {
    // Entries 0 and 1 are the values the rule is usually quoted with; 256 and
    // 1279 pin the layout of the five blocks.
    EXPECT_EQ(CNormHashtable::cryptTableEntry(0), 0x55C636E2u);
    EXPECT_EQ(CNormHashtable::cryptTableEntry(1), 0x02BE0170u);
    EXPECT_EQ(CNormHashtable::cryptTableEntry(256), 0x76F8C1B1u);
    EXPECT_EQ(CNormHashtable::cryptTableEntry(1279), 0x7303286Cu);
}

TEST(CNormHashtableTest, KnownHashes) {
    EXPECT_EQ(CNormHashtable::hashString("", 0), 0x7FED7FEDu);
    EXPECT_EQ(CNormHashtable::hashString("", 4), 0x7FED7FEDu);
    EXPECT_EQ(CNormHashtable::hashString(nullptr, 1), 0x7FED7FEDu);
    // Types 1 and 2 of "(listfile)" are widely quoted values.
    EXPECT_EQ(CNormHashtable::hashString("(listfile)", 0), 0x5F3DE859u);
    EXPECT_EQ(CNormHashtable::hashString("(listfile)", 1), 0xFD657910u);
    EXPECT_EQ(CNormHashtable::hashString("(listfile)", 2), 0x4E9B98A7u);
    EXPECT_EQ(CNormHashtable::hashString("a", 0), 0x224408EBu);
    EXPECT_EQ(CNormHashtable::hashString("b", 0), 0x12BA06B9u);
}

TEST(CNormHashtableTest, OnlyAsciiCaseIsIgnored) {
    EXPECT_EQ(CNormHashtable::hashString("Hello", 0), CNormHashtable::hashString("hELLO", 0));
    EXPECT_EQ(CNormHashtable::hashString("Hello", 1), CNormHashtable::hashString("HELLO", 1));
    // Case folds byte by byte, so two GBK characters whose trail bytes differ
    // only in ASCII case (0xB061, 0xB041) hash alike; the sort then tells them
    // apart by their bytes. Bytes above 0x7F never fold, whatever the locale.
    EXPECT_EQ(CNormHashtable::hashString("\xB0\x61", 0), CNormHashtable::hashString("\xB0\x41", 0));
    EXPECT_NE(CNormHashtable::hashString("\xE9", 0), CNormHashtable::hashString("\xC9", 0));
}

}  // namespace
