// ICU's word BreakIterator (root rules, dictionary-based for Han) over every
// line of INPUT, read in place as UTF-8 so that no conversion is timed.
// usage: icu_segment INPUT OUTPUT
#include "CompareDriver.h"

#include <memory>
#include <unicode/brkiter.h>
#include <unicode/utext.h>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: icu_segment INPUT OUTPUT\n");
    return 2;
  }
  std::vector<std::string> lines;
  if (!compare::readLines(argv[1], lines)) return 1;

  auto start = std::chrono::steady_clock::now();
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::BreakIterator> words(
      icu::BreakIterator::createWordInstance(icu::Locale("zh"), status));
  if (U_FAILURE(status)) {
    std::fprintf(stderr, "icu: %s\n", u_errorName(status));
    return 1;
  }
  double load = compare::secondsSince(start);

  std::clock_t cpuStart = std::clock();
  start = std::chrono::steady_clock::now();
  std::string text;
  UText* utext = nullptr;
  for (const std::string& line : lines) {
    utext = utext_openUTF8(utext, line.data(), static_cast<int64_t>(line.size()), &status);
    words->setText(utext, status);
    if (U_FAILURE(status)) {
      std::fprintf(stderr, "icu: %s\n", u_errorName(status));
      return 1;
    }
    // Boundaries are byte offsets into the UTF-8 line.
    int32_t from = words->first();
    for (int32_t to = words->next(); to != icu::BreakIterator::DONE; from = to, to = words->next()) {
      std::string word = line.substr(from, to - from);
      if (compare::isBlank(word)) continue;
      text += word;
      text += ' ';
    }
    text += '\n';
  }
  utext_close(utext);
  double run = compare::secondsSince(start);
  double cpu = compare::cpuSecondsSince(cpuStart);

  if (!compare::writeText(argv[2], text)) return 1;
  compare::printFigures(load, run, cpu, lines);
  return 0;
}
