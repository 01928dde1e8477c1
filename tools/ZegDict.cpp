#include "tools/ZegDict.h"

#include <algorithm>

#include "tools/CharFreqBuilder.h"
#include "tools/CoreDictCompiler.h"
#include "tools/ProgressLine.h"

namespace zeg_tools {

namespace {

const char kCoreHelp[] =
    "usage: zeg-dict core --input WORDS --output DICT --properties PROPS [--strict] [--progress]\n"
    "\n"
    "Compiles a word list into a core dictionary file.\n"
    "\n"
    "  --input WORDS       UTF-8 word list, one entry a line: word [frequency] [tag],\n"
    "                      fields separated by blanks; frequency a positive integer\n"
    "                      (default 1)\n"
    "  --output DICT       the dictionary file to write\n"
    "  --properties PROPS  the property table (ID<TAB>NAME lines): read if present,\n"
    "                      extended with new tags, written back\n"
    "  --strict            stop at the first malformed line (otherwise such lines are\n"
    "                      reported as FILE:LINE: reason and skipped)\n"
    "  --progress          show progress on the error stream (the default on a terminal)\n";

const char kCharFreqHelp[] =
    "usage: zeg-dict charfreq --input WORDS --output FILE\n"
    "\n"
    "Derives the character frequency file from a word list (the format of\n"
    "zeg-dict core's input): a one-character word adds its frequency to the\n"
    "character's alone count; in a longer word the first, middle and last\n"
    "characters add it to their first, middle and final counts.\n"
    "\n"
    "  --input WORDS   UTF-8 word list, one entry a line: word [frequency] [tag]\n"
    "  --output FILE   the character frequency file to write\n";

bool contains(const std::vector<std::string>& list, const std::string& name) {
    return std::find(list.begin(), list.end(), name) != list.end();
}

}  // namespace

ZegDict::ZegDict(std::ostream& out, std::ostream& err) : m_out(out), m_err(err) {
    m_commands["core"] = SubCommand{"compile a word list into a core dictionary",
                                    kCoreHelp,
                                    {"input", "output", "properties"},
                                    {"strict", "progress"},
                                    &ZegDict::runCore};
    m_commands["charfreq"] = SubCommand{"derive character frequencies from a word list",
                                        kCharFreqHelp,
                                        {"input", "output"},
                                        {},
                                        &ZegDict::runCharFreq};
    m_commands["pos-train"] = posTrainCommand();
    m_commands["pos"] = posCommand();
}

int ZegDict::usageError(const std::string& message) {
    m_err << "zeg-dict: " << message << '\n';
    return 2;
}

void ZegDict::printHelp() const {
    m_out << "usage: zeg-dict <sub-command> [options]\n\nSub-commands:\n";
    for (const auto& c : m_commands) m_out << "  " << c.first << "  " << c.second.summary << '\n';
    m_out << "\nzeg-dict <sub-command> --help describes each.\n";
}

int ZegDict::run(const std::vector<std::string>& args) {
    if (args.empty()) return usageError("missing sub-command (see zeg-dict --help)");
    if (args[0] == "--help" || args[0] == "-h") {
        printHelp();
        return 0;
    }
    const auto it = m_commands.find(args[0]);
    if (it == m_commands.end())
        return usageError("unknown sub-command '" + args[0] + "' (see zeg-dict --help)");
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (contains(rest, "--help") || contains(rest, "-h")) {
        m_out << it->second.help;
        return 0;
    }
    Options options;
    if (!parse(it->first, it->second, rest, options)) return 2;
    return (this->*it->second.handler)(options);
}

bool ZegDict::parse(const std::string& name, const SubCommand& command,
                    const std::vector<std::string>& args, Options& options) {
    const auto bad = [&](const std::string& message) {
        usageError(message + " (see zeg-dict " + name + " --help)");
        return false;
    };
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg.compare(0, 2, "--") != 0) return bad("unexpected argument '" + arg + "'");
        const size_t eq = arg.find('=');
        const std::string option = arg.substr(2, eq == std::string::npos ? eq : eq - 2);
        if (contains(command.flagNames, option) && eq == std::string::npos) {
            options.flags[option] = true;
        } else if (!contains(command.valueNames, option)) {
            return bad("unknown option '" + arg + "'");
        } else if (eq != std::string::npos) {
            options.values[option] = arg.substr(eq + 1);
        } else if (i + 1 < args.size()) {
            options.values[option] = args[++i];
        } else {
            return bad("option --" + option + " needs a value");
        }
    }
    return true;
}

bool ZegDict::require(const std::string& name, const Options& options, const char* option,
                      std::string& value) {
    const auto it = options.values.find(option);
    if (it != options.values.end() && !it->second.empty()) {
        value = it->second;
        return true;
    }
    usageError(name + ": missing --" + option + " (see zeg-dict " + name + " --help)");
    return false;
}

int ZegDict::runCore(const Options& options) {
    CoreDictOptions core;
    if (!require("core", options, "input", core.input) ||
        !require("core", options, "output", core.output) ||
        !require("core", options, "properties", core.properties))
        return 2;
    core.strict = options.flags.count("strict") != 0;
    core.progress = options.flags.count("progress") != 0 || ProgressLine::stderrIsTerminal();
    return CoreDictCompiler(core, m_err).run();
}

int ZegDict::runCharFreq(const Options& options) {
    std::string input, output, error;
    if (!require("charfreq", options, "input", input) ||
        !require("charfreq", options, "output", output))
        return 2;
    CharFreqBuilder builder;
    if (!builder.addFile(input, error) || !builder.writeFile(output, error)) {
        m_err << "zeg-dict: " << error << '\n';
        return 1;
    }
    m_err << "zeg-dict: " << builder.wordsAdded() << " words, " << builder.linesSkipped()
          << " lines skipped\n";
    return 0;
}

}  // namespace zeg_tools
