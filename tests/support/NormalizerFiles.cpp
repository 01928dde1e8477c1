#include "support/NormalizerFiles.h"

#include "support/Gbk.h"

namespace zeg_test {

std::string NormalizerFiles::write(const TempDir& dir) const {
    const std::string stop = stopFile.empty() ? dir.write("stop.txt", gbk(stopWords)) : stopFile;
    const std::string syn =
        synonymsFile.empty() ? dir.write("synonyms.txt", gbk(synonyms)) : synonymsFile;
    return dir.write("normalizer.ini", "[SERVER]\nWS_CONFIG=" + wsConfig + "\nSTOP_FILE=" + stop +
                                           "\nSYNONYMS_FILE=" + syn +
                                           "\nMAX_INPUT_LENGTH=" + maxInputLength + "\n");
}

}  // namespace zeg_test
