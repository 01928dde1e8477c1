// zeg-dict synonyms: our UTF-8 synonym list to the normaliser's GBK file,
// and the word list of the user dictionary that keeps its words whole.
#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <vector>

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
    "  --known LIST   a word list (zeg-dict core's format): its frequencies\n"
    "                 are kept where they are above the default of 1000, and\n"
    "                 each of its words that holds a replacement, spelt with the\n"
    "                 synonym's word in its place (免费软件 -> 免费软体), becomes\n"
    "                 a synonym of it and a word of WORDS, unless LIST has it\n";

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
        return b == std::string::npos ? std::string()
                                      : s.substr(b, s.find_last_not_of(" \t") - b + 1);
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

struct Synonym {
    std::string word, replacement;  // UTF-8
};

bool readKnown(const std::string& path, std::map<std::string, uint64_t>& known, std::ostream& err) {
    std::ifstream in(path, std::ios::binary);
    WordListReader reader(in);
    WordEntry entry;
    std::string reason;
    for (WordListReader::Result r;
         in && (r = reader.next(entry, reason)) != WordListReader::kEnd;) {
        if (r == WordListReader::kEntry) known.emplace(entry.word, entry.freq);
    }
    if (!in.is_open() || reader.failed()) {
        err << "zeg-dict: cannot read " << path << '\n';
        return false;
    }
    return true;
}

// A known word that holds a replacement, spelt with the synonym's word in
// its place, is a synonym of it: synonyms replace whole words, and without
// this 免费软体 (cut 免费 软体, then 免费 软件) would never meet the word
// 免费软件. Only Chinese words are spelt so, and never over a known word.
void deriveSynonyms(const std::vector<Synonym>& list, const std::map<std::string, uint64_t>& known,
                    GBKListCompiler& compiler, std::map<std::string, unsigned>& keys,
                    std::map<std::string, uint64_t>& words, std::string& contents) {
    std::string derived, gbkDerived, gbkWord, reason;
    for (const auto& [word, freq] : known) {
        for (const Synonym& s : list) {
            const size_t at = word.find(s.replacement);
            if (at == std::string::npos || word == s.replacement ||
                static_cast<unsigned char>(s.word[0]) < 0x80)
                continue;
            derived = word.substr(0, at) + s.word + word.substr(at + s.replacement.size());
            if (known.count(derived) != 0 || !compiler.toGBK(derived, gbkDerived, reason) ||
                !compiler.toGBK(word, gbkWord, reason) ||
                !keys.emplace(upperAscii(gbkDerived), 0).second)
                continue;
            contents += gbkDerived + '\x01' + gbkWord + '\n';
            words.emplace(derived, freq);
        }
    }
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
    std::vector<Synonym> list;
    std::string contents;
    const bool read =
        compiler.read(input, [&](const std::string& line, unsigned number, std::string& reason) {
            Synonym s;
            std::string gbkWord, gbkReplacement;
            if (!splitPair(line, s.word, s.replacement, reason) ||
                !compiler.toGBK(s.word, gbkWord, reason) ||
                !compiler.toGBK(s.replacement, gbkReplacement, reason))
                return false;
            const auto first = keys.emplace(upperAscii(gbkWord), number);
            if (!first.second) {
                reason = "'" + s.word + "' repeats the word of line " +
                         std::to_string(first.first->second);
                return false;
            }
            contents += gbkWord + '\x01' + gbkReplacement + '\n';
            for (const std::string* w : {&s.word, &s.replacement}) {
                if (w->find_first_of(" \t") == std::string::npos) words.emplace(*w, kWordFrequency);
            }
            list.push_back(s);
            return true;
        });
    if (!read) return 1;
    const size_t listed = keys.size();
    std::map<std::string, uint64_t> known;
    if (args.has("known") && compiler.errors() == 0) {
        if (!readKnown(args.get("known"), known, err)) return 1;
        for (auto& w : words) {
            const auto it = known.find(w.first);
            if (it != known.end()) w.second = std::max(w.second, it->second);
        }
        deriveSynonyms(list, known, compiler, keys, words, contents);
    }
    if (!compiler.write(output, contents) ||
        (args.has("words") && !writeWords(args.get("words"), words, err)))
        return 1;
    err << "zeg-dict synonyms: " << input << ": " << listed << " synonyms, " << keys.size() - listed
        << " derived\n";
    return 0;
}

}  // namespace

ZegDictCommand synonymsCommand() {
    return {"compile a UTF-8 synonym list into the normaliser's GBK file",
            kHelp,
            {"input", "output", "words", "known"},
            {},
            &run};
}

}  // namespace zeg_tools
