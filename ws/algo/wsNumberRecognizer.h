#ifndef ZEG_WS_ALGO_WSNUMBERRECOGNIZER_H
#define ZEG_WS_ALGO_WSNUMBERRECOGNIZER_H

#include <string>
#include <vector>

#include "ws/core/wsRecognizer.h"

namespace ws {

struct TextSegmentation;

// Finds runs of Latin letters, of digits with their separators and end signs,
// of letters mixed with digits, and of Chinese numerals. Every UTF-16 code
// unit belongs to the character classes a rule file gives it:
//   english_letter=  Latin letter                    (class bit 1)
//   number_mid=      separator inside a run; never ends one (2)
//   english_number=  digit                           (4)
//   number_end=      sign that may end a number      (8)
//   chinese_numble=  Chinese numeral                 (16)
//   chinese_mid1=    first of a joining pair         (32)
//   chinese_mid2=    second of a joining pair        (64)
// Each key is followed by its members and "end#" (see RuleText); a key
// missing from the file leaves its class empty. A run found gets one of the
// properties WS_PROPERTY_NUM, WS_PROPERTY_LET, WS_PROPERTY_LETNUM and
// WS_PROPERTY_CHINESE_NUM. Lengths and positions count UTF-16 code units.
// Not copyable. Thread safety: once loaded it is only read, so several
// threads may share it, each with its own TextSegmentation; init and close
// need exclusive use.
class NumberRecognizer : public Recognizer {
public:
    // Runs longer than this are not numeric expressions.
    static constexpr int kMaxRunLength = 64;

    NumberRecognizer() = default;
    ~NumberRecognizer() override;

    // Fills the four new-word buffers of `seg` (by the indices given to
    // init; an index that names no buffer is skipped) with the runs of
    // 1 to kMaxRunLength code units, scanning left to right without
    // overlaps. A record gets its length only; a buffer whose count has a
    // zero lowest byte gets count 1. Returns 0. Allocates nothing.
    int doRecognize(TextSegmentation& seg) override;

    // Appends WS_PROPERTY_NUM, _LET, _LETNUM and _CHINESE_NUM; returns 4.
    int getProperty(std::vector<unsigned short>& props) override;

    // Frees the class table; every character is then classless.
    virtual void close();

    // Loads the classes from the UTF-8 rule file at `path` (replacing any
    // loaded before) and keeps the indices of the new-word buffers for
    // numbers, letters, letters with digits and Chinese numerals (-1: none).
    // Lines that no class claims are logged as "FILE:LINE: reason".
    // Returns 0; -1 when the file cannot be opened, is empty or holds no
    // class with its end mark (the old classes stay); -2 when memory runs out (no classes are left).
    int init(const char* path, int numIdx, int letIdx, int letnumIdx, int chineseNumIdx);

    // Appends to `out` the code units of the members that `key` lists in
    // `content` up to `endMark` (RuleText::between). Returns the number
    // appended; -1 when `key` is absent, -2 when `endMark` is. Throws
    // std::bad_alloc.
    static int getmiddle(const std::string& content, const std::string& key,
                         const std::string& endMark, std::vector<unsigned short>& out);
    static int getmiddle(const std::string& content, const std::string& key,
                         const std::string& endMark, std::vector<unsigned int>& out);

    // The length of the run that starts at `pos` of `seg`'s text, and its
    // property in `type`. A position with no run, or a run longer than
    // kMaxRunLength, is one plain character: 1, with `type` 1. 0, `type`
    // untouched, for an empty text or a position outside it. Allocates
    // nothing.
    int doMaxMatch(TextSegmentation& seg, int pos, unsigned short& type);

private:
    struct Run {
        unsigned int len;
        unsigned short prop;
    };

    // The class bits of code unit u; 0 without a table and for 0xFFFF.
    unsigned char _cls(unsigned short u) const {
        return u < m_table.size() ? m_table[u] : 0;
    }
    // The run that starts at s of text[0, n); len 0 when none does.
    Run _run(const unsigned short* text, unsigned int n, unsigned int s) const;
    // Advances p over the characters of text[p, n) with any of `bits`.
    unsigned int _skip(const unsigned short* text, unsigned int n, unsigned int p,
                       unsigned char bits) const;
    // Steps p back over separators, not past s.
    unsigned int _dropSeparators(const unsigned short* text, unsigned int s,
                                 unsigned int p) const;
    unsigned int _letterRun(const unsigned short* text, unsigned int n, unsigned int s,
                            unsigned short& prop) const;
    unsigned int _digitRun(const unsigned short* text, unsigned int n, unsigned int s,
                           unsigned short& prop) const;
    unsigned int _chineseRun(const unsigned short* text, unsigned int n, unsigned int s) const;
    // Records a run at s in the new-word buffer with index `idx`.
    static void _record(TextSegmentation& seg, int idx, unsigned int s, unsigned int len);

    std::vector<unsigned char> m_table;  // one entry per code unit 0 .. 0xFFFE once loaded
    int m_numIdx = -1;
    int m_letIdx = -1;
    int m_letnumIdx = -1;
    int m_chineseNumIdx = -1;
};

}  // namespace ws

#endif
