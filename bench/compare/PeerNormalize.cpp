// The normaliser a search engineer would assemble from packages: ICU
// NFKC_Casefold, OpenCC t2s, cppjieba MPSegment (no HMM), words sorted and
// joined by a blank.
// usage: peer_normalize DICT INPUT OUTPUT
#include "CompareDriver.h"

#include <algorithm>
#include <memory>
#include <opencc/opencc.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include "cppjieba/MPSegment.hpp"

int main(int argc, char** argv) {
  std::vector<std::string> lines;
  if (int rc = compare::readInput(argc, argv, 4, "peer_normalize DICT INPUT OUTPUT", lines)) return rc;

  auto start = std::chrono::steady_clock::now();
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* fold = icu::Normalizer2::getNFKCCasefoldInstance(status);
  if (U_FAILURE(status)) {
    std::fprintf(stderr, "icu: %s\n", u_errorName(status));
    return 1;
  }
  std::unique_ptr<opencc::SimpleConverter> t2s;
  try {
    t2s.reset(new opencc::SimpleConverter("t2s.json"));
  } catch (const std::exception& e) {
    std::fprintf(stderr, "opencc: t2s.json: %s\n", e.what());
    return 1;
  }
  cppjieba::MPSegment segmenter(argv[1]);
  double load = compare::secondsSince(start);

  std::clock_t cpuStart = std::clock();
  start = std::chrono::steady_clock::now();
  std::string text, folded;
  icu::UnicodeString wide;
  std::vector<std::string> words;
  for (const std::string& line : lines) {
    wide = fold->normalize(icu::UnicodeString::fromUTF8(line), status);
    if (U_FAILURE(status)) {
      std::fprintf(stderr, "icu: %s\n", u_errorName(status));
      return 1;
    }
    folded.clear();
    wide.toUTF8String(folded);
    segmenter.Cut(t2s->Convert(folded), words);
    words.erase(std::remove_if(words.begin(), words.end(), compare::isBlank), words.end());
    std::sort(words.begin(), words.end());
    for (size_t i = 0; i < words.size(); ++i) {
      if (i) text += ' ';
      text += words[i];
    }
    text += '\n';
  }
  double run = compare::secondsSince(start);
  double cpu = compare::cpuSecondsSince(cpuStart);

  return compare::finish(argc, argv, text, load, run, cpu, lines);
}
