#include "ws/algo/wsChunker.h"

#include <climits>
#include <new>

#include "ws/algo/wsRuleText.h"
#include "ws/core/wsPrefault.h"
#include "ws/core/wsWsLogger.h"

namespace ws {

namespace {

const char kSource[] = "wsChunker";
const unsigned int kTableSize = 65536;

}  // namespace

Chunker::Chunker() : m_chunkSize(UINT_MAX) {}

bool Chunker::loadText(const std::string& path) {
    std::string members;
    try {
        std::string content;
        if (!RuleText::read(path.c_str(), content)) return false;
        if (RuleText::between(content, "delimiterlist=", "end#", members) != 0) return false;
    } catch (const std::bad_alloc&) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "allocate memory fail!\n");
        return false;
    }
    m_text.swap(members);
    return _doInit();
}

bool Chunker::_doInit() {
    try {
        std::vector<unsigned char> table;
        assignPrefaulted(table, kTableSize, static_cast<unsigned char>(0));
        std::vector<unsigned short> units;
        RuleText::appendUtf16(m_text, units);
        for (unsigned short u : units) table[u] |= kDelimiter;
        m_table.swap(table);
        return !units.empty();
    } catch (const std::bad_alloc&) {
        std::vector<unsigned char>().swap(m_table);
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "allocate memory fail!\n");
        return false;
    }
}

void Chunker::setChunkSize(unsigned int size) {
    if (size == 0) {
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__,
                                          "chunk size 0 refused, keeping %u\n", m_chunkSize);
        return;
    }
    m_chunkSize = size;
}

unsigned int Chunker::getChunks(const unsigned short* text, unsigned int n,
                                std::vector<CHUNK_T>& chunks) const {
    chunks.clear();
    try {
        chunks.reserve(n / 10 + 1);
        if (n == 0 || text == nullptr) return 0;
        _cut(text, n, chunks);
    } catch (const std::bad_alloc&) {
        chunks.clear();
        WsLogger::getWsLogger()->errorPos(kSource, __LINE__, "allocate memory fail!\n");
        return 0;
    }
    return static_cast<unsigned int>(chunks.size());
}

void Chunker::_cut(const unsigned short* text, unsigned int n,
                   std::vector<CHUNK_T>& chunks) const {
    unsigned int s = 0;
    unsigned int k = 1;
    while (s < n) {
        // The end comes first: the last chunk may be one over the size.
        if (k >= n - s) {
            chunks.push_back({text + s, n - s});
            return;
        }
        if (k <= m_chunkSize) {
            if (checkWord(text[s + k - 1])) {
                chunks.push_back({text + s, k});
                s += k;
                k = 1;
            } else {
                ++k;
            }
        } else {
            chunks.push_back({text + s, m_chunkSize});
            s += m_chunkSize;
            k = 1;
        }
    }
}

}  // namespace ws
