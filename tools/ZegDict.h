#ifndef ZEG_TOOLS_ZEGDICT_H
#define ZEG_TOOLS_ZEGDICT_H

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "tools/ArgParser.h"

namespace zeg_tools {

// One sub-command of zeg-dict. Each lives in its own source file, which
// offers a function returning its description; ZegDict's constructor lists
// them. `run` gets the parsed options and returns the exit code: 0 done,
// 1 the job failed, 2 a usage error (its line already written).
struct ZegDictCommand {
    const char* summary;                  // one line for zeg-dict --help
    const char* help;                     // the text of zeg-dict NAME --help
    std::vector<std::string> valueNames;  // options that take a value
    std::vector<std::string> flagNames;   // "progress" is added to none
    int (*run)(ArgParser& args, std::ostream& out, std::ostream& err);
};

// The command line of zeg-dict, the dictionary compiler:
//
//   zeg-dict <sub-command> [options]
//   zeg-dict --help | --version | zeg-dict <sub-command> --help
//
// Options are parsed by ArgParser. Usage errors give one line on the error
// stream and exit code 2; a failed job exits with 1. Not thread-safe.
class ZegDict {
public:
    ZegDict(std::ostream& out, std::ostream& err);

    // Runs the command line `args` (without the program name); returns the
    // exit code.
    int run(const std::vector<std::string>& args);

private:
    int usageError(const std::string& message);
    void printHelp() const;

    std::ostream& m_out;
    std::ostream& m_err;
    std::map<std::string, ZegDictCommand> m_commands;
};

// The sub-commands, one source file each (core and charfreq in ZegDict.cpp).
ZegDictCommand coreCommand();
ZegDictCommand charFreqCommand();
ZegDictCommand stopwordsCommand();
ZegDictCommand synonymsCommand();
ZegDictCommand reversibleCommand();
ZegDictCommand posTrainCommand();  // ZegDictPos.cpp
ZegDictCommand posCommand();       // ZegDictPos.cpp
ZegDictCommand phraseCommand();    // ZegDictPhrase.cpp

}  // namespace zeg_tools

#endif
