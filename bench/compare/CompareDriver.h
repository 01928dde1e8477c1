// Shared plumbing of the comparison drivers: read the input lines, time the
// work in process, write the output and one figure line. Bench code, built by
// run.py with g++ outside CMake.
#pragma once

#include <chrono>
#include <ctime>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace compare {

// Longer lines are refused rather than read: the inputs are short lines.
constexpr size_t kMaxLineBytes = 1 << 16;

// Reads INPUT into lines (newline removed). Returns false and prints
// "INPUT:LINE: reason" on an unreadable file or an overlong line.
inline bool readLines(const char* path, std::vector<std::string>& lines) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    std::fprintf(stderr, "%s: cannot open\n", path);
    return false;
  }
  std::vector<std::string> local;
  std::string line;
  while (std::getline(in, line)) {
    if (line.size() > kMaxLineBytes) {
      std::fprintf(stderr, "%s:%zu: line longer than %zu bytes\n", path, local.size() + 1,
                   kMaxLineBytes);
      return false;
    }
    local.push_back(line);
  }
  if (in.bad()) {
    std::fprintf(stderr, "%s: read error\n", path);
    return false;
  }
  lines.swap(local);
  return true;
}

inline bool writeText(const char* path, const std::string& text) {
  std::FILE* out = std::fopen(path, "wb");
  if (!out) {
    std::fprintf(stderr, "%s: cannot create\n", path);
    return false;
  }
  bool ok = std::fwrite(text.data(), 1, text.size(), out) == text.size();
  ok = (std::fclose(out) == 0) && ok;
  if (!ok) std::fprintf(stderr, "%s: write error\n", path);
  return ok;
}

inline double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Processor seconds since START (a std::clock() reading): on a shared
// machine they vary less than wall seconds.
inline double cpuSecondsSince(std::clock_t start) {
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// The one line run.py parses: load, run and run-processor seconds, lines and
// input bytes.
inline void printFigures(double loadSeconds, double runSeconds, double cpuSeconds,
                         const std::vector<std::string>& lines) {
  size_t bytes = 0;
  for (const std::string& line : lines) bytes += line.size() + 1;
  std::printf("load_s=%.6f run_s=%.6f cpu_s=%.6f lines=%zu bytes=%zu\n", loadSeconds,
              runSeconds, cpuSeconds, lines.size(), bytes);
}

// The start of every driver: `argc` must be `wanted` (the last two
// arguments INPUT and OUTPUT); reads INPUT into `lines`. 0, or the exit
// code after a message: 2 for a wrong command line, 1 for an unreadable input.
inline int readInput(int argc, char** argv, int wanted, const char* usage,
                     std::vector<std::string>& lines) {
  if (argc != wanted) {
    std::fprintf(stderr, "usage: %s\n", usage);
    return 2;
  }
  return readLines(argv[argc - 2], lines) ? 0 : 1;
}

// The end of every driver: writes `text` to OUTPUT (the last argument) and
// prints the figures; the exit code.
inline int finish(int argc, char** argv, const std::string& text, double loadSeconds,
                  double runSeconds, double cpuSeconds, const std::vector<std::string>& lines) {
  if (!writeText(argv[argc - 1], text)) return 1;
  printFigures(loadSeconds, runSeconds, cpuSeconds, lines);
  return 0;
}

// True for a word of blanks only: peers emit the separators as words.
inline bool isBlank(const std::string& word) {
  return word.find_first_not_of(" \t\r\n\xE3\x80\x80") == std::string::npos;
}

}  // namespace compare
