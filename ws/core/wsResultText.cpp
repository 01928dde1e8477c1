#include "ws/core/wsResultText.h"

#include <algorithm>
#include <cstdio>

#include "ws/core/wsEncodeConverter.h"
#include "ws/core/wsHot.h"
#include "ws/core/wsPosTagger.h"
#include "ws/core/wsPropertyDict.h"
#include "ws/core/wsUtility.h"

namespace ws {

namespace {
const unsigned short kNameProps = WS_PROPERTY_PER_RULE | WS_PROPERTY_PER_ME;
}

bool ResultText::_append(const unsigned short* text, unsigned int units) {
    // Converted in place at the end of the text: no bounce buffer.
    const size_t old = m_text.size();
    const size_t room = 3 * static_cast<size_t>(units) + 1;
    m_text.resize(old + room);
    const int bytes = EncodeConverter::utf16ToUtf8(
        text, units, reinterpret_cast<unsigned char*>(&m_text[old]), room);
    m_text.resize(bytes < 1 ? old : old + static_cast<size_t>(bytes));
    return bytes >= 1 || units == 0;
}

int ResultText::renderPlain(const std::vector<WORD_T>& words, bool original,
                            PosTagger* tagger) {
    m_text.clear();
    if (tagger == nullptr) return _renderUntagged(words, original);
    int skipped = 0;
    for (const WORD_T& w : words) {
        const bool fromOrg = original && w.orgWord != nullptr;
        if (!_append(fromOrg ? w.orgWord : w.word, fromOrg ? w.orgWordLen : w.wordLen)) {
            ++skipped;
            continue;
        }
        if (tagger != nullptr && !(w.wordLen == 1 && Utility::isSpaceChar(w.word[0]))) {
            const char* tag = tagger->getTagName(w.tag);
            m_text.append("/").append(tag != nullptr ? tag : "");
        }
        m_text.push_back(' ');
    }
    return skipped;
}

// Words and spaces only: sized once, written in place.
WS_HOT int ResultText::_renderUntagged(const std::vector<WORD_T>& words, bool original) {
    size_t room = 0;
    for (const WORD_T& w : words) {
        const bool fromOrg = original && w.orgWord != nullptr;
        room += 3 * static_cast<size_t>(fromOrg ? w.orgWordLen : w.wordLen) + 2;
    }
    m_text.resize(room);
    auto* out = reinterpret_cast<unsigned char*>(&m_text[0]);
    size_t n = 0;
    int skipped = 0;
    for (const WORD_T& w : words) {
        const bool fromOrg = original && w.orgWord != nullptr;
        const unsigned int units = fromOrg ? w.orgWordLen : w.wordLen;
        const unsigned short* text = fromOrg ? w.orgWord : w.word;
        if (units <= kDirectUnits) {
            // The room is there: the run's own checks would only repeat it.
            for (unsigned int k = 0; k < units; ++k)
                n += static_cast<size_t>(EncodeConverter::utf16ToUtf8(text + k, out + n));
            out[n++] = ' ';
            continue;
        }
        const int bytes =
            EncodeConverter::utf16ToUtf8(text, units, out + n, 3 * static_cast<size_t>(units) + 1);
        if (bytes < 1) {
            ++skipped;
            continue;
        }
        n += static_cast<size_t>(bytes);
        out[n++] = ' ';
    }
    m_text.resize(n);
    return skipped;
}

int ResultText::renderWeighted(const std::vector<WORD_T>& words, const PropertyDict& types) {
    m_text.clear();
    int skipped = 0;
    char buf[64];
    for (const WORD_T& w : words) {
        if (!_append(w.word, w.wordLen)) {
            ++skipped;
            continue;
        }
        if (w.types.empty() && (w.prop & (kNameProps | WS_PROPERTY_ORG)) == 0 &&
            w.semItems.empty()) {
            m_text.push_back(' ');
            continue;
        }
        m_text.append("[|");
        for (const WordType& t : w.types) {
            const char* name = types.getName(t.type);
            std::snprintf(buf, sizeof buf, "%s@%-2.1f", name != nullptr ? name : "", t.weight);
            m_text.append("/").append(buf).push_back(' ');
        }
        if (w.prop & kNameProps) m_text.append("/NR ");
        if (w.prop & WS_PROPERTY_ORG) m_text.append("/NT ");
        for (const SemItem& s : w.semItems) {
            m_text.push_back('#');
            if (s.offset + s.length <= w.wordLen) _append(w.word + s.offset, s.length);
            m_text.push_back(' ');
        }
        m_text.append("|] ");
    }
    return skipped;
}

}  // namespace ws
