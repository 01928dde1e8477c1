#ifndef ZEG_WS_DICT_WSUNIQUEFILE_H
#define ZEG_WS_DICT_WSUNIQUEFILE_H

#include <cstdio>
#include <memory>

namespace ws {

struct FileCloser {
    void operator()(std::FILE* f) const { std::fclose(f); }
};

// An open stdio stream closed when it goes out of scope. Writers release()
// it and check fclose themselves, since a failed flush is a failed write.
// Movable, not copyable.
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace ws

#endif
