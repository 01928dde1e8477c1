// The part-of-speech sub-commands of zeg-dict: training counts from a
// tagged corpus, and compiling them into the tagger's dictionary files.
#include <fstream>
#include <map>
#include <memory>
#include <sstream>

#include "tools/AtomicFile.h"
#include "tools/PosTrainer.h"
#include "tools/PropertyTable.h"
#include "tools/ZegDict.h"
#include "tools/BoundedLine.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/dict/wsBaseDict.h"
#include "ws/pos/wsTrigramPosDict.h"

namespace zeg_tools {

namespace {

const char kPosTrainHelp[] =
    "usage: zeg-dict pos-train --input CORPUS --output-dir DIR\n"
    "\n"
    "Counts tags, first tags, tag bigrams and trigrams and each word's tags in a\n"
    "tagged corpus (one paragraph a line, an id token first, then word/tag tokens;\n"
    "bracketed compounds count as their inner words) and writes the six text files\n"
    "zeg-dict pos compiles: pos_tags.txt, pos_tag_freq.txt, pos_init_tags.txt,\n"
    "pos_bigrams.txt, pos_trigrams.txt, pos_word_tags.txt.\n"
    "\n"
    "  --input CORPUS    the tagged corpus (UTF-8)\n"
    "  --output-dir DIR  where to write the six files (must exist)\n";

const char kPosHelp[] =
    "usage: zeg-dict pos --model-dir DIR --output POS.dict\n"
    "                    [--patch-input PATCH.txt --patch-output PATCH.dict]\n"
    "                    [--properties PROPS --tag-map MAP --typeid2tag OUT]\n"
    "\n"
    "Compiles the six files of zeg-dict pos-train (in DIR) into the tagger's\n"
    "word-tag dictionary. Optionally also:\n"
    "  --patch-input/--patch-output  compiles a patch list (\"WORD TAG\" lines: the\n"
    "                    word always gets that tag; '#' starts a comment line) into a\n"
    "                    patch dictionary\n"
    "  --properties/--tag-map/--typeid2tag  writes the type-id-to-tag file: for each\n"
    "                    property of PROPS (ID<TAB>NAME), \"ID TAG\" where TAG is the\n"
    "                    name's entry in MAP (\"NAME TAG\" lines, '#' comments) or the\n"
    "                    name itself when it is a tag of the model; other properties\n"
    "                    are left out\n";

std::string utf16Key(const std::string& utf8) {
    const auto units = EncodeConverter::utf8ToUtf16(EncodeConverter::Utf8String(
        reinterpret_cast<const unsigned char*>(utf8.data()),
        reinterpret_cast<const unsigned char*>(utf8.data()) + utf8.size()));
    return std::string(reinterpret_cast<const char*>(units.data()), units.size() * 2);
}

// Lines of "A B" (two fields) from `path`; lines starting with '#' are
// comments; bad lines are reported as FILE:LINE and skipped.
bool readPairs(const std::string& path, std::vector<std::pair<std::string, std::string>>& pairs,
               std::ostream& err) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        err << "zeg-dict: cannot open " << path << '\n';
        return false;
    }
    std::string line, a, b, extra;
    for (int n = 1;; ++n) {
        const zeg_tools::LineRead got = zeg_tools::getBoundedLine(in, line, 4096);
        if (got == zeg_tools::LineRead::kEnd) break;
        if (got == zeg_tools::LineRead::kTooLong) {
            err << path << ':' << n << ": " << zeg_tools::tooLongReason(4096) << '\n';
            return false;
        }
        std::istringstream fields(line);
        if (!(fields >> a) || a[0] == '#') continue;
        if (!(fields >> b) || (fields >> extra)) {
            err << path << ':' << n << ": expected two fields\n";
            continue;
        }
        pairs.emplace_back(a, b);
    }
    if (in.bad()) err << "zeg-dict: cannot read " << path << '\n';
    return !in.bad();
}

int compilePatch(const ws::TrigramPosDict& dict, const std::string& input,
                 const std::string& output, std::ostream& err) {
    std::vector<std::pair<std::string, std::string>> pairs;
    if (!readPairs(input, pairs, err)) return 1;
    ws::BaseDict patch;
    for (const auto& p : pairs) {
        float tag = static_cast<float>(dict.getTagId(p.second.c_str()));
        const std::string key = utf16Key(p.first);
        if (tag < 1 || key.empty()) {
            err << input << ": " << p.first << ": unknown tag '" << p.second << "'\n";
            continue;
        }
        patch.add(key.data(), static_cast<unsigned>(key.size()), tag);
    }
    AtomicFile file(output);
    std::string error;
    if (patch.writeDict(file.tempPath().c_str()) != 0 || !file.commit(error)) {
        err << "zeg-dict: cannot write " << output << ' ' << error << '\n';
        return 1;
    }
    return 0;
}

int writeTypeMap(const ws::TrigramPosDict& dict, const std::string& propsPath,
                 const std::string& mapPath, const std::string& output, std::ostream& err) {
    PropertyTable props;
    std::string error;
    std::vector<std::pair<std::string, std::string>> pairs;
    if (!props.load(propsPath, error) || !readPairs(mapPath, pairs, err)) {
        if (!error.empty()) err << "zeg-dict: " << error << '\n';
        return 1;
    }
    std::map<std::string, std::string> names(pairs.begin(), pairs.end());
    std::ostringstream text;
    int written = 0;
    std::istringstream rows(props.text());
    std::string idText, name;
    while (rows >> idText >> name) {
        const auto it = names.find(name);
        const std::string tag = it != names.end() ? it->second : name;
        if (dict.getTagId(tag.c_str()) < 1) continue;
        text << idText << ' ' << tag << '\n';
        ++written;
    }
    AtomicFile file(output);
    {
        std::ofstream out(file.tempPath(), std::ios::binary);
        out << text.str();
        out.flush();
        if (!out) {
            err << "zeg-dict: cannot write " << output << '\n';
            return 1;
        }
    }
    if (!file.commit(error)) {
        err << "zeg-dict: " << error << '\n';
        return 1;
    }
    err << "zeg-dict: " << written << " properties mapped to tags\n";
    return 0;
}

int runPosTrain(ArgParser& args, std::ostream&, std::ostream& err) {
    std::string input, dir, error;
    if (!args.require("input", input) || !args.require("output-dir", dir)) {
        err << args.error() << '\n';
        return 2;
    }
    PosTrainer trainer;
    if (!trainer.addFile(input, error) || !trainer.writeFiles(dir, error)) {
        err << "zeg-dict: " << error << '\n';
        return 1;
    }
    err << "zeg-dict: " << trainer.tokens() << " tokens, " << trainer.words() << " words, "
        << trainer.skipped() << " malformed tokens skipped\n";
    return 0;
}

int runPos(ArgParser& args, std::ostream&, std::ostream& err) {
    std::string dir, output;
    if (!args.require("model-dir", dir) || !args.require("output", output)) {
        err << args.error() << '\n';
        return 2;
    }
    const auto value = [&](const char* name) { return args.get(name); };
    const auto usage = [&](const char* message) {
        err << args.usageError(message) << '\n';
        return 2;
    };
    const bool patch = !value("patch-input").empty() || !value("patch-output").empty();
    const bool typeMap =
        !value("properties").empty() || !value("tag-map").empty() || !value("typeid2tag").empty();
    if (patch && (value("patch-input").empty() || value("patch-output").empty()))
        return usage("pos: --patch-input and --patch-output go together");
    if (typeMap &&
        (value("properties").empty() || value("tag-map").empty() || value("typeid2tag").empty()))
        return usage("pos: --properties, --tag-map and --typeid2tag go together");
    std::string files[6];
    for (int i = 0; i < 6; ++i) files[i] = dir + "/" + PosTrainer::kFileNames[i];
    ws::TrigramPosDict dict(nullptr);
    if (dict.loadFromFiles(files[0].c_str(), files[1].c_str(), files[2].c_str(), files[3].c_str(),
                           files[4].c_str(), files[5].c_str()) != 0) {
        err << "zeg-dict: cannot build the tagger's model from " << dir << '\n';
        return 1;
    }
    AtomicFile file(output);
    std::string error;
    if (dict.writeDict(file.tempPath().c_str()) != 0 || !file.commit(error)) {
        err << "zeg-dict: cannot write " << output << ' ' << error << '\n';
        return 1;
    }
    if (patch && compilePatch(dict, value("patch-input"), value("patch-output"), err) != 0)
        return 1;
    if (typeMap &&
        writeTypeMap(dict, value("properties"), value("tag-map"), value("typeid2tag"), err) != 0)
        return 1;
    return 0;
}

}  // namespace

ZegDictCommand posTrainCommand() {
    return {"count a tagged corpus for the part-of-speech tagger", kPosTrainHelp,
            {"input", "output-dir"}, {}, &runPosTrain};
}

ZegDictCommand posCommand() {
    return {"compile the part-of-speech tagger's dictionaries",
            kPosHelp,
            {"model-dir", "output", "patch-input", "patch-output", "properties", "tag-map",
             "typeid2tag"},
            {},
            &runPos};
}

}  // namespace zeg_tools
