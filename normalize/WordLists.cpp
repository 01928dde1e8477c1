#include "normalize/WordLists.h"

#include <unistd.h>

#include <atomic>
#include <cstring>
#include <vector>

#include "norm_utility/AlgoUtil.h"
#include "norm_utility/ErrorLine.h"
#include "norm_utility/StdioFile.h"

namespace normalize {

using norm_utility::AlgoUtil;
using norm_utility::StdioFile;
using norm_utility::writeErrorLine;

std::set<std::string> gStopWords;
std::map<std::string, std::string> gSynonymsWords;

namespace {

std::atomic<unsigned> gGeneration{0};

// The line as read, without its line end, so that a report stays one line.
std::string withoutLineEnd(const char* line) {
    std::size_t n = std::strlen(line);
    while (n > 0 && (line[n - 1] == '\n' || line[n - 1] == '\r')) --n;
    return std::string(line, n);
}

void addSynonymLine(const char* line, const std::string& path, int lineNumber,
                    std::vector<std::string>& fields) {
    AlgoUtil::split2(line, "\x01", fields);
    if (fields.size() != 2) {
        writeErrorLine("Invalid line [" + withoutLineEnd(line) + "] in file [" + path +
                       "], line number: " + std::to_string(lineNumber));
        return;
    }
    AlgoUtil::stringToupper(fields[0]);
    gSynonymsWords[fields[0]] = fields[1];
}

}  // namespace

unsigned wordListsGeneration() { return gGeneration.load(std::memory_order_acquire); }

void wordListsChanged() { gGeneration.fetch_add(1, std::memory_order_acq_rel); }

bool loadStopFile(const std::string& path) {
    StdioFile file;
    if (!file.open(path.c_str())) return false;
    std::string word;
    char buf[4096];
    std::size_t n;
    while ((n = file.read(buf, sizeof buf)) > 0) {
        for (std::size_t i = 0; i < n; ++i) {
            if (!AlgoUtil::isSpace(static_cast<unsigned char>(buf[i]))) {
                word.push_back(buf[i]);
            } else if (!word.empty()) {
                gStopWords.insert(word);
                word.clear();
            }
        }
    }
    if (!word.empty()) gStopWords.insert(word);
    wordListsChanged();
    return true;
}

bool loadSynonymsFile(const std::string& path) {
    if (access(path.c_str(), F_OK) != 0) {
        writeErrorLine("[loadSynonymsFile] The given file [" + path + "] does not exist.");
        return false;
    }
    StdioFile file;
    if (!file.open(path.c_str())) {
        writeErrorLine("[loadSynonymsFile] open file [" + path + "] failed.");
        return false;
    }
    char line[1024] = {};
    std::vector<std::string> fields;
    for (int lineNumber = 1; file.readLine(line, sizeof line); ++lineNumber)
        addSynonymLine(line, path, lineNumber, fields);
    wordListsChanged();
    return true;
}

}  // namespace normalize
