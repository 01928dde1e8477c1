#ifndef ZEG_TESTS_SUPPORT_TOOLRUN_H
#define ZEG_TESTS_SUPPORT_TOOLRUN_H

#include <string>

#include "support/TempDir.h"

namespace zeg_test {

// One run of a command-line tool as a user runs it.
struct ToolRun {
    int status;  // exit status; -1 when the tool did not exit normally
    std::string out, err;
};

// Runs `tool arguments` through the shell with `input` on standard input;
// the streams pass through files in `dir`.
ToolRun runTool(const TempDir& dir, const std::string& tool, const std::string& arguments,
                const std::string& input = "");

// Runs the tool as runTool does, its output discarded, and returns the
// most memory it held at once (peak resident set, kB); -1 on failure.
long peakMemoryKb(const TempDir& dir, const std::string& tool, const std::string& arguments,
                  const std::string& input);

}  // namespace zeg_test

#endif
