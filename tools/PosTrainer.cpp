#include "tools/PosTrainer.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "tools/AtomicFile.h"
#include "tools/FdLineReader.h"
#include "ws/core/wsUtility.h"

namespace zeg_tools {

namespace {

const size_t kMaxLine = 1 << 20;

bool isTagChar(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

}  // namespace

const char* const PosTrainer::kFileNames[6] = {"pos_tags.txt",      "pos_tag_freq.txt",
                                               "pos_init_tags.txt", "pos_bigrams.txt",
                                               "pos_trigrams.txt",  "pos_word_tags.txt"};

bool PosTrainer::splitToken(const std::string& token, std::string& word, std::string& tag) {
    std::string t = token;
    if (!t.empty() && t[0] == '[') t.erase(0, 1);
    // "word/tag]outer": drop the compound's own tag.
    const size_t close = t.rfind(']');
    if (close != std::string::npos && close > t.rfind('/')) t.erase(close);
    const size_t slash = t.rfind('/');
    if (slash == std::string::npos || slash == 0 || slash + 1 == t.size()) return false;
    word = t.substr(0, slash);
    tag = t.substr(slash + 1);
    for (char c : tag)
        if (!isTagChar(c)) return false;
    if (tag == "vvn")
        tag = "vn";
    else if (tag == "na")
        tag = "n";
    else if (tag == "Yg")
        tag = "y";
    return true;
}

void PosTrainer::addLine(const std::string& line) {
    std::vector<std::string> tokens;
    ws::Utility::splitLine(line, " \t\r", tokens);
    std::vector<std::string> tags;
    std::string word, tag;
    for (size_t i = 1; i < tokens.size(); ++i) {
        if (!splitToken(tokens[i], word, tag)) {
            ++m_skipped;
            continue;
        }
        ++m_tokens;
        ++m_tagFreq[tag];
        ++m_wordTags[word][tag];
        tags.push_back(tag);
    }
    if (tags.empty()) return;
    ++m_initTags[tags[0]];
    for (size_t i = 1; i < tags.size(); ++i) {
        ++m_bigrams[tags[i - 1] + ' ' + tags[i]];
        if (i >= 2) ++m_trigrams[tags[i - 2] + ' ' + tags[i - 1] + ' ' + tags[i]];
    }
}

bool PosTrainer::addFile(const std::string& path, std::string& error) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        error = path + ": " + std::strerror(errno);
        return false;
    }
    FdLineReader reader(fd, kMaxLine);
    std::string line;
    bool cut = false;
    for (long n = 1; reader.next(line, cut); ++n) {
        // Stop: the rest of an endless line (/dev/zero) would never come.
        if (cut) {
            close(fd);
            error = path + ":" + std::to_string(n) + ": longer than " + std::to_string(kMaxLine) +
                    " bytes";
            return false;
        }
        addLine(line);
    }
    const int readErrno = errno;
    close(fd);
    if (reader.failed()) {
        error = path + ": " + std::strerror(readErrno);
        return false;
    }
    return true;
}

bool PosTrainer::writeCounts(const std::string& path,
                             const std::map<std::string, long long>& counts,
                             std::string& error) const {
    AtomicFile file(path);
    {
        std::ofstream out(file.tempPath(), std::ios::binary);
        for (const auto& c : counts) out << c.second << ' ' << c.first << '\n';
        out.flush();
        if (!out) {
            error = path + ": write error";
            return false;
        }
    }
    return file.commit(error);
}

bool PosTrainer::writeFiles(const std::string& dir, std::string& error) const {
    const std::string base = dir.empty() ? std::string() : dir + "/";
    {
        AtomicFile names(base + kFileNames[0]);
        std::ofstream out(names.tempPath(), std::ios::binary);
        // std::map orders by byte, as the tag model wants.
        for (const auto& t : m_tagFreq) out << t.first << '\n';
        out.flush();
        if (!out) {
            error = names.target() + ": write error";
            return false;
        }
        out.close();
        if (!names.commit(error)) return false;
    }
    if (!writeCounts(base + kFileNames[1], m_tagFreq, error) ||
        !writeCounts(base + kFileNames[2], m_initTags, error) ||
        !writeCounts(base + kFileNames[3], m_bigrams, error) ||
        !writeCounts(base + kFileNames[4], m_trigrams, error))
        return false;
    AtomicFile words(base + kFileNames[5]);
    std::ofstream out(words.tempPath(), std::ios::binary);
    for (const auto& w : m_wordTags) {
        out << w.first;
        for (const auto& t : w.second) out << ' ' << t.first << '/' << t.second;
        out << '\n';
    }
    out.flush();
    if (!out) {
        error = words.target() + ": write error";
        return false;
    }
    out.close();
    return words.commit(error);
}

}  // namespace zeg_tools
