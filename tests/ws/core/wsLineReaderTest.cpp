#include "ws/core/wsLineReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

#include "support/TempDir.h"

using ws::LineReader;

namespace {

std::vector<std::string> pieces(LineReader& reader) {
    std::vector<std::string> out;
    std::string piece;
    while (reader.next(piece)) out.push_back(piece);
    EXPECT_FALSE(reader.failed());
    return out;
}

// The same through the copy-free call, or both calls in turn.
std::vector<std::string> viewedPieces(LineReader& reader, bool alternate) {
    std::vector<std::string> out;
    std::string spill, piece;
    const char* data = nullptr;
    std::size_t size = 0;
    for (bool view = true;; view = !alternate || !view) {
        if (view ? !reader.next(data, size, spill) : !reader.next(piece)) break;
        out.push_back(view ? std::string(data, size) : piece);
    }
    EXPECT_FALSE(reader.failed());
    return out;
}

TEST(LineReader, ReadsPiecesAsFgetsWouldButKeepsNulBytes) {
    zeg_test::TempDir dir;
    LineReader reader(5);
    const std::string text("ab\r\n\nabcdefghij\n\0x\nend", 22);
    ASSERT_TRUE(reader.open(dir.write("a.txt", text).c_str()));
    EXPECT_EQ(pieces(reader), (std::vector<std::string>{"ab\r\n", "\n", "abcd", "efgh", "ij\n",
                                                        std::string("\0x\n", 3), "end"}));
    LineReader lines(5);
    ASSERT_TRUE(lines.open(dir.file("a.txt").c_str()));
    std::vector<bool> cut;
    for (std::string piece; lines.next(piece);) cut.push_back(lines.cut(piece));
    EXPECT_EQ(cut, (std::vector<bool>{false, false, true, true, false, false, false}));
    std::string piece = "kept?";
    EXPECT_FALSE(reader.next(piece));
    EXPECT_EQ(piece, "");
}

// Pieces that cross the reader's read-ahead blocks come out whole.
TEST(LineReader, PiecesAcrossReadBlocksMatchTheRule) {
    zeg_test::TempDir dir;
    std::string text;
    for (int n = 0; text.size() < 100000; ++n) text += std::string(n * 37 % 700, 'a' + n % 26) + "\n";
    text += "tail";
    for (std::size_t bufferSize : {2u, 300u, 1024u, 70000u}) {
        std::vector<std::string> expected;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t feed = text.find('\n', at);
            const std::size_t end =
                std::min(feed == std::string::npos ? text.size() : feed + 1, at + bufferSize - 1);
            expected.push_back(text.substr(at, end - at));
            at = end;
        }
        LineReader reader(bufferSize);
        ASSERT_TRUE(reader.open(dir.write("long.txt", text).c_str()));
        EXPECT_EQ(pieces(reader), expected) << bufferSize;
        for (bool alternate : {false, true}) {
            ASSERT_TRUE(reader.open(dir.file("long.txt").c_str()));
            EXPECT_EQ(viewedPieces(reader, alternate), expected) << bufferSize;
        }
    }
}

TEST(LineReader, OpensRegularFilesOnly) {
    zeg_test::TempDir dir;
    LineReader reader(1024);
    EXPECT_FALSE(reader.open(dir.file("missing").c_str()));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(reader.open(dir.mkdir("folder").c_str()));
    EXPECT_EQ(errno, EISDIR);
    EXPECT_FALSE(reader.open("/dev/zero"));
    EXPECT_EQ(errno, EINVAL);
    EXPECT_FALSE(reader.open(nullptr));
    std::string piece;
    EXPECT_FALSE(reader.next(piece));

    ASSERT_TRUE(reader.open(dir.write("a.txt", "x\ny").c_str()));
    ASSERT_TRUE(reader.next(piece));
    ASSERT_TRUE(reader.open(dir.write("b.txt", "z").c_str()));
    EXPECT_EQ(pieces(reader), std::vector<std::string>{"z"});
}

}  // namespace
