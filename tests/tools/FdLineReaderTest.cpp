#include "tools/FdLineReader.h"

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "support/TempDir.h"

using zeg_tools::FdLineReader;

namespace {

struct Line {
    std::string text;
    bool cut;
    bool operator==(const Line& o) const { return text == o.text && cut == o.cut; }
};

std::ostream& operator<<(std::ostream& os, const Line& line) {
    return os << '"' << line.text << '"' << (line.cut ? " (cut)" : "");
}

std::vector<Line> readAll(int fd, std::size_t cap) {
    FdLineReader reader(fd, cap);
    std::vector<Line> lines;
    Line line{"", false};
    while (reader.next(line.text, line.cut)) lines.push_back(line);
    EXPECT_FALSE(reader.failed());
    return lines;
}

std::vector<Line> readBytes(const std::string& bytes, std::size_t cap = 100) {
    zeg_test::TempDir dir;
    const int fd = ::open(dir.write("in", bytes).c_str(), O_RDONLY);
    EXPECT_GE(fd, 0);
    std::vector<Line> lines = readAll(fd, cap);
    ::close(fd);
    return lines;
}

TEST(FdLineReaderTest, EveryLineComesBackWhateverItsBytes) {
    const char bytes[] = "a\0b\n\xFF\xC3\n\n\r\nlast";
    EXPECT_EQ(readBytes(std::string(bytes, sizeof bytes - 1)),
              (std::vector<Line>{{std::string("a\0b", 3), false},
                                 {"\xFF\xC3", false},
                                 {"", false},
                                 {"", false},
                                 {"last", false}}));
    // Only the carriage return that ends a line is dropped.
    EXPECT_EQ(readBytes("a\rb\r\nc\r"), (std::vector<Line>{{"a\rb", false}, {"c", false}}));
    EXPECT_TRUE(readBytes("").empty());
}

TEST(FdLineReaderTest, LongLinesKeepTheirStartAndSayTheyWereCut) {
    EXPECT_EQ(readBytes("12345678\n123456789\n12345678\r\n1234567890\r\nx", 8),
              (std::vector<Line>{{"12345678", false},
                                 {"12345678", true},
                                 {"12345678", false},
                                 {"12345678", true},
                                 {"x", false}}));
    const std::string huge(1 << 20, 'y');
    EXPECT_EQ(readBytes(huge + "\nz", 512),
              (std::vector<Line>{{std::string(512, 'y'), true}, {"z", false}}));
}

// A reader that waited for the end of a cut line hung on /dev/zero: the
// cut line comes back while its writer still has more to give.
TEST(FdLineReaderTest, ACutLineReturnsBeforeItsEnd) {
    int fds[2];
    ASSERT_EQ(::pipe(fds), 0);
    ASSERT_EQ(::write(fds[1], "abcdefghij", 10), 10);
    FdLineReader reader(fds[0], 4);
    std::string line;
    bool cut = false;
    ASSERT_TRUE(reader.next(line, cut));
    EXPECT_EQ((Line{line, cut}), (Line{"abcd", true}));
    ASSERT_EQ(::write(fds[1], "klm\nnext\n", 9), 9);
    ::close(fds[1]);
    ASSERT_TRUE(reader.next(line, cut));
    EXPECT_EQ((Line{line, cut}), (Line{"next", false}));
    EXPECT_FALSE(reader.next(line, cut));
    ::close(fds[0]);
}

// Pieces of a long line come one after another, nothing left out, so that
// a line of any length can be streamed.
TEST(FdLineReaderTest, PiecesCarryEveryByteOfALongLine) {
    zeg_test::TempDir dir;
    const int fd = ::open(dir.write("in", "abcdefghij\nabcd\nxy\r\n\n").c_str(), O_RDONLY);
    ASSERT_GE(fd, 0);
    FdLineReader reader(fd, 4);
    std::vector<Line> pieces;
    Line piece{"", false};
    while (reader.nextPiece(piece.text, piece.cut)) pieces.push_back(piece);
    ::close(fd);
    EXPECT_EQ(pieces, (std::vector<Line>{{"abcd", true},
                                         {"efgh", true},
                                         {"ij", false},
                                         {"abcd", true},
                                         {"", false},
                                         {"xy", false},
                                         {"", false}}));
}

TEST(FdLineReaderTest, LinesAcrossReadsAndSlowWritersArriveWhole) {
    int fds[2];
    ASSERT_EQ(::pipe(fds), 0);
    std::thread writer([fd = fds[1]] {
        const char* pieces[] = {"ab", "c\nd", "", "e\r", "\n", "f"};
        for (const char* piece : pieces) {
            if (::write(fd, piece, std::char_traits<char>::length(piece)) < 0) break;
        }
        ::close(fd);
    });
    const std::vector<Line> lines = readAll(fds[0], 100);
    writer.join();
    ::close(fds[0]);
    EXPECT_EQ(lines, (std::vector<Line>{{"abc", false}, {"de", false}, {"f", false}}));
}

}  // namespace
