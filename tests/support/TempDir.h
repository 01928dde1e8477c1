#ifndef ZEG_TESTS_SUPPORT_TEMPDIR_H
#define ZEG_TESTS_SUPPORT_TEMPDIR_H

#include <string>
#include <vector>

#include "ws/core/wsFile.h"

namespace zeg_test {

// A fresh directory under $TMPDIR (or /tmp), removed with its contents when
// the object goes out of scope, so failing tests leave nothing behind.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return m_path; }
    // Full path of `name` inside the directory.
    std::string file(const std::string& name) const;
    // Writes `bytes` verbatim to `name`; returns its full path.
    std::string write(const std::string& name, const std::string& bytes) const;
    // Creates the sub-directory `name`; returns its full path.
    std::string mkdir(const std::string& name) const;
    // The names in the directory, sorted ("." and ".." left out).
    std::vector<std::string> list() const;

    // The bytes of the file at `path` ("" when it cannot be read).
    static std::string read(const std::string& path);

    // An anonymous temporary stream holding `bytes`, positioned at its start.
    static ws::File stream(const std::string& bytes);
    // What `write` puts into an anonymous temporary stream.
    template <class Write>
    static std::string written(Write&& write) {
        ws::File f = stream("");
        write(f.get());
        return contents(f.get());
    }
    // Everything in `f`, from its start.
    static std::string contents(std::FILE* f);

private:
    std::string m_path;
};

}  // namespace zeg_test

#endif
