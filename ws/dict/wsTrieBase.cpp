#include "ws/dict/wsTrieBase.h"

#include <memory>

namespace ws {

namespace {

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace

TrieBase::~TrieBase() = default;

bool TrieBase::load(const char* path) {
    UniqueFile f(std::fopen(path, "rb"));
    if (!f) {
        std::fprintf(stderr, "Can not open and read from file: %s\n", path);
        std::perror("LoadFromFile: ");
        return false;
    }
    return load(f.get());
}

int64_t TrieBase::remainingBytes(std::FILE* fp) {
    const long here = std::ftell(fp);
    if (here < 0 || std::fseek(fp, 0, SEEK_END) != 0) return -1;
    const long end = std::ftell(fp);
    std::fseek(fp, here, SEEK_SET);
    return end < here ? -1 : end - here;
}

bool TrieBase::write(const char* path) {
    UniqueFile f(std::fopen(path, "wb"));
    if (!f) {
        std::fprintf(stderr, "Can not open and write to file: %s\n", path);
        std::perror("WriteToFile: ");
        return false;
    }
    return write(f.get());
}

}  // namespace ws
