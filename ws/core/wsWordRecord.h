#ifndef ZEG_WS_CORE_WSWORDRECORD_H
#define ZEG_WS_CORE_WSWORDRECORD_H

#include <vector>

namespace ws {

// Word property bits (`prop`). A word's property is a set of them; each bit a
// recogniser produces also names the new-word buffer that collects it.
constexpr unsigned short WS_PROPERTY_WORD = 1;           // ordinary word; initial value
constexpr unsigned short WS_PROPERTY_NUM = 4;            // number
constexpr unsigned short WS_PROPERTY_PER_RULE = 8;       // person name, rule-based
constexpr unsigned short WS_PROPERTY_PER_ME = 16;        // person name, maximum entropy
constexpr unsigned short WS_PROPERTY_LET = 32;           // run of Latin letters
constexpr unsigned short WS_PROPERTY_LETNUM = 64;        // letters mixed with digits
constexpr unsigned short WS_PROPERTY_ORG = 1024;         // organisation
constexpr unsigned short WS_PROPERTY_CHINESE_NUM = 0x800;  // Chinese numeral

// One weighted type of a word; `type` is an id of the dictionary set's type table.
struct WordType {
    short type;
    float weight;
};

// One sub-word of a word: start and length inside the word, in the word's own
// units (UTF-16 code units in a WORD_T, bytes in a WORD_UTF8_T). Eight bits,
// so they wrap for words longer than 255 units.
struct SemItem {
    unsigned char offset;
    unsigned char length;
};

// One result word over characters of type `Char`. The record never owns text:
// `word` points into the segmented text (or an output buffer), `orgWord` into
// the caller's input, `usrValue` into the dictionary set; all must outlive the
// record. It owns its three lists; copying copies the lists and shares the
// pointers. Thread safety: none; a record is used by one thread at a time.
template <typename Char>
struct WordRecord {
    // Fields 1-9 and 12-13 in declaration order; the lists start empty.
    // A sub-word or piece passes (text, len, nullptr, 0, WS_PROPERTY_WORD, 0, -1,
    // nullptr, 0, 0, -1).
    WordRecord(const Char* word, unsigned int wordLen, const Char* orgWord,
               unsigned int orgWordLen, unsigned short prop, unsigned char tag, int wordId,
               unsigned char* usrValue, unsigned int usrValueLen, unsigned int subWordNum,
               int subWordStart)
        : word(word), wordLen(wordLen), orgWord(orgWord), orgWordLen(orgWordLen), prop(prop),
          tag(tag), wordId(wordId), usrValue(usrValue), usrValueLen(usrValueLen),
          subWordNum(subWordNum), subWordStart(subWordStart) {}

    const Char* word;          // first unit of the word; not owned
    unsigned int wordLen;      // in units of Char
    const Char* orgWord;       // same span in the caller's text; null for sub-words and pieces
    unsigned int orgWordLen;   // wordLen where orgWord is set, else 0
    unsigned short prop;       // WS_PROPERTY_* bits
    unsigned char tag;         // part-of-speech tag id; 0 until tagged
    int wordId;                // dictionary word id; -1 = not a dictionary word
    unsigned char* usrValue;   // the word's user value bytes; not owned; null if none
    unsigned int usrValueLen;  // in bytes
    std::vector<WordType> types;
    std::vector<short> props;  // carried unchanged by every conversion
    unsigned int subWordNum;   // number of children in the next result level
    int subWordStart;          // index of the first child there; -1 = none
    std::vector<SemItem> semItems;
};

// A result word in UTF-16: lengths and sub-word items count code units.
struct WORD_T : WordRecord<unsigned short> {
    using WordRecord::WordRecord;
};

// A result word in UTF-8: `word` points into a caller-supplied output buffer,
// lengths and sub-word items count bytes, `orgWord` is always null.
struct WORD_UTF8_T : WordRecord<char> {
    using WordRecord::WordRecord;
};

}  // namespace ws

#endif
