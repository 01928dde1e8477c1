#ifndef ZEG_TOOLS_SAMEFILE_H
#define ZEG_TOOLS_SAMEFILE_H

#include <string>
#include <vector>

namespace zeg_tools {

// True when both paths exist and name one file (the same device and inode),
// whatever the spelling: symbolic and hard links included. A tool refuses
// to write its output over its own input.
bool sameFile(const std::string& a, const std::string& b);

class ArgParser;

// For a tool whose value options `names` were parsed into `parser`: the
// message "--OUT names the same file as --IN (PATH)" when an output option
// ("output", "out", "patch-output") names the file of another option, else
// "". Outputs are renamed into place, so writing one over an input would
// replace the input with what was made of it.
std::string outputClash(const ArgParser& parser, const std::vector<std::string>& names);

}  // namespace zeg_tools

#endif
