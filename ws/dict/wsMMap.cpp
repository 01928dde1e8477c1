#include "ws/dict/wsMMap.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <tuple>

namespace ws {

std::mutex MMap::_mutex;

bool MMap::Key::operator<(const Key& o) const {
    return std::tie(dev, ino, size, mtimeNs) < std::tie(o.dev, o.ino, o.size, o.mtimeNs);
}

namespace {

// Never destroyed: dictionaries in static storage may still release their
// mappings while the process exits.
template <typename K, typename V>
std::map<K, V>& registryOf() {
    static auto* registry = new std::map<K, V>();
    return *registry;
}

long long mtimeNs(const struct stat& st) {
    return static_cast<long long>(st.st_mtim.tv_sec) * 1000000000LL + st.st_mtim.tv_nsec;
}

}  // namespace

MMap::MMap() : m_fd(-1), m_addr(MAP_FAILED), m_len(0), m_key{}, m_registered(false) {}

MMap::~MMap() {
    std::lock_guard<std::mutex> lock(_mutex);
    release();
}

void MMap::reset() {
    if (m_addr != MAP_FAILED && m_len != 0) munmap(m_addr, m_len);
    if (m_fd != -1) close(m_fd);
    m_fd = -1;
    m_addr = MAP_FAILED;
    m_len = 0;
}

void MMap::release() {
    if (!m_registered) {
        reset();
        return;
    }
    auto& registry = registryOf<Key, Shared>();
    auto it = registry.find(m_key);
    m_registered = false;
    if (it != registry.end() && --it->second.count > 0) {
        // Others still use the mapping: forget it without undoing it.
        m_fd = -1;
        m_addr = MAP_FAILED;
        m_len = 0;
        return;
    }
    if (it != registry.end()) registry.erase(it);
    reset();
}

bool MMap::openAndMap(const char* path) {
    m_fd = open(path, O_RDONLY | O_CLOEXEC);
    if (m_fd == -1) return false;
    struct stat st;
    if (fstat(m_fd, &st) != 0 || st.st_size <= 0) {
        reset();
        return false;
    }
    m_key = Key{st.st_dev, st.st_ino, st.st_size, mtimeNs(st)};
    auto& registry = registryOf<Key, Shared>();
    auto it = registry.find(m_key);
    if (it != registry.end()) {
        close(m_fd);
        m_fd = it->second.fd;
        m_addr = it->second.addr;
        m_len = it->second.len;
        ++it->second.count;
        m_registered = true;
        return true;
    }
    const auto len = static_cast<std::size_t>(st.st_size);
    void* addr = mmap(nullptr, len, PROT_READ, MAP_SHARED, m_fd, 0);
    if (addr == MAP_FAILED) {
        reset();
        return false;
    }
    m_addr = addr;
    m_len = len;
    registry[m_key] = Shared{m_fd, m_addr, m_len, 1};
    m_registered = true;
    return true;
}

void* MMap::mapFile(const char* path) {
    std::lock_guard<std::mutex> lock(_mutex);
    release();
    if (path == nullptr || !openAndMap(path)) return MAP_FAILED;
    return m_addr;
}

int MMap::shareCount(const char* path) {
    struct stat st;
    if (path == nullptr || stat(path, &st) != 0) return 0;
    std::lock_guard<std::mutex> lock(_mutex);
    auto& registry = registryOf<Key, Shared>();
    auto it = registry.find(Key{st.st_dev, st.st_ino, st.st_size, mtimeNs(st)});
    return it == registry.end() ? 0 : it->second.count;
}

}  // namespace ws
