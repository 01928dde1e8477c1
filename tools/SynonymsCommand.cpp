// zeg-dict synonyms: our UTF-8 synonym list to the normaliser's GBK file,
// and the word list of the user dictionary that keeps its words whole.
#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>

#include "tools/GBKListCompiler.h"
#include "tools/WordListReader.h"
#include "tools/ZegDict.h"

namespace zeg_tools {

namespace {

const char kHelp[] =
    "usage: zeg-dict synonyms --input LIST --output FILE [--words WORDS [--known LIST]]\n"
    "\n"
    "Writes the normaliser's synonym file (SYNONYMS_FILE, GBK, fields separated\n"
    "by the byte 0x01) from a UTF-8 list of lines WORD<TAB>REPLACEMENT (blanks\n"
    "around the tab are dropped; lines starting with # are comments). A line\n"
    "without exactly two fields, a character without a GBK form, or a word\n"
    "repeated (ignoring ASCII case, as the normaliser looks words up) is\n"
    "reported as FILE:LINE: reason and nothing is written.\n"
    "\n"
    "  --input LIST   the UTF-8 list\n"
    "  --output FILE  the GBK file to write\n"
    "  --words WORDS  also write every word and replacement (those without\n"
    "                 blanks) as a word list for zeg-dict core: a synonym only\n"
    "                 fires on a word the segmenter keeps whole, so the\n"
    "                 normaliser's user dictionary is built from it\n"
    "  --known LIST   a word list (zeg-dict core's format) whose frequencies\n"
    "                 are kept where they are above the default of 1000\n";

// Frequency of a synonym word in the user dictionary: enough to keep two
// common characters together, not so much that it wins over a longer word.
constexpr uint64_t kWordFrequency = 1000;

std::string upperAscii(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

bool splitPair(const std::string& line, std::string& word, std::string& replacement,
               std::string& reason) {
    const size_t tab = line.find('\t');
    const auto trim = [](const std::string& s) {
        const size_t b = s.find_first_not_of(" \t");
        return b == std::string::npos ? std::string() : s.substr(b, s.find_last_not_of(" \t") - b + 1);
    };
    word = trim(line.substr(0, tab));
    replacement = tab == std::string::npos ? std::string() : trim(line.substr(tab + 1));
    if (word.empty() || replacement.empty() || replacement.find('\t') != std::string::npos ||
        line.find('\x01') != std::string::npos) {
        reason = "not a word, a tab and a replacement";
        return false;
    }
    return true;
}

// Raises the frequencies in `words` to those of the known list.
bool raiseToKnown(const std::string& path, std::map<std::string, uint64_t>& words,
                  std::ostream& err) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        err << "zeg-dict: cannot read " << path << '\n';
        return false;
    }
    WordListReader reader(in);
    WordEntry entry;
    std::string reason;
    for (WordListReader::Result r; (r = reader.next(entry, reason)) != WordListReader::kEnd;) {
        const auto it = words.find(entry.word);
        if (r == WordListReader::kEntry && it != words.end())
            it->second = std::max(it->second, entry.freq);
    }
    return !reader.failed();
}

bool writeWords(const std::string& path, const std::map<std::string, uint64_t>& words,
                std::ostream& err) {
    std::string contents;
    for (const auto& w : words) contents += w.first + " " + std::to_string(w.second) + "\n";
    GBKListCompiler writer(err);
    return writer.write(path, contents);
}

int run(ArgParser& args, std::ostream&, std::ostream& err) {
    std::string input, output;
    if (!args.require("input", input) || !args.require("output", output)) {
        err << args.error() << '\n';
        return 2;
    }
    GBKListCompiler compiler(err);
    std::map<std::string, unsigned> keys;  // upper-cased GBK word -> its line
    std::map<std::string, uint64_t> words;
    std::string contents;
    const bool read = compiler.read(input, [&](const std::string& line, unsigned number, std::string& reason) {
        std::string word, replacement, gbkWord, gbkReplacement;
        if (!splitPair(line, word, replacement, reason) ||
            !compiler.toGBK(word, gbkWord, reason) ||
            !compiler.toGBK(replacement, gbkReplacement, reason))
            return false;
        const auto first = keys.emplace(upperAscii(gbkWord), number);
        if (!first.second) {
            reason = "'" + word + "' repeats the word of line " + std::to_string(first.first->second);
            return false;
        }
        contents += gbkWord + '\x01' + gbkReplacement + '\n';
        for (const std::string* w : {&word, &replacement}) {
            if (w->find_first_of(" \t") == std::string::npos) words.emplace(*w, kWordFrequency);
        }
        return true;
    });
    if (!read || !compiler.write(output, contents)) return 1;
    if (args.has("words") && ((args.has("known") && !raiseToKnown(args.get("known"), words, err)) ||
                              !writeWords(args.get("words"), words, err)))
        return 1;
    err << "zeg-dict synonyms: " << input << ": " << keys.size() << " synonyms\n";
    return 0;
}

}  // namespace

ZegDictCommand synonymsCommand() {
    return {"compile a UTF-8 synonym list into the normaliser's GBK file", kHelp,
            {"input", "output", "words", "known"}, {}, &run};
}

}  // namespace zeg_tools
