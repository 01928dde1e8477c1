// cppjieba's MPSegment (dictionary only, no HMM) over every line of INPUT.
// usage: jieba_segment DICT INPUT OUTPUT
#include "CompareDriver.h"

#include "cppjieba/MPSegment.hpp"

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: jieba_segment DICT INPUT OUTPUT\n");
    return 2;
  }
  std::vector<std::string> lines;
  if (!compare::readLines(argv[2], lines)) return 1;

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

  if (!compare::writeText(argv[3], text)) return 1;
  compare::printFigures(load, run, cpu, lines);
  return 0;
}
