#include "support/ToolRun.h"

#include <sys/wait.h>

#include <cstdlib>

namespace zeg_test {

ToolRun runTool(const TempDir& dir, const std::string& tool, const std::string& arguments,
                const std::string& input) {
    const std::string in = dir.write("tool-in", input);
    const std::string command = tool + " " + arguments + " <" + in + " >" + dir.file("tool-out") +
                                " 2>" + dir.file("tool-err");
    const int status = std::system(command.c_str());
    return ToolRun{WIFEXITED(status) ? WEXITSTATUS(status) : -1,
                   TempDir::read(dir.file("tool-out")), TempDir::read(dir.file("tool-err"))};
}

}  // namespace zeg_test
