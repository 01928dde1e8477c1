#ifndef ZEG_TESTS_SUPPORT_TEMPDIR_H
#define ZEG_TESTS_SUPPORT_TEMPDIR_H

#include <string>
#include <vector>

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

private:
    std::string m_path;
};

}  // namespace zeg_test

#endif
