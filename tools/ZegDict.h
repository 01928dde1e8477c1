#ifndef ZEG_TOOLS_ZEGDICT_H
#define ZEG_TOOLS_ZEGDICT_H

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace zeg_tools {

// The command line of zeg-dict, the dictionary compiler:
//
//   zeg-dict <sub-command> [options]
//   zeg-dict --help | zeg-dict <sub-command> --help
//
// Each sub-command reads "--name value" (or "--name=value") options and
// flags. Usage errors give one line on the error stream and exit code 2;
// a failed job exits with 1. Not thread-safe.
class ZegDict {
public:
    ZegDict(std::ostream& out, std::ostream& err);

    // Runs the command line `args` (without the program name); returns the
    // exit code.
    int run(const std::vector<std::string>& args);

private:
    struct Options {
        std::map<std::string, std::string> values;
        std::map<std::string, bool> flags;
    };
    struct SubCommand {
        const char* summary;
        const char* help;
        std::vector<std::string> valueNames;  // options that take a value
        std::vector<std::string> flagNames;
        int (ZegDict::*handler)(const Options&);
    };

    // Fills `options` from `args` after the sub-command; false (with the
    // error written) on an unknown or incomplete option.
    bool parse(const std::string& name, const SubCommand& command,
               const std::vector<std::string>& args, Options& options);
    // The value of a required option, or an error when it is missing.
    bool require(const std::string& name, const Options& options, const char* option,
                 std::string& value);
    int usageError(const std::string& message);
    void printHelp() const;

    int runCore(const Options& options);
    int runCharFreq(const Options& options);
    // The part-of-speech sub-commands (ZegDictPos.cpp).
    static SubCommand posTrainCommand();
    static SubCommand posCommand();
    int runPosTrain(const Options& options);
    int runPos(const Options& options);

    std::ostream& m_out;
    std::ostream& m_err;
    std::map<std::string, SubCommand> m_commands;
};

}  // namespace zeg_tools

#endif
