#ifndef ZEG_TOOLS_ATOMICFILE_H
#define ZEG_TOOLS_ATOMICFILE_H

#include <string>

namespace zeg_tools {

// A file that appears whole or not at all: the writer fills a temporary
// file beside the target (same folder, so that rename cannot cross file
// systems) and commit() renames it over the target. A temporary file not
// committed is removed when the object goes away, so a failed or
// interrupted run leaves the old target, if any, untouched.
// Not copyable (owns the temporary file's name). Not thread-safe.
class AtomicFile {
public:
    explicit AtomicFile(const std::string& target);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // Where to write.
    const std::string& tempPath() const { return m_temp; }
    const std::string& target() const { return m_target; }

    // Renames the temporary file to the target. False with `error` set
    // (strerror text) when that fails; the temporary file is then removed.
    bool commit(std::string& error);

private:
    std::string m_target;
    std::string m_temp;
    bool m_committed = false;
};

}  // namespace zeg_tools

#endif
