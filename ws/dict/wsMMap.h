#ifndef ZEG_WS_DICT_WSMMAP_H
#define ZEG_WS_DICT_WSMMAP_H

#include <sys/types.h>

#include <cstddef>
#include <mutex>

namespace ws {

// A read-only, shared mapping of a whole file, shared by every MMap object
// of the process that maps the same file: the first mapFile of a file opens
// and maps it, later ones take the same address, and the mapping is undone
// (munmap, close) when the last object holding it lets go.
//
// Files are told apart by device and inode, and by size and modification
// time, so that a file replaced under the same inode number is mapped anew.
//
// Thread safety: the registry of mappings is guarded by one process-wide
// mutex (_mutex); mapFile and the destructor may run from any thread. One
// MMap object must not be used from two threads at once. Not copyable: it
// holds one reference to a mapping.
class MMap {
public:
    MMap();
    ~MMap();
    MMap(const MMap&) = delete;
    MMap& operator=(const MMap&) = delete;

    // Maps `path` read-only (releasing whatever this object held before).
    // Returns the address of the file's first byte, or MAP_FAILED ((void*)-1)
    // when the path is null, the file cannot be opened, read or mapped, or
    // is empty. The bytes stay valid while this object holds the mapping.
    void* mapFile(const char* path);

    // Address and length (bytes) of the mapping held; MAP_FAILED and 0 when
    // none.
    void* address() const { return m_addr; }
    std::size_t length() const { return m_len; }

    // Unmaps and closes what this object holds, without looking at the
    // registry. Only the last holder of a mapping calls it.
    void reset();

    // How many MMap objects hold the mapping of `path` (0 when none); for
    // tests and diagnostics.
    static int shareCount(const char* path);

    // Guards the process-wide registry of mappings.
    static std::mutex _mutex;

private:
    struct Key {
        dev_t dev;
        ino_t ino;
        off_t size;
        long long mtimeNs;
        bool operator<(const Key& o) const;
    };
    struct Shared {
        int fd;
        void* addr;
        std::size_t len;
        int count;
    };

    static bool keyOf(const char* path, Key& key);
    // Drops this object's reference (the caller holds _mutex).
    void release();
    // Opens and maps the file of `key` into this object; false on failure.
    bool openAndMap(const char* path);

    int m_fd;
    void* m_addr;
    std::size_t m_len;
    Key m_key;
    bool m_registered;  // holds a reference counted in the registry
};

}  // namespace ws

#endif
