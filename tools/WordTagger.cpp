#include "tools/WordTagger.h"

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsUtility.h"
#include "ws/core/wsWsConfig.h"

namespace zeg_tools {

namespace {

// A cell holds a length of 8 bits: longer words are tagged in pieces.
const unsigned kMaxCell = 255;

}  // namespace

WordTagger::WordTagger() = default;
WordTagger::~WordTagger() = default;

bool WordTagger::init(const char* configPath, std::string& error) {
    ws::WsConfig config;
    if (!config.init(configPath)) {
        error = std::string("cannot read ") + configPath;
        return false;
    }
    std::vector<std::string> users;
    ws::Utility::splitLine(config.getString("USER_DICTIONARY", ""), " ;", users);
    if (m_dicts.loadDict(config.getString("BASE_DICTIONARY", ""),
                         config.getString("ALNUM_DICTIONARY", ""), users) != 0) {
        error = "cannot load the dictionaries named by " + std::string(configPath);
        return false;
    }
    m_tagger.reset(new ws::TrigramPosTagger(&m_dicts));
    if (!m_tagger->init(config)) {
        error = "cannot load the part-of-speech tagger named by " + std::string(configPath);
        return false;
    }
    return true;
}

void WordTagger::addWord(const std::string& utf8) {
    const size_t start = m_text.size();
    m_text.resize(start + utf8.size() + 1);
    const int n = EncodeConverter::utf8ToUtf16(reinterpret_cast<const unsigned char*>(utf8.data()),
                                               utf8.size(), m_text.data() + start, utf8.size() + 1);
    m_text.resize(start + static_cast<size_t>(n > 0 ? n : 0));
    for (size_t at = start; at < m_text.size(); at += kMaxCell) {
        const unsigned len = static_cast<unsigned>(std::min<size_t>(kMaxCell, m_text.size() - at));
        m_spans.push_back(Span{static_cast<unsigned>(at), len});
    }
}

const std::string& WordTagger::tagLine(const std::string& line) {
    m_text.clear();
    m_spans.clear();
    ws::Utility::splitLine(line, " \t\r\n", m_words);
    for (const std::string& w : m_words) addWord(w);
    m_out.clear();
    const unsigned len = static_cast<unsigned>(m_text.size());
    if (len == 0) return m_out;
    m_work1.resize(len);
    m_work2.resize(len);
    m_seg.init(m_text.data(), m_work1.data(), m_work2.data(), len);
    // Fresh cells are ordinary words without dictionary ids: the tagger
    // looks unknown words up itself.
    for (const Span& s : m_spans)
        m_seg.result.cells[s.start].len = static_cast<unsigned char>(s.len);
    m_tagger->annotate(m_seg);
    for (const Span& s : m_spans) {
        const auto utf8 = EncodeConverter::utf16ToUtf8(
            EncodeConverter::Utf16String(m_text.data() + s.start, m_text.data() + s.start + s.len));
        const char* tag = m_tagger->getTagName(m_seg.result.cells[s.start].tag);
        m_out.append(reinterpret_cast<const char*>(utf8.data()), utf8.size());
        m_out.append("/").append(tag != nullptr ? tag : "").append(" ");
    }
    return m_out;
}

}  // namespace zeg_tools
