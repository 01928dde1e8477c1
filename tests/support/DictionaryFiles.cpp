#include "support/DictionaryFiles.h"

#include <sstream>

#include "tools/CoreDictCompiler.h"

namespace zeg_test {

std::string compileDictionary(const TempDir& dir, const std::string& name,
                              const std::string& words) {
    zeg_tools::CoreDictOptions options;
    options.input = dir.write(name + ".txt", words);
    options.output = dir.file(name + ".dict");
    options.properties = dir.file("properties.txt");
    std::ostringstream err;
    if (zeg_tools::CoreDictCompiler(options, err).run() == 0) return "";
    return err.str().empty() ? "compile failed" : err.str();
}

}  // namespace zeg_test
