// zeg-person: trains the person-name model and lists from the corpora, and
// compiles the model's text files into the binary model.
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>
#include <string>

#include "tools/PersonNameTrainer.h"
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
        else return usageError("unknown option --" + kv.first + " for train");
    }
    if (opt.outDir.empty()) return usageError("train needs --out DIR");
    if (opt.pfr.empty() && opt.msra.empty()) return usageError("train needs --pfr or --msra");
    return zeg_tools::PersonNameTrainer(opt, std::cerr).run();
}

int build(const std::map<std::string, std::string>& o) {
    for (const auto& kv : o)
        if (kv.first != "freq" && kv.first != "alpha" && kv.first != "output")
            return usageError("unknown option --" + kv.first + " for build");
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

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return usageError("missing sub-command");
    const std::string command = argv[1];
    std::map<std::string, std::string> options;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::cout << kUsage;
            return 0;
        }
    }
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg.compare(0, 2, "--") != 0 || i + 1 >= argc)
            return usageError("expected --name VALUE, got '" + arg + "'");
        options[arg.substr(2)] = argv[++i];
    }
    if (command == "train") return train(options);
    if (command == "build") return build(options);
    return usageError("unknown sub-command '" + command + "'");
}
