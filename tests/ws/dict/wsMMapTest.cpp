#include "ws/dict/wsMMap.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstdio>
#include <cstring>
#include <thread>
#include <vector>

#include "support/TempDir.h"
#include "ws/dict/wsDATDict.h"
#include "wsDictTestUtil.h"

using ws::MMap;

namespace {

// True when [addr, addr + len) is still mapped.
bool isMapped(void* addr, size_t len) {
    std::vector<unsigned char> pages((len + 4095) / 4096);
    return mincore(addr, len, pages.data()) == 0;
}

TEST(MMap, OneFileIsMappedOnceAndReleasedWithItsLastUser) {
    zeg_test::TempDir dir;
    const std::string path = dir.write("a.bin", "some bytes");
    void* addr = nullptr;
    {
        MMap first;
        addr = first.mapFile(path.c_str());
        ASSERT_NE(addr, MAP_FAILED);
        EXPECT_EQ(std::memcmp(addr, "some bytes", 10), 0);
        EXPECT_EQ(first.length(), 10u);
        {
            MMap second;
            EXPECT_EQ(second.mapFile(path.c_str()), addr);
            EXPECT_EQ(MMap::shareCount(path.c_str()), 2);
        }
        EXPECT_EQ(MMap::shareCount(path.c_str()), 1);
        EXPECT_TRUE(isMapped(addr, 10));
    }
    EXPECT_EQ(MMap::shareCount(path.c_str()), 0);
    EXPECT_FALSE(isMapped(addr, 10));
}

TEST(MMap, FailuresReturnMapFailed) {
    zeg_test::TempDir dir;
    MMap m;
    EXPECT_EQ(m.mapFile(nullptr), MAP_FAILED);
    EXPECT_EQ(m.mapFile(dir.file("missing").c_str()), MAP_FAILED);
    EXPECT_EQ(m.mapFile(dir.write("empty", "").c_str()), MAP_FAILED);
    EXPECT_EQ(m.mapFile(dir.path().c_str()), MAP_FAILED);
    EXPECT_EQ(m.length(), 0u);
}

TEST(MMap, AReplacedFileIsMappedAnew) {
    zeg_test::TempDir dir;
    const std::string path = dir.write("d", "old!");
    MMap old;
    void* oldAddr = old.mapFile(path.c_str());
    ASSERT_NE(oldAddr, MAP_FAILED);
    const std::string fresh = dir.write("d.new", "new bytes");
    ASSERT_EQ(std::rename(fresh.c_str(), path.c_str()), 0);
    MMap now;
    void* addr = now.mapFile(path.c_str());
    ASSERT_NE(addr, MAP_FAILED);
    EXPECT_NE(addr, oldAddr);
    EXPECT_EQ(std::memcmp(addr, "new bytes", 9), 0);
    EXPECT_EQ(std::memcmp(oldAddr, "old!", 4), 0);
}

TEST(MMap, ThreadsMappingOneFileShareOneMapping) {
    zeg_test::TempDir dir;
    const std::string path = dir.write("t", std::string(10000, 'x'));
    const int kThreads = 8;
    std::vector<void*> seen(kThreads);
    {
        std::vector<std::unique_ptr<MMap>> maps;
        for (int i = 0; i < kThreads; ++i) maps.emplace_back(new MMap());
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i)
            threads.emplace_back([&, i] { seen[i] = maps[i]->mapFile(path.c_str()); });
        for (std::thread& t : threads) t.join();
        EXPECT_EQ(MMap::shareCount(path.c_str()), kThreads);
        for (void* s : seen) EXPECT_EQ(s, seen[0]);
    }
    EXPECT_EQ(MMap::shareCount(path.c_str()), 0);
}

}  // namespace
