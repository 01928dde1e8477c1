#include "ws/algo/wsSpaceProcessor.h"

#include <new>

#include "ws/algo/wsRuleText.h"
#include "ws/core/wsHot.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsUtility.h"
#include "ws/core/wsWsLogger.h"

namespace ws {

namespace {

const char kSource[] = "wsSpaceProcessor.cpp";

void logAllocationFailure(int line) {
    WsLogger::getWsLogger()->errorPos(kSource, line, "allocate memory fail in %s : %s\n", kSource,
                                      std::to_string(line).c_str());
}

}  // namespace

bool SpaceProcessor::loadText(const std::string& path) {
    std::string members;
    try {
        std::string content;
        if (!RuleText::read(path.c_str(), content)) return false;
        if (RuleText::between(content, "spacelist=", "end#", members) != 0) return false;
    } catch (const std::bad_alloc&) {
        logAllocationFailure(__LINE__);
        return false;
    }
    m_text.swap(members);
    return _doInit();
}

bool SpaceProcessor::_doInit() {
    try {
        std::vector<unsigned char> table(65536, 0);
        std::vector<unsigned short> units;
        RuleText::appendUtf16(m_text, units);
        for (unsigned short u : units) table[u] |= kSpace;
        m_table.swap(table);
        return !units.empty();
    } catch (const std::bad_alloc&) {
        logAllocationFailure(__LINE__);
        return false;
    }
}

int SpaceProcessor::doPreProcess(TextSegmentation& seg) { return removeSpace(seg); }

int SpaceProcessor::doPostProcess(TextSegmentation&) { return -1; }

int SpaceProcessor::removeSpace(TextSegmentation& seg) const {
    const size_t recorded = seg.removedSpaces.size();
    std::vector<unsigned int>* positions = seg.recordRemovedSpaces ? &seg.removedSpaces : nullptr;
    const unsigned int n = _removeSpace(seg.orgText, seg.textLen, seg.spaceFreeText, positions);
    if (n == 0) {
        seg.removedSpaces.resize(recorded);
        return -1;
    }
    if (n != seg.textLen) seg.textLen = seg.spaceFreeLen = n;
    seg.text = seg.spaceFreeText;
    return 0;
}

// Spacing between two Chinese characters carries no meaning; before or
// after Latin letters and digits (full-width ones included) it separates words.
bool SpaceProcessor::_dropRun(unsigned short before, unsigned short after) const {
    return Utility::isHanziChar(before) && !Utility::isQuanAlphaNum(before) &&
           Utility::isHanziChar(after) && !Utility::isQuanAlphaNum(after);
}

WS_HOT unsigned int SpaceProcessor::_removeSpace(const unsigned short* in, unsigned int n,
                                                 unsigned short* out,
                                                 std::vector<unsigned int>* positions) const {
    const auto drop = [positions](unsigned int from, unsigned int to) {
        if (positions != nullptr)
            for (unsigned int k = from; k < to; ++k) positions->push_back(k);
    };
    unsigned int i = 0;
    while (i < n && isSpace(in[i])) ++i;
    drop(0, i);
    unsigned int w = 0;
    while (i < n) {
        if (!isSpace(in[i])) {
            out[w++] = in[i++];
            continue;
        }
        unsigned int end = i;
        while (end < n && isSpace(in[end])) ++end;
        if (end == n || _dropRun(out[w - 1], in[end])) {
            drop(i, end);
        } else {
            drop(i, end - 1);
            out[w++] = in[end - 1];
        }
        i = end;
    }
    return w;
}

WS_HOT int SpaceProcessor::restoreSpace(const TextSegmentation& seg, std::vector<WORD_T>& words,
                                        unsigned int first) const {
    const std::vector<unsigned int>& removed = seg.removedSpaces;
    const unsigned int m = static_cast<unsigned int>(removed.size());
    if (m == 0) return 0;
    // removed[k] - k is the compacted index of the first character kept after
    // the k-th removed space, so k spaces lie before compacted index c while
    // removed[k - 1] - (k - 1) <= c.
    unsigned int before = 0;
    for (size_t i = first; i < words.size(); ++i) {
        WORD_T& w = words[i];
        const unsigned int c = static_cast<unsigned int>(w.word - seg.text);
        while (before < m && removed[before] - before <= c) ++before;
        unsigned int inside = before;
        while (inside < m && removed[inside] - inside < c + w.wordLen) ++inside;
        w.orgWord = seg.orgText + c + before;
        w.orgWordLen = w.wordLen + (inside - before);
    }
    return 0;
}

}  // namespace ws
