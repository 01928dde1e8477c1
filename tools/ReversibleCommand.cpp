// zeg-dict reversible: the two-character words whose characters in the
// other order make a word too (日本 本日), with a frequency at which the
// segmenter keeps each whole. Canonical ordering sorts words, so a word
// cut into its two characters would share its key with its reverse.
#include <cmath>
#include <fstream>
#include <map>

#include "tools/GBKListCompiler.h"
#include "tools/WordListReader.h"
#include "tools/ZegDict.h"

namespace zeg_tools {

namespace {

const char kHelp[] =
    "usage: zeg-dict reversible --input WORDS --output WORDS\n"
    "\n"
    "Writes, as a word list for zeg-dict core, every two-character word of\n"
    "WORDS (zeg-dict core's format) whose reverse is a word of it too, both\n"
    "seen at least 10 times, that a lattice over WORDS would cut into its two\n"
    "characters, with the frequency at which it keeps the word whole: twice\n"
    "f(first) * f(second) / total.\n"
    "The normaliser's user dictionary keeps such words apart (日本 and 本日\n"
    "would otherwise both become 日 本, and one key).\n"
    "\n"
    "  --input WORDS   the base word list\n"
    "  --output WORDS  the word list to write\n";

constexpr uint64_t kMinFrequency = 10;

// The two characters of a two-character UTF-8 word (each 2 to 4 bytes).
bool splitTwo(const std::string& word, std::string& first, std::string& second) {
    const auto length = [&](size_t at) -> size_t {
        const auto lead = static_cast<unsigned char>(word[at]);
        return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
    };
    const size_t a = word.empty() ? 0 : length(0);
    if (a == 0 || a >= word.size()) return false;
    const size_t b = length(a);
    if (b == 0 || a + b != word.size()) return false;
    first = word.substr(0, a);
    second = word.substr(a);
    return true;
}

int run(ArgParser& args, std::ostream&, std::ostream& err) {
    std::string input, output;
    if (!args.require("input", input) || !args.require("output", output)) {
        err << args.error() << '\n';
        return 2;
    }
    std::ifstream in(input, std::ios::binary);
    if (!in) {
        err << "zeg-dict: cannot read " << input << '\n';
        return 1;
    }
    std::map<std::string, uint64_t> freq;
    double total = 0;
    WordListReader reader(in);
    WordEntry entry;
    std::string reason, first, second;
    for (WordListReader::Result r; (r = reader.next(entry, reason)) != WordListReader::kEnd;) {
        if (r != WordListReader::kEntry) continue;  // zeg-dict core reports these
        total += static_cast<double>(entry.freq);
        freq.emplace(entry.word, entry.freq);
    }
    if (reader.failed() || total <= 0) {
        err << "zeg-dict: cannot read " << input << '\n';
        return 1;
    }
    std::string contents;
    unsigned words = 0;
    for (const auto& [word, f] : freq) {
        if (f < kMinFrequency || !splitTwo(word, first, second) || first == second) continue;
        const auto reverse = freq.find(second + first);
        if (reverse == freq.end() || reverse->second < kMinFrequency) continue;
        const auto alone = [&](const std::string& c) {
            const auto it = freq.find(c);
            return it == freq.end() ? 1.0 : static_cast<double>(it->second);
        };
        const double whole = std::ceil(2.0 * alone(first) * alone(second) / total);
        if (whole <= static_cast<double>(f)) continue;  // the base list keeps it whole
        contents += word + " " + std::to_string(static_cast<uint64_t>(whole)) + "\n";
        ++words;
    }
    GBKListCompiler writer(err);
    if (!writer.write(output, contents)) return 1;
    err << "zeg-dict reversible: " << input << ": " << words << " words\n";
    return 0;
}

}  // namespace

ZegDictCommand reversibleCommand() {
    return {"list the two-character words whose reverse is a word too",
            kHelp,
            {"input", "output"},
            {},
            &run};
}

}  // namespace zeg_tools
