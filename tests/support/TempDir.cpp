#include "support/TempDir.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace zeg_test {

TempDir::TempDir() {
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/zeg-test-XXXXXX";
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    if (mkdtemp(buf.data()) == nullptr) throw std::runtime_error("mkdtemp failed: " + pattern);
    m_path = buf.data();
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string TempDir::file(const std::string& name) const { return m_path + "/" + name; }

std::string TempDir::write(const std::string& name, const std::string& bytes) const {
    const std::string full = file(name);
    std::ofstream out(full, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) throw std::runtime_error("cannot write " + full);
    return full;
}

std::string TempDir::mkdir(const std::string& name) const {
    const std::string full = file(name);
    if (::mkdir(full.c_str(), 0700) != 0) throw std::runtime_error("cannot mkdir " + full);
    return full;
}

std::vector<std::string> TempDir::list() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

ws::File TempDir::stream(const std::string& bytes) {
    ws::File f(std::tmpfile());
    if (!f || std::fwrite(bytes.data(), 1, bytes.size(), f.get()) != bytes.size())
        throw std::runtime_error("cannot write a temporary stream");
    std::rewind(f.get());
    return f;
}

std::string TempDir::contents(std::FILE* f) {
    std::string bytes(static_cast<size_t>(std::ftell(f)), '\0');
    std::rewind(f);
    if (!bytes.empty() && std::fread(&bytes[0], 1, bytes.size(), f) != bytes.size()) bytes.clear();
    return bytes;
}

std::string TempDir::read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

}  // namespace zeg_test
