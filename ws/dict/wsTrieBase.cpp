#include "ws/dict/wsTrieBase.h"

#include "ws/core/wsFile.h"

namespace ws {

TrieBase::~TrieBase() = default;

bool TrieBase::load(const char* path) {
    File f;
    if (!f.open(path, "rb")) {
        std::fprintf(stderr, "Can not open and read from file: %s\n", path != nullptr ? path : "");
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
    File f;
    if (!f.open(path, "wb")) {
        std::fprintf(stderr, "Can not open and write to file: %s\n", path != nullptr ? path : "");
        std::perror("WriteToFile: ");
        return false;
    }
    return write(f.get());
}

}  // namespace ws
