// zeg-dict phrase: compiles the text form of a phrase correction table.
#include <cerrno>
#include <cstring>

#include "tools/AtomicFile.h"
#include "tools/ZegDict.h"
#include "ws/dict/wsCorrectPhraseDict.h"

namespace zeg_tools {

namespace {

const char kPhraseHelp[] =
    "usage: zeg-dict phrase --input TEXT --output DICT\n"
    "\n"
    "Compiles a phrase correction table into the dictionary file named by\n"
    "CORRECT_PHRASE_DICT.\n"
    "\n"
    "  --input TEXT   UTF-8, one phrase a line: the phrase, then its words in\n"
    "                 order, separated by blanks (spaces, tabs, U+3000); the\n"
    "                 words must spell the phrase (at most 64 characters).\n"
    "                 A field beginning with '#' starts a comment. A later line\n"
    "                 for a phrase replaces an earlier one.\n"
    "  --output DICT  the dictionary file to write; it is left untouched when a\n"
    "                 line is unusable (each is reported as FILE:LINE: reason)\n";

int runPhrase(ArgParser& args, std::ostream&, std::ostream& err) {
    std::string input, output, error;
    if (!args.require("input", input) || !args.require("output", output)) {
        err << args.error() << '\n';
        return 2;
    }
    ws::CorrectPhraseDict dict;
    if (dict.loadText(input.c_str()) != 0) {
        err << "zeg-dict: phrase: cannot read " << input << ": " << std::strerror(errno)
              << '\n';
        return 1;
    }
    if (dict.skippedLines() > 0) {
        err << "zeg-dict: phrase: " << dict.skippedLines() << " unusable lines in " << input
              << "; nothing written\n";
        return 1;
    }
    AtomicFile file(output);
    if (dict.writeDict(file.tempPath().c_str()) != 0) {
        err << "zeg-dict: phrase: cannot write " << output << ": " << std::strerror(errno)
              << '\n';
        return 1;
    }
    if (!file.commit(error)) {
        err << "zeg-dict: phrase: " << error << '\n';
        return 1;
    }
    err << "zeg-dict: " << dict.phraseCount() << " phrases\n";
    return 0;
}

}  // namespace

ZegDictCommand phraseCommand() {
    return {"compile a phrase correction table", kPhraseHelp, {"input", "output"}, {}, &runPhrase};
}

}  // namespace zeg_tools
