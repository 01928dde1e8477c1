#include "tools/PersonNameTrainer.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <random>

#include "tools/FdLineReader.h"
#include "ws/algo/wsMEPersonNameTagger.h"
#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsUtility.h"
#include "ws/dict/wsMaxentDict.h"

namespace zeg_tools {

namespace {

using Tagger = ws::MEPersonNameTagger;
const int kLabels = Tagger::kLabels;
const unsigned char kOutside = 3;
// A family name seen this often is taken as one when telling Chinese names
// from transliterated ones.
const long kKnownFamily = 5;
const long kForeignMinCount = 10;
const double kForeignMinShare = 0.2;
const size_t kMaxLine = 1 << 20;
const int kNewtonSteps = 30;
const double kMaxStep = 2.0;  // keeps one Newton step from overflowing exp
// A context word must be next to a name this often, and in this share of
// its occurrences.
const long kContextMinCount = 15;
const double kContextMinShare = 0.1;

std::u16string toUtf16(const std::string& s) {
    EncodeConverter::Utf16String u =
        EncodeConverter::utf8ToUtf16(EncodeConverter::Utf8String(s.begin(), s.end()));
    return std::u16string(u.begin(), u.end());
}

std::string toUtf8(const char16_t* units, size_t n) {
    EncodeConverter::Utf16String u(units, units + n);
    EncodeConverter::Utf8String b = EncodeConverter::utf16ToUtf8(u);
    return std::string(b.begin(), b.end());
}

// Fields between runs of blanks; no empty ones.
std::vector<std::string> splitBlanks(const std::string& line) {
    std::vector<std::string> out;
    ws::Utility::splitLine(line, " \t\r", out);
    return out;
}

// "word/tag", "[word/tag" or "word/tag]nt" -> word and tag.
bool splitToken(std::string token, std::string& word, std::string& tag) {
    if (!token.empty() && token[0] == '[') token.erase(0, 1);
    const size_t slash = token.rfind('/', token.find(']'));
    if (slash == std::string::npos || slash == 0) return false;
    word = token.substr(0, slash);
    tag = token.substr(slash + 1);
    const size_t close = tag.find(']');
    if (close != std::string::npos) tag.erase(close);
    return true;
}

bool ideograph(char16_t c) { return c >= 0x4E00 && c <= 0x9FFF; }

bool ideographs(const std::u16string& s) { return std::all_of(s.begin(), s.end(), ideograph); }

uint64_t predicateKey(int group, const Tagger::Key& k) {
    const uint64_t units = k.units[0] | (k.len == 2 ? static_cast<uint64_t>(k.units[1]) << 16 : 0);
    return static_cast<uint64_t>(group) << 33 | static_cast<uint64_t>(k.len - 1) << 32 | units;
}

// The first template of a group and key length: the one the file names.
int templateOf(int group, int len) {
    for (int t = 0; t < Tagger::kTemplates; ++t) {
        const bool pair = t >= 5;
        if (ws::MaxentDict::kTemplateGroup[t] == group && pair == (len == 2)) return t;
    }
    return -1;
}

}  // namespace

PersonNameTrainer::PersonNameTrainer(const PersonTrainOptions& options, std::ostream& log)
    : m_opt(options), m_log(log) {}

bool PersonNameTrainer::fail(const std::string& message) {
    m_log << "zeg-person: " << message << '\n';
    return false;
}

void PersonNameTrainer::labelName(Sentence& s, size_t start, size_t len) {
    if (len < 2) return;  // a lone character is no name the tagger reports
    for (size_t k = 0; k < len; ++k) s.labels[start + k] = static_cast<char>(k == 0 ? 0 : k + 1 < len ? 1 : 2);
}

void PersonNameTrainer::noteForeign(const std::u16string& name) {
    for (char16_t c : name) ++m_foreign[c];
}

bool PersonNameTrainer::parsePfrLine(const std::string& line, Sentence& out) {
    out = Sentence();
    std::vector<std::pair<std::u16string, std::string>> words;
    const std::vector<std::string> tokens = splitBlanks(line);
    for (size_t i = 1; i < tokens.size(); ++i) {  // the first token is the paragraph id
        std::string word, tag;
        if (splitToken(tokens[i], word, tag)) words.emplace_back(toUtf16(word), tag);
    }
    for (size_t i = 0; i < words.size();) {
        if (words[i].second != "w") ++m_wordCount[words[i].first];
        if (words[i].second != "nr") {
            out.text += words[i].first;
            out.labels.append(words[i].first.size(), static_cast<char>(kOutside));
            ++i;
            continue;
        }
        size_t j = i;
        const size_t start = out.text.size();
        while (j < words.size() && words[j].second == "nr") out.text += words[j++].first;
        out.labels.append(out.text.size() - start, static_cast<char>(kOutside));
        labelName(out, start, out.text.size() - start);
        noteName(words, i, j);
        i = j;
    }
    return !out.text.empty();
}

void PersonNameTrainer::noteName(const std::vector<std::pair<std::u16string, std::string>>& words,
                                 size_t i, size_t j) {
    if (j - i >= 2 && words[i].first.size() <= 2 && ideographs(words[i].first)) {
        ++m_family[words[i].first];
        for (size_t k = i + 1; k < j; ++k)
            for (char16_t c : words[k].first)
                if (ideograph(c)) ++m_given[c];  // tokens such as 钟（昆音） carry notes
    } else if (j - i == 1 && words[i].first.size() >= 3) {
        noteForeign(words[i].first);
    }
    if (i > 0 && words[i - 1].second != "w") ++m_leftContext[words[i - 1].first];
    if (j < words.size() && words[j].second != "w") ++m_rightContext[words[j].first];
}

bool PersonNameTrainer::parseMsraLine(const std::string& line, Sentence& out) {
    out = Sentence();
    for (const std::string& token : splitBlanks(line)) {
        const size_t slash = token.rfind('/');
        if (slash == std::string::npos || slash == 0) continue;
        const std::u16string w = toUtf16(token.substr(0, slash));
        const size_t start = out.text.size();
        out.text += w;
        out.labels.append(w.size(), static_cast<char>(kOutside));
        if (token.compare(slash + 1, std::string::npos, "nr") != 0) continue;
        labelName(out, start, w.size());
        const auto family = m_family.find(w.substr(0, 1));
        const bool chinese = family != m_family.end() && family->second >= kKnownFamily;
        if (w.size() >= 3 && (!chinese || w.find(u'\u00B7') != std::u16string::npos))
            noteForeign(w);
    }
    return !out.text.empty();
}

namespace {

// A file descriptor for reading, closed when it goes.
class InputFile {
public:
    explicit InputFile(const std::string& path) : m_fd(::open(path.c_str(), O_RDONLY)) {}
    ~InputFile() {
        if (m_fd >= 0) ::close(m_fd);
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    int fd() const { return m_fd; }

private:
    int m_fd;
};

// Lines of the file, or -1 when it cannot be read.
long countLines(const std::string& path) {
    InputFile in(path);
    if (in.fd() < 0) return -1;
    FdLineReader reader(in.fd(), kMaxLine);
    std::string line;
    bool cut = false;
    long n = 0;
    while (reader.next(line, cut) && !cut) ++n;
    return reader.failed() || cut ? -1 : n;
}

}  // namespace

bool PersonNameTrainer::readFile(const std::string& path, bool pfr, long skipTail) {
    const long total = skipTail > 0 ? countLines(path) : 0;
    InputFile in(path);
    if (in.fd() < 0 || total < 0) return fail("cannot read " + path);
    FdLineReader reader(in.fd(), kMaxLine);
    std::string line;
    bool cut = false;
    Sentence s;
    for (long n = 0; reader.next(line, cut); ++n) {
        if (skipTail > 0 && n >= total - skipTail) break;
        // Stop: the rest of an endless line (/dev/zero) would never come.
        if (cut)
            return fail(path + ":" + std::to_string(n + 1) + ": longer than " +
                        std::to_string(kMaxLine) + " bytes");
        if (pfr ? parsePfrLine(line, s) : parseMsraLine(line, s)) addSentence(s);
    }
    if (reader.failed()) return fail("read error in " + path);
    return true;
}

void PersonNameTrainer::addSentence(const Sentence& s) {
    for (char16_t c : s.text) ++m_charCount[c];
    m_sentences.push_back(s);
}

bool PersonNameTrainer::readCorpora() {
    // People's Daily first: its family names tell Chinese names in MSRA apart.
    if (!m_opt.pfr.empty() && !readFile(m_opt.pfr, true, 0)) return false;
    if (!m_opt.msra.empty() && !readFile(m_opt.msra, false, m_opt.msraHoldout)) return false;
    if (m_sentences.empty()) return fail("no training sentences");
    std::mt19937 draw(m_opt.seed);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::vector<Sentence> kept;
    for (Sentence& s : m_sentences) {
        const bool named = s.labels.find(static_cast<char>(0)) != std::string::npos;
        if (named || unit(draw) < m_opt.keepPlain) kept.push_back(std::move(s));
    }
    m_sentences.swap(kept);
    m_log << "zeg-person: " << m_sentences.size() << " sentences\n";
    return true;
}

void PersonNameTrainer::buildEvents() {
    std::unordered_map<uint64_t, std::array<long, kLabels>> counts;
    Tagger::Key keys[Tagger::kTemplates];
    auto forEachPosition = [&](auto&& f) {
        for (const Sentence& s : m_sentences) {
            const auto* text = reinterpret_cast<const unsigned short*>(s.text.data());
            const unsigned n = static_cast<unsigned>(s.text.size());
            for (unsigned i = 0; i < n; ++i) {
                Tagger::contextKeys(text, n, i, keys);
                f(static_cast<unsigned char>(s.labels[i]));
            }
        }
    };
    forEachPosition([&](unsigned char label) {
        for (int t = 0; t < Tagger::kTemplates; ++t)
            ++counts[predicateKey(ws::MaxentDict::kTemplateGroup[t], keys[t])][label];
    });
    // A character pair seen only outside names is dropped: it would only
    // repeat what its characters say, at the cost of most of the model.
    for (const auto& c : counts) {
        const bool pair = (c.first >> 32) & 1;
        const long named = *std::max_element(c.second.begin(), c.second.begin() + kOutside);
        const long any = std::max(named, c.second[kOutside]);
        if (any >= m_opt.cutoff && (!pair || named >= m_opt.cutoff)) m_predKeys.push_back(c.first);
    }
    std::sort(m_predKeys.begin(), m_predKeys.end());  // ids independent of hashing
    m_empirical.assign(m_predKeys.size() * kLabels, 0.0);
    for (size_t p = 0; p < m_predKeys.size(); ++p) {
        m_predIds[m_predKeys[p]] = static_cast<int32_t>(p);
        const auto& c = counts[m_predKeys[p]];
        // Every label of a kept context gets a weight, so that a context
        // can also speak against a label it was never seen with.
        for (int l = 0; l < kLabels; ++l) m_empirical[p * kLabels + l] = static_cast<double>(c[l]);
    }
    counts.clear();
    forEachPosition([&](unsigned char label) {
        Event e;
        e.label = label;
        for (int t = 0; t < Tagger::kTemplates; ++t) {
            const auto it = m_predIds.find(predicateKey(ws::MaxentDict::kTemplateGroup[t], keys[t]));
            e.preds[t] = it == m_predIds.end() ? -1 : it->second;
        }
        m_events.push_back(e);
    });
    m_log << "zeg-person: " << m_events.size() << " events, " << m_predKeys.size()
          << " contexts\n";
}

double PersonNameTrainer::iterate(std::vector<double>& expected) {
    std::fill(expected.begin(), expected.end(), 0.0);
    double logLik = 0;
    for (const Event& e : m_events) {
        double s[kLabels] = {};
        for (int32_t p : e.preds)
            if (p >= 0)
                for (int l = 0; l < kLabels; ++l) s[l] += m_lambda[p * kLabels + l];
        const double top = *std::max_element(s, s + kLabels);
        double z = 0;
        for (double& v : s) z += v = std::exp(v - top);
        for (double& v : s) v /= z;
        logLik += std::log(s[e.label]);
        for (int32_t p : e.preds)
            if (p >= 0)
                for (int l = 0; l < kLabels; ++l) expected[p * kLabels + l] += s[l];
    }
    return logLik / static_cast<double>(m_events.size());
}

double PersonNameTrainer::gisStep(size_t k, double expected) const {
    // GIS with a Gaussian prior: the step d solves
    //   expected * exp(C d) + (lambda + d) / sigma2 = empirical,
    // C = 12, the most contexts an event has. The left side rises with d,
    // so Newton's method from 0 finds the one root.
    const double c = Tagger::kTemplates;
    double d = 0;
    for (int it = 0; it < kNewtonSteps; ++it) {
        const double e = expected * std::exp(c * d);
        const double f = e + (m_lambda[k] + d) / m_opt.sigma2 - m_empirical[k];
        const double slope = c * e + 1 / m_opt.sigma2;
        const double next = std::max(-kMaxStep, std::min(kMaxStep, d - f / slope));
        if (std::fabs(next - d) < 1e-9) return next;
        d = next;
    }
    return d;
}

void PersonNameTrainer::train() {
    m_lambda.assign(m_empirical.size(), 0.0);
    std::vector<double> expected(m_empirical.size());
    for (int it = 1; it <= m_opt.iterations; ++it) {
        const double ll = iterate(expected);
        for (size_t k = 0; k < m_lambda.size(); ++k) m_lambda[k] += gisStep(k, expected[k]);
        if (it == 1 || it % 10 == 0 || it == m_opt.iterations)
            m_log << "zeg-person: iteration " << it << " log-likelihood " << ll << '\n';
    }
}

bool PersonNameTrainer::writeModel() const {
    const std::string alphaPath = m_opt.outDir + "/person_alpha.txt";
    const std::string freqPath = m_opt.outDir + "/person_freq.txt";
    std::ofstream alpha(alphaPath), freq(freqPath);
    if (!alpha || !freq) return false;
    alpha.precision(7);
    int id = 0;
    for (size_t p = 0; p < m_predKeys.size(); ++p) {
        const uint64_t key = m_predKeys[p];
        const int group = static_cast<int>(key >> 33);
        const int len = static_cast<int>((key >> 32) & 1) + 1;
        const char16_t units[2] = {static_cast<char16_t>(key & 0xFFFF),
                                   static_cast<char16_t>((key >> 16) & 0xFFFF)};
        const std::string text = toUtf8(units, static_cast<size_t>(len));
        for (int l = 0; l < kLabels; ++l) {
            const size_t k = p * kLabels + l;
            alpha << ++id << ' ' << std::exp(m_lambda[k]) << '\n';
            freq << id << ' ' << m_empirical[k] << ' ' << l << ' ' << text << ' '
                 << templateOf(group, len) << '\n';
        }
    }
    alpha << ++id << ' ' << 1.0 << '\n';  // the default: a context never seen
    return alpha.flush() && freq.flush();
}

namespace {

std::u16string asText(char16_t c) { return std::u16string(1, c); }
const std::u16string& asText(const std::u16string& s) { return s; }

template <typename Map>
bool writeCounts(const std::string& path, const Map& counts, long minCount) {
    std::vector<std::pair<long, std::u16string>> rows;
    for (const auto& c : counts)
        if (c.second >= minCount) rows.emplace_back(-c.second, asText(c.first));
    std::sort(rows.begin(), rows.end());
    std::ofstream out(path);
    for (const auto& r : rows) out << toUtf8(r.second.data(), r.second.size()) << '\t' << -r.first << '\n';
    return static_cast<bool>(out.flush());
}

}  // namespace

std::map<std::u16string, long> PersonNameTrainer::contextWords(
    const std::map<std::u16string, long>& next) const {
    std::map<std::u16string, long> kept;
    for (const auto& w : next) {
        const auto all = m_wordCount.find(w.first);
        if (w.first.size() <= 3 && w.second >= kContextMinCount && all != m_wordCount.end() &&
            w.second >= kContextMinShare * all->second)
            kept.insert(w);
    }
    return kept;
}

bool PersonNameTrainer::writeLists() const {
    std::vector<std::pair<long, std::u16string>> family;
    for (const auto& f : m_family) family.emplace_back(-f.second, f.first);
    std::sort(family.begin(), family.end());
    std::ofstream out(m_opt.outDir + "/family_names.txt");
    for (const auto& f : family)
        out << toUtf8(f.second.data(), f.second.size()) << '\t' << -f.first << '\n';
    if (!out.flush()) return false;
    std::map<char16_t, long> foreign;
    for (const auto& f : m_foreign) {
        const auto all = m_charCount.find(f.first);
        const long total = all == m_charCount.end() ? f.second : all->second;
        if (f.second >= kForeignMinCount && f.second >= kForeignMinShare * total)
            foreign.insert(f);
    }
    return writeCounts(m_opt.outDir + "/given_name_chars.txt", m_given, 2) &&
           writeCounts(m_opt.outDir + "/foreign_name_chars.txt", foreign, 1) &&
           writeCounts(m_opt.outDir + "/name_left_context.txt", contextWords(m_leftContext), 1) &&
           writeCounts(m_opt.outDir + "/name_right_context.txt", contextWords(m_rightContext), 1);
}

int PersonNameTrainer::run() {
    if (!readCorpora()) return 1;
    buildEvents();
    if (m_events.empty()) {
        fail("no events");
        return 1;
    }
    train();
    if (!writeModel() || !writeLists()) {
        fail("cannot write the model files into " + m_opt.outDir);
        return 1;
    }
    return 0;
}

}  // namespace zeg_tools
