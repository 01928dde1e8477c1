#include "tools/GBKTableBuilder.h"

#include <cstdio>
#include <map>

#include "normalize/GBKTable.h"

namespace zeg_tools {

namespace {

// A double-byte GBK code, b1 * 256 + b2.
using Code = unsigned;
// Every character of the code page.
using Characters = std::map<Code, char32_t>;

constexpr Code kNonCharacter = 0xA1F5;
constexpr int kFirstLead = 0x81, kLastLead = 0xFE, kFirstTrail = 0x40, kLastTrail = 0xFE;
// Longer chains than this are taken for loops; the data has none over two.
constexpr int kLongestChain = 16;

int offsetOf(Code code) { return normalize::GBKTableOffset(code >> 8, code & 0xFF); }

void putCell(std::vector<unsigned char>& table, Code code, unsigned value) {
    table[offsetOf(code)] = static_cast<unsigned char>(value >> 8);
    table[offsetOf(code) + 1] = static_cast<unsigned char>(value & 0xFF);
}

unsigned cellValue(const std::vector<unsigned char>& table, Code code) {
    return table[offsetOf(code)] * 256u + table[offsetOf(code) + 1];
}

Characters decodeAll(GBKCodePage& gbk) {
    Characters characters;
    for (int b1 = kFirstLead; b1 <= kLastLead; ++b1) {
        for (int b2 = kFirstTrail; b2 <= kLastTrail; ++b2) {
            char32_t cp = 0;
            if (gbk.decode(b1, b2, cp)) characters[b1 * 256u + b2] = cp;
        }
    }
    return characters;
}

// The cell of a character that is not simplified: its own code, or the
// ASCII equivalent of a full-width form that Translate does not fold itself.
unsigned plainCell(Code code, char32_t cp) {
    const bool fullWidth = cp >= 0xFF01 && cp <= 0xFF5E;
    if (fullWidth && (code >> 8) != 0xA3) return cp - 0xFEE0;
    return code;
}

// Traditional character code -> simplified character code, both in GBK.
std::map<Code, Code> directSimplifications(GBKCodePage& gbk, const Characters& characters,
                                           const T2SMap& t2s) {
    std::map<Code, Code> direct;
    for (const auto& [code, cp] : characters) {
        const auto found = t2s.find(cp);
        Code target = 0;
        if (found != t2s.end() && found->second != cp && gbk.encode(found->second, target))
            direct[code] = target;
    }
    return direct;
}

// Replaces each target that is itself simplified by the end of its chain.
bool followChains(std::map<Code, Code>& direct, std::string& error) {
    std::map<Code, Code> resolved;
    for (const auto& [code, target] : direct) {
        Code end = target;
        int steps = 0;
        for (auto next = direct.find(end); next != direct.end(); next = direct.find(end)) {
            end = next->second;
            if (++steps > kLongestChain) {
                char text[64];
                std::snprintf(text, sizeof text, "simplification chain from 0x%04X loops", code);
                error = text;
                return false;
            }
        }
        resolved[code] = end;
    }
    direct.swap(resolved);
    return true;
}

void appendRow(std::string& out, const std::vector<unsigned char>& table, int b1) {
    constexpr int kCellsPerLine = 8;
    char text[16];
    std::snprintf(text, sizeof text, "    // 0x%02X\n", b1);
    out += text;
    for (int b2 = kFirstTrail; b2 <= kLastTrail; ++b2) {
        const bool lineStart = (b2 - kFirstTrail) % kCellsPerLine == 0;
        const bool lineEnd = (b2 - kFirstTrail) % kCellsPerLine == kCellsPerLine - 1;
        const int at = normalize::GBKTableOffset(b1, b2);
        std::snprintf(text, sizeof text, "0x%02X,0x%02X,", table[at], table[at + 1]);
        out += lineStart ? "    " : " ";
        out += text;
        if (lineEnd || b2 == kLastTrail) out += '\n';
    }
}

}  // namespace

bool buildGBKTable(GBKCodePage& gbk, const T2SMap& t2s, std::vector<unsigned char>& table,
                   std::string& error) {
    const Characters characters = decodeAll(gbk);
    std::map<Code, Code> simplified = directSimplifications(gbk, characters, t2s);
    if (!followChains(simplified, error)) return false;

    std::vector<unsigned char> built(normalize::kGBKTableBytes);
    for (int b1 = kFirstLead; b1 <= kLastLead; ++b1)
        for (int b2 = kFirstTrail; b2 <= kLastTrail; ++b2)
            putCell(built, b1 * 256u + b2, kNonCharacter);
    for (const auto& [code, cp] : characters) putCell(built, code, plainCell(code, cp));
    for (const auto& [code, target] : simplified) putCell(built, code, target);
    table.swap(built);
    return true;
}

CellCounts countCells(const std::vector<unsigned char>& table) {
    CellCounts counts;
    for (int b1 = kFirstLead; b1 <= kLastLead; ++b1) {
        for (int b2 = kFirstTrail; b2 <= kLastTrail; ++b2) {
            const Code code = b1 * 256u + b2;
            const unsigned value = cellValue(table, code);
            if (value == code)
                ++counts.identity;
            else if (value < 0x100)
                ++counts.ascii;
            else if (value == kNonCharacter)
                ++counts.nonCharacters;
            else
                ++counts.simplified;
        }
    }
    return counts;
}

std::string writeGBKTableSource(const std::vector<unsigned char>& table) {
    std::string out =
        "// Generated by tools/gen_gbk_table from iconv's GBK code page and OpenCC's\n"
        "// traditional-to-simplified character table; see tools/README.md. Do not edit.\n"
        "#include \"normalize/GBKTable.h\"\n"
        "\n"
        "namespace normalize {\n"
        "\n"
        "const unsigned char tbGBK_T2GBK_S[kGBKTableBytes] = {\n";
    for (int b1 = kFirstLead; b1 <= kLastLead; ++b1) appendRow(out, table, b1);
    out += "};\n\n}  // namespace normalize\n";
    return out;
}

}  // namespace zeg_tools
