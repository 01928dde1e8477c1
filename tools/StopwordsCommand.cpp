// zeg-dict stopwords: our UTF-8 stop-character list to the normaliser's GBK
// file.
#include <set>
#include <vector>

#include "tools/GBKListCompiler.h"
#include "tools/ZegDict.h"
#include "ws/core/wsUtility.h"

namespace zeg_tools {

namespace {

const char kHelp[] =
    "usage: zeg-dict stopwords --input LIST --output FILE\n"
    "\n"
    "Writes the normaliser's stop-word file (STOP_FILE, GBK) from a UTF-8 list.\n"
    "Each line holds stop characters separated by blanks; lines starting with\n"
    "# are comments. The normaliser turns a stop character into a space one\n"
    "character at a time, so a longer word could never take effect and is\n"
    "refused, as is a character without a GBK form; each such line is\n"
    "reported as FILE:LINE: reason and nothing is written.\n"
    "\n"
    "  --input LIST   the UTF-8 list\n"
    "  --output FILE  the GBK file to write (one character a line)\n";

// One character: one byte below 0x80, else one double-byte code.
bool oneCharacter(const std::string& gbk) {
    return gbk.size() == 1 ? static_cast<unsigned char>(gbk[0]) < 0x80 : gbk.size() == 2;
}

int run(ArgParser& args, std::ostream&, std::ostream& err) {
    std::string input, output;
    if (!args.require("input", input) || !args.require("output", output)) {
        err << args.error() << '\n';
        return 2;
    }
    GBKListCompiler compiler(err);
    std::set<std::string> seen;
    std::string contents;
    const bool read =
        compiler.read(input, [&](const std::string& line, unsigned, std::string& reason) {
            std::string gbk;
            std::vector<std::string> words;
            ws::Utility::splitLine(line, " \t", words);
            for (const std::string& word : words) {
                if (!compiler.toGBK(word, gbk, reason)) return false;
                if (!oneCharacter(gbk)) {
                    reason = "'" + word + "' is not one character (stop words act on characters)";
                    return false;
                }
                if (seen.insert(gbk).second) contents += gbk + "\n";
            }
            return true;
        });
    if (!read || !compiler.write(output, contents)) return 1;
    err << "zeg-dict stopwords: " << input << ": " << seen.size() << " characters\n";
    return 0;
}

}  // namespace

ZegDictCommand stopwordsCommand() {
    return {"compile a UTF-8 stop-character list into the normaliser's GBK file",
            kHelp,
            {"input", "output"},
            {},
            &run};
}

}  // namespace zeg_tools
