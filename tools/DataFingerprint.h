#ifndef ZEG_TOOLS_DATAFINGERPRINT_H
#define ZEG_TOOLS_DATAFINGERPRINT_H

#include <cstdint>
#include <string>
#include <vector>

namespace zeg_tools {

// The library's version, "MAJOR.MINOR.PATCH".
std::string libraryVersion();

// A 64-bit FNV-1a hash over the bytes of a sequence of files. Keys depend
// on the data as much as on the code, so --version prints it: two
// installations with the same version and fingerprint give the same keys.
// Not thread-safe.
class DataFingerprint {
public:
    // Hashes the file's bytes after those added before; false, with
    // "cannot read PATH: REASON" in `error`, when it cannot be read.
    bool addFile(const std::string& path, std::string& error);

    // Hashes `text` after what was added before.
    void addText(const std::string& text);

    // Sixteen lower-case hexadecimal digits.
    std::string hex() const;
    std::size_t files() const { return m_files; }

private:
    uint64_t m_hash = 14695981039346656037ull;
    std::size_t m_files = 0;
};

// What a segmenter configuration makes keys depend on: `settings` gets
// "KEY=value" lines for every option the segmenter reads (so included
// files count), `files` every data file named by its file keys, in a fixed
// key order (user dictionaries split at blanks and ';'). False, with
// `error` set, when the configuration cannot be read.
bool segmenterData(const std::string& configPath, std::string& settings,
                   std::vector<std::string>& files, std::string& error);

// "TOOL VERSION, data FINGERPRINT (N files)" over `settings` and the files,
// or false with `error` set when a file cannot be read.
bool versionLine(const std::string& tool, const std::string& settings,
                 const std::vector<std::string>& files, std::string& line, std::string& error);

}  // namespace zeg_tools

#endif
