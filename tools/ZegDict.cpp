#include "tools/ZegDict.h"

#include <sys/stat.h>

#include "tools/CharFreqBuilder.h"
#include "tools/CoreDictCompiler.h"
#include "tools/DataFingerprint.h"
#include "tools/ProgressLine.h"
#include "tools/SameFile.h"

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
    "usage: zeg-dict charfreq --input WORDS --output FILE [--progress]\n"
    "\n"
    "Derives the character frequency file from a word list (the format of\n"
    "zeg-dict core's input): a one-character word adds its frequency to the\n"
    "character's alone count; in a longer word the first, middle and last\n"
    "characters add it to their first, middle and final counts.\n"
    "\n"
    "  --input WORDS   UTF-8 word list, one entry a line: word [frequency] [tag]\n"
    "  --output FILE   the character frequency file to write\n"
    "  --progress      show progress on the error stream (the default on a terminal)\n";

uint64_t fileBytes(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) ? static_cast<uint64_t>(st.st_size) : 0;
}

int runCore(ArgParser& args, std::ostream&, std::ostream& err) {
    CoreDictOptions core;
    if (!args.require("input", core.input) || !args.require("output", core.output) ||
        !args.require("properties", core.properties)) {
        err << args.error() << '\n';
        return 2;
    }
    core.strict = args.has("strict");
    core.progress = args.has("progress") || ProgressLine::stderrIsTerminal();
    return CoreDictCompiler(core, err).run();
}

int runCharFreq(ArgParser& args, std::ostream&, std::ostream& err) {
    std::string input, output, error;
    if (!args.require("input", input) || !args.require("output", output)) {
        err << args.error() << '\n';
        return 2;
    }
    CharFreqBuilder builder;
    ProgressLine progress(err, args.has("progress") || ProgressLine::stderrIsTerminal(),
                          "zeg-dict charfreq", fileBytes(input));
    if (!builder.addFile(input, error, &progress) || !builder.writeFile(output, error)) {
        err << "zeg-dict: " << error << '\n';
        return 1;
    }
    err << "zeg-dict: " << builder.wordsAdded() << " words, " << builder.linesSkipped()
        << " lines skipped\n";
    return 0;
}

}  // namespace

ZegDictCommand coreCommand() {
    return {"compile a word list into a core dictionary", kCoreHelp,
            {"input", "output", "properties"}, {"strict", "progress"}, &runCore};
}

ZegDictCommand charFreqCommand() {
    return {"derive character frequencies from a word list", kCharFreqHelp,
            {"input", "output"}, {"progress"}, &runCharFreq};
}

ZegDict::ZegDict(std::ostream& out, std::ostream& err) : m_out(out), m_err(err) {
    m_commands["core"] = coreCommand();
    m_commands["charfreq"] = charFreqCommand();
    m_commands["stopwords"] = stopwordsCommand();
    m_commands["synonyms"] = synonymsCommand();
    m_commands["reversible"] = reversibleCommand();
    m_commands["phrase"] = phraseCommand();
    m_commands["pos-train"] = posTrainCommand();
    m_commands["pos"] = posCommand();
}

int ZegDict::usageError(const std::string& message) {
    m_err << "zeg-dict: " << message << '\n';
    return 2;
}

void ZegDict::printHelp() const {
    m_out << "usage: zeg-dict <sub-command> [options]\n       zeg-dict --version\n\n"
             "Sub-commands:\n";
    for (const auto& c : m_commands) m_out << "  " << c.first << "  " << c.second.summary << '\n';
    m_out << "\nzeg-dict <sub-command> --help describes each.\n";
}

int ZegDict::run(const std::vector<std::string>& args) {
    if (args.empty()) return usageError("missing sub-command (see zeg-dict --help)");
    if (args[0] == "--help" || args[0] == "-h") {
        printHelp();
        return 0;
    }
    if (args[0] == "--version") {
        m_out << "zeg-dict " << libraryVersion() << '\n';
        return 0;
    }
    const auto it = m_commands.find(args[0]);
    if (it == m_commands.end())
        return usageError("unknown sub-command '" + args[0] + "' (see zeg-dict --help)");
    const ZegDictCommand& command = it->second;
    ArgParser parser("zeg-dict", "zeg-dict " + it->first);
    for (const auto& name : command.valueNames) parser.value(name);
    for (const auto& name : command.flagNames) parser.flag(name);
    if (!parser.parse(std::vector<std::string>(args.begin() + 1, args.end()))) {
        m_err << parser.error() << '\n';
        return 2;
    }
    if (parser.has("help")) {
        m_out << command.help;
        return 0;
    }
    if (parser.has("version")) {
        m_out << "zeg-dict " << libraryVersion() << '\n';
        return 0;
    }
    const std::string clash = outputClash(parser, command.valueNames);
    if (!clash.empty()) return usageError(clash);
    return command.run(parser, m_out, m_err);
}

}  // namespace zeg_tools
