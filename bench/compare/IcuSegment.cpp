// ICU's word BreakIterator (root rules, dictionary-based for Han) over every
// line of INPUT, read in place as UTF-8 so that no conversion is timed.
// usage: icu_segment INPUT OUTPUT
#include "CompareDriver.h"

#include <memory>
#include <unicode/brkiter.h>
#include <unicode/utext.h>

int main(int argc, char** argv) {
  std::vector<std::string> lines;
  if (int rc = compare::readInput(argc, argv, 3, "icu_segment INPUT OUTPUT", lines)) return rc;

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

  return compare::finish(argc, argv, text, load, run, cpu, lines);
}
