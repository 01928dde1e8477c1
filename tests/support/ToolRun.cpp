#include "support/ToolRun.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

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

long peakMemoryKb(const TempDir& dir, const std::string& tool, const std::string& arguments,
                  const std::string& input) {
    const std::string in = dir.write("tool-in", input);
    // exec: the shell becomes the tool, so the child measured is the tool.
    const std::string command = "exec " + tool + " " + arguments + " <" + in + " >/dev/null 2>" +
                                dir.file("tool-err");
    const pid_t pid = fork();
    if (pid < 0) return -1;
    if (pid == 0) {
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    int status = 0;
    struct rusage usage = {};
    if (wait4(pid, &status, 0, &usage) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return -1;
    return usage.ru_maxrss;
}

}  // namespace zeg_test
