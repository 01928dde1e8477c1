// zeg-person: trains the person-name model and lists from the corpora, and
// compiles the model's text files into the binary model.
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "tools/ArgParser.h"
#include "tools/DataFingerprint.h"
#include "tools/PersonNameTrainer.h"
#include "tools/SameFile.h"
#include "tools/StandardStreams.h"
#include "ws/core/wsWsLogger.h"
#include "ws/dict/wsMaxentDict.h"

namespace {

const char kUsage[] =
    "usage: zeg-person train --out DIR [--pfr FILE] [--msra FILE] [--msra-holdout N]\n"
    "                        [--iterations N] [--cutoff N] [--sigma2 V] [--keep-plain R]\n"
    "                        [--seed N]\n"
    "       zeg-person build --freq FILE --alpha FILE --output MODEL\n"
    "\n"
    "train  learns person_alpha.txt, person_freq.txt, family_names.txt,\n"
    "       given_name_chars.txt and foreign_name_chars.txt into DIR from People's\n"
    "       Daily (--pfr, word/tag tokens) and MSRA (--msra, chunk/tag tokens), the\n"
    "       last N MSRA lines left out (--msra-holdout, default 0); GIS for\n"
    "       --iterations (100), a Gaussian prior of variance --sigma2 (1) and a\n"
    "       context cut-off of --cutoff (2);\n"
    "       --keep-plain (1.0) of the sentences without a name, drawn with --seed (1).\n"
    "build  compiles the two model text files into the binary model.\n";

int usageError(const std::string& message) {
    std::cerr << "zeg-person: " << message << " (see zeg-person --help)\n";
    return 2;
}

bool number(const std::string& text, double& out) {
    char* end = nullptr;
    out = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0';
}

int train(const std::map<std::string, std::string>& o) {
    zeg_tools::PersonTrainOptions opt;
    double v = 0;
    for (const auto& kv : o) {
        if (kv.first == "out") opt.outDir = kv.second;
        else if (kv.first == "pfr") opt.pfr = kv.second;
        else if (kv.first == "msra") opt.msra = kv.second;
        else if (!number(kv.second, v) || v < 0) return usageError("bad value for --" + kv.first);
        else if (kv.first == "msra-holdout") opt.msraHoldout = static_cast<long>(v);
        else if (kv.first == "iterations") opt.iterations = static_cast<int>(v);
        else if (kv.first == "cutoff") opt.cutoff = static_cast<int>(v);
        else if (kv.first == "keep-plain") opt.keepPlain = v;
        else if (kv.first == "sigma2" && v > 0) opt.sigma2 = v;
        else if (kv.first == "seed") opt.seed = static_cast<unsigned>(v);
        else return usageError("bad value for --" + kv.first);
    }
    if (opt.outDir.empty()) return usageError("train needs --out DIR");
    if (opt.pfr.empty() && opt.msra.empty()) return usageError("train needs --pfr or --msra");
    return zeg_tools::PersonNameTrainer(opt, std::cerr).run();
}

int build(const std::map<std::string, std::string>& o) {
    if (o.count("freq") == 0 || o.count("alpha") == 0 || o.count("output") == 0)
        return usageError("build needs --freq, --alpha and --output");
    ws::MaxentDict model;
    if (!model.buildDict(o.at("freq").c_str(), o.at("alpha").c_str(), o.at("output").c_str())) {
        std::cerr << "zeg-person: cannot build " << o.at("output") << '\n';
        return 1;
    }
    std::cerr << "zeg-person: " << model.used() - 1 << " keys\n";
    return 0;
}

// Writes `text` to standard output; 1, reported, when that fails.
int print(const std::string& text) {
    if (std::cout << text << std::flush) return 0;
    std::cerr << "zeg-person: cannot write to standard output: " << std::strerror(errno) << '\n';
    return 1;
}

// Options each sub-command takes, all with a value.
const std::map<std::string, std::vector<std::string>> kOptions = {
    {"train",
     {"out", "pfr", "msra", "msra-holdout", "iterations", "cutoff", "sigma2", "keep-plain", "seed"}},
    {"build", {"freq", "alpha", "output"}},
};

}  // namespace

int main(int argc, char** argv) {
    if (!zeg_tools::guardStandardStreams("zeg-person", false)) return 2;
    const std::vector<std::string> args(argv + 1, argv + argc);
    const std::string version = "zeg-person " + zeg_tools::libraryVersion() + "\n";
    if (!args.empty() && (args[0] == "--help" || args[0] == "-h")) return print(kUsage);
    if (!args.empty() && args[0] == "--version") return print(version);
    if (args.empty()) return usageError("missing sub-command");
    const auto command = kOptions.find(args[0]);
    if (command == kOptions.end()) return usageError("unknown sub-command '" + args[0] + "'");
    zeg_tools::ArgParser parser("zeg-person", "zeg-person");
    for (const auto& name : command->second) parser.value(name);
    if (!parser.parse(std::vector<std::string>(args.begin() + 1, args.end()))) {
        std::cerr << parser.error() << '\n';
        return 2;
    }
    if (parser.has("help")) return print(kUsage);
    if (parser.has("version")) return print(version);
    const std::string clash = zeg_tools::outputClash(parser, command->second);
    if (!clash.empty()) return usageError(clash);
    std::map<std::string, std::string> options;
    for (const auto& name : command->second)
        if (parser.has(name)) options[name] = parser.get(name);
    return command->first == "train" ? train(options) : build(options);
}
