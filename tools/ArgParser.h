#ifndef ZEG_TOOLS_ARGPARSER_H
#define ZEG_TOOLS_ARGPARSER_H

#include <map>
#include <string>
#include <vector>

namespace zeg_tools {

// The command-line parser every tool shares. A tool declares its options,
// then parses; afterwards it asks for values by name (without the dashes):
//
//   ArgParser args("zeg-dict", "zeg-dict core");
//   args.value("input").flag("strict");
//   if (!args.parse(argv)) { err << args.error() << '\n'; return 2; }
//   std::string input = args.get("input");
//
// Accepted: "--name value" and "--name=value" for a value option, "--name"
// for a flag; "--help", "-h" and "--version" are flags of every parser.
// Anything else (an unknown option, a value given to a flag, a missing
// value, a bare word) is an error. A repeated option keeps its last value.
// Not thread-safe; one object per command line.
class ArgParser {
public:
    // `tool` starts every error line; `command` is what --help is asked of
    // ("zeg-dict core" for a sub-command, else the tool's name).
    ArgParser(std::string tool, std::string command);

    ArgParser& value(const std::string& name);  // an option that takes a value
    ArgParser& flag(const std::string& name);   // an option that takes none

    // False on the first bad argument; error() then holds the line to show.
    bool parse(const std::vector<std::string>& args);

    // True when the option (flag or value) was given.
    bool has(const std::string& name) const;
    // The option's value, `def` when it was not given.
    std::string get(const std::string& name, const std::string& def = std::string()) const;

    // One line, without line end: "TOOL: MESSAGE (see COMMAND --help)".
    std::string usageError(const std::string& message) const;
    // The line of the last failed parse or require().
    const std::string& error() const { return m_error; }

    // The value of an option that must be there and not be empty; false
    // (and error() set to "TOOL: missing --NAME (see ...)") otherwise.
    bool require(const std::string& name, std::string& value);

private:
    bool fail(const std::string& message);

    std::string m_tool;
    std::string m_command;
    std::map<std::string, bool> m_takesValue;
    std::map<std::string, std::string> m_given;
    std::string m_error;
};

}  // namespace zeg_tools

#endif
