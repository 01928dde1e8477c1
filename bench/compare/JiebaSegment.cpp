// cppjieba's MPSegment (dictionary only, no HMM) over every line of INPUT.
// usage: jieba_segment DICT INPUT OUTPUT
#include "CompareDriver.h"

#include "cppjieba/MPSegment.hpp"

int main(int argc, char** argv) {
  std::vector<std::string> lines;
  if (int rc = compare::readInput(argc, argv, 4, "jieba_segment DICT INPUT OUTPUT", lines)) return rc;

  auto start = std::chrono::steady_clock::now();
  cppjieba::MPSegment segmenter(argv[1]);
  double load = compare::secondsSince(start);

  std::clock_t cpuStart = std::clock();
  start = std::chrono::steady_clock::now();
  std::string text;
  std::vector<std::string> words;
  for (const std::string& line : lines) {
    segmenter.Cut(line, words);
    for (const std::string& word : words) {
      if (compare::isBlank(word)) continue;
      text += word;
      text += ' ';
    }
    text += '\n';
  }
  double run = compare::secondsSince(start);
  double cpu = compare::cpuSecondsSince(cpuStart);

  return compare::finish(argc, argv, text, load, run, cpu, lines);
}
