#include "tools/CharFreqBuilder.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

#include "tools/ProgressLine.h"
#include "tools/BoundedLine.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsUtility.h"

namespace zeg_tools {

namespace {

const char kBlanks[] = " \t\r";

void addCapped(std::uint64_t& count, std::uint64_t freq) {
    const std::uint64_t max = CharFreqBuilder::kMaxCount;
    count = std::min(count + std::min(freq, max), max);
}

}  // namespace

CharFreqBuilder::CharFreqBuilder() : m_counts(0x10000) {}

bool CharFreqBuilder::addFile(const std::string& path, std::string& error, ProgressLine* progress) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot open " + path + ": " + std::strerror(errno);
        return false;
    }
    std::string line;
    uint64_t bytes = 0, lines = 0;
    for (LineRead got; (got = getBoundedLine(in, line)) != LineRead::kEnd;) {
        if (got == LineRead::kTooLong) {
            error = path + ":" + std::to_string(lines + 1) + ": " + tooLongReason();
            return false;
        }
        addLine(line);
        bytes += line.size() + 1;
        if (progress != nullptr) progress->update(bytes, ++lines);
    }
    if (progress != nullptr) progress->finish();
    if (in.bad()) {
        error = "cannot read " + path;
        return false;
    }
    return true;
}

bool CharFreqBuilder::addLine(const std::string& line) {
    std::vector<std::string> fields;
    ws::Utility::splitLine(line, kBlanks, fields);
    if (fields.empty()) return true;
    std::vector<unsigned short> word;
    if (!_decodeWord(fields[0], word)) {
        ++m_skipped;
        return false;
    }
    std::uint64_t freq = 1;
    if (fields.size() > 1) _parseFrequency(fields[1], freq);
    addWord(word, freq);
    return true;
}

void CharFreqBuilder::addWord(const std::vector<unsigned short>& word, std::uint64_t freq) {
    ++m_words;
    if (word.size() == 1) {
        addCapped(m_counts[word[0]].alone, freq);
        return;
    }
    for (std::size_t i = 0; i < word.size(); ++i) {
        Counts& c = m_counts[word[i]];
        addCapped(i == 0 ? c.first : i + 1 == word.size() ? c.final : c.middle, freq);
    }
}

bool CharFreqBuilder::_decodeWord(const std::string& utf8, std::vector<unsigned short>& word) {
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(utf8.data());
    if (utf8.empty() || !EncodeConverter::isUTF8(bytes, utf8.size())) return false;
    word.resize(utf8.size());
    word.resize(EncodeConverter::utf8ToUtf16(bytes, utf8.size(), word.data(), word.size()));
    // The dictionary reads 0 as "no character" and has no entry for U+FFFF.
    return std::none_of(word.begin(), word.end(),
                        [](unsigned short u) { return u == 0 || u == 0xFFFF; });
}

bool CharFreqBuilder::_parseFrequency(const std::string& field, std::uint64_t& freq) {
    if (field.empty()) return false;
    std::uint64_t v = 0;
    for (char ch : field) {
        if (ch < '0' || ch > '9') return false;
        v = std::min(v * 10 + static_cast<unsigned>(ch - '0'), kMaxCount);
    }
    freq = v;
    return true;
}

std::string CharFreqBuilder::text() const {
    std::string out;
    for (unsigned int u = 1; u < 0xFFFF; ++u) {
        const Counts& c = m_counts[u];
        if (c.alone + c.first + c.middle + c.final == 0) continue;
        const unsigned short unit = static_cast<unsigned short>(u);
        unsigned char utf8[3];
        out.append(reinterpret_cast<const char*>(utf8), EncodeConverter::utf16ToUtf8(&unit, utf8));
        for (std::uint64_t n : {c.alone, c.first, c.middle, c.final})
            out += '\t' + std::to_string(n);
        out += '\n';
    }
    return out;
}

bool CharFreqBuilder::writeFile(const std::string& path, std::string& error) const {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    const std::string body = text();
    out.write(body.data(), static_cast<std::streamsize>(body.size()));
    out.close();
    if (!out) {
        error = "cannot write " + path + ": " + std::strerror(errno);
        return false;
    }
    return true;
}

}  // namespace zeg_tools
