// 100 MB through the segmenter's C++ interface, the same 10 MB pass after
// pass: every pass must give the first pass's output, and once the working
// buffers have grown to the longest text the resident set stays flat.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "support/DefaultData.h"
#include "ws/core/wsInterface.h"

namespace {

const std::size_t kPassBytes = 10u << 20;
const int kPasses = 10;
const int kWarmUpPasses = 2;
// A leak of a byte per call would pass 100 MB of lines of some 60 bytes
// only by growing some 1.7 MB; 4 MB is well above the noise of the heap.
const long kGrowthKb = 4 * 1024;

long residentKb() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, 6, "VmRSS:") == 0) return std::atol(line.c_str() + 6);
    }
    return -1;
}

// Lines made of the sample queries and noise; every 500th line is a long
// one (up to 40 KB) that the segmenter cuts into chunks, every 1000th one
// is refused.
std::vector<std::string> passText() {
    std::ifstream in(ZEG_DATA_DIR "/sample-queries.txt");
    std::vector<std::string> samples;
    for (std::string line; std::getline(in, line);) samples.push_back(line);
    const std::string noise[] = {" ", "，", "。", "Ａ", "12", "3.5%", "abc", "軟體", "\t",
                                 std::string(1, '\0')};
    std::mt19937 rng(20261123);
    std::vector<std::string> lines;
    for (std::size_t bytes = 0; !samples.empty() && bytes < kPassBytes;) {
        std::string line;
        const unsigned parts = lines.size() % 500 == 499 ? 2000 : 1 + rng() % 6;
        for (unsigned n = 0; n < parts; ++n) {
            line += samples[rng() % samples.size()];
            line += noise[rng() % (sizeof noise / sizeof noise[0])];
        }
        if (lines.size() % 1000 == 999) line += "\xff";  // not UTF-8: refused
        bytes += line.size();
        lines.push_back(line);
    }
    return lines;
}

// FNV-1a over every output, the two text forms in turn.
uint64_t pass(ws::WsSegmenter& seg, const std::vector<std::string>& lines) {
    uint64_t hash = 14695981039346656037ULL;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const char* out = seg.segment(lines[i].data(), static_cast<unsigned>(lines[i].size()),
                                      static_cast<int>(i % 2));
        const std::string text = out != nullptr ? out : "(null)";
        for (unsigned char c : text) hash = (hash ^ c) * 1099511628211ULL;
        hash = (hash ^ '\n') * 1099511628211ULL;
    }
    return hash;
}

TEST(SegmentSoak, ResultsAndMemoryStayTheSameTextAfterText) {
    ws::WsSegmenter seg;
    ASSERT_TRUE(seg.init(ZEG_SEGMENTER_CONFIG));
    const std::vector<std::string> lines = passText();
    ASSERT_FALSE(lines.empty());
    uint64_t first = 0;
    long settled = 0, worst = 0;
    for (int p = 0; p < kPasses; ++p) {
        const uint64_t hash = pass(seg, lines);
        if (p == 0) first = hash;
        EXPECT_EQ(hash, first) << "pass " << p;
        const long rss = residentKb();
        ASSERT_GT(rss, 0);
        if (p == kWarmUpPasses - 1) settled = rss;
        if (p >= kWarmUpPasses && rss - settled > worst) worst = rss - settled;
    }
    std::printf("soak: %d passes of %zu lines, resident %ld kB after warm-up, growth at most %ld kB\n",
                kPasses, lines.size(), settled, worst);
    EXPECT_LE(worst, kGrowthKb);
}

}  // namespace
