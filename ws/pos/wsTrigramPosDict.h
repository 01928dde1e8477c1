#ifndef ZEG_WS_POS_WSTRIGRAMPOSDICT_H
#define ZEG_WS_POS_WSTRIGRAMPOSDICT_H

#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ws/core/wsWordRecord.h"
#include "ws/dict/wsBaseDict.h"
#include "ws/dict/wsDoubleTrie.h"
#include "ws/dict/wsMMap.h"
#include "ws/pos/wsTagInfo.h"

namespace ws {

class WsDictSet;

// The candidate tags of each word, with log scores, for the trigram tagger.
//
// A tag list (the unit the tagger reads), n tags:
//   0                 1    n
//   1                 n    tag ids, signed bytes, 1..T
//   4*((n+4)/4)       4n   scores, float32 natural logs, same order
// It takes calcDataLen(n) = 4*((n+4)/4 + n) bytes. Lists are sorted by
// descending score.
//
// File (little-endian): the TagInfo block, D (int32 >= 1, the list area's
// size), the list area (D bytes; its first 4 bytes are unused so that no
// list sits at offset 0, which the trie cannot tell from "absent"), then a
// DoubleTrie section from UTF-16LE word bytes to list offsets.
//
// Known words get their trained list; others are guessed (guessWordInfo)
// from the dictionary set's properties mapped through the type-id-to-tag
// file, from the word's property bits, or from fixed defaults. The patch
// dictionary (a BaseDict from UTF-16LE word bytes to a tag id) overrides
// both: a patched word gets exactly that one tag.
//
// Guess lists live in three rotating buffers, so the lists of the last
// three words asked for stay valid together; that makes lookups stateful.
// Not copyable. Thread safety: one tagging call at a time.
class TrigramPosDict {
public:
    static const int kGuessBytes = 200;
    static const int kMaxGuessTags = 39;  // the largest n with calcDataLen(n) <= 200
    static const int kAreaStart = 4;
    static constexpr float kNewWordScore = -13.8155f;  // ln 0.000001

    // `dicts` (not owned; may be null) feeds the guesses.
    explicit TrigramPosDict(WsDictSet* dicts);
    ~TrigramPosDict();
    TrigramPosDict(const TrigramPosDict&) = delete;
    TrigramPosDict& operator=(const TrigramPosDict&) = delete;

    // ---- loading; a failed load leaves the dictionary empty ----

    // Maps `path` and uses it in place. 0, or -1 (cannot map / bad tag
    // model), -2 (D past the end), -4 (D < 1), -5 (bad trie section).
    int loadDict(const char* path);
    // Uses `size` bytes at `buf` (4-byte aligned, must outlive the
    // dictionary) in place; codes as loadDict.
    int _loadFromMem(const char* buf, unsigned size);
    // Loads the patch BaseDict: its loadDict result, or -6 when it cannot be
    // created. An empty path loads nothing and returns 0.
    int loadPatchDict(const char* path);
    // Reads "ID TAG" lines (a dictionary property id and a tag name). Lines
    // without exactly two fields, with a bad id or an unknown tag are
    // reported as FILE:LINE and skipped. 0, or -1 when the file cannot be
    // opened ("can not open TypeIdTag File") or read. Needs the tag model.
    int loadTypeId2TagNameFile(const char* path);
    // Builds from text: TagInfo::loadTagInfo, then the word-tags file, whose
    // lines are "WORD TAG/COUNT TAG/COUNT ...". 0 or -1.
    int loadFromFiles(const char* tagNames, const char* tagFreq, const char* initTags,
                      const char* bigrams, const char* trigrams, const char* wordTags);
    // Writes the file; 0, or -1 (cannot open / empty) or -7 (write error).
    int writeDict(const char* path) const;
    int writeDict(std::FILE* fp) const;
    void clear();

    // ---- lookups ----

    // The tag list of a word (`len` UTF-16 units): the patched tag, the
    // trained list, or a guess. `rec` (may be null) gives the word's
    // property bits and dictionary id for the guess. Never empty once a tag
    // model is loaded; the list is valid until three more lookups.
    const char* getWordInfoBuf(const unsigned short* word, int len, const WORD_T* rec);
    // As above for UTF-8 text of `len` bytes.
    const char* getWordInfoBuf(const char* utf8, int len, const WORD_T* rec);
    // A guessed list, in the next guess buffer.
    const char* guessWordInfo(const unsigned short* word, int len, const WORD_T* rec);

    // Fills the new-word list: T entries, ids 0..T-1, score kNewWordScore.
    void setNewWordTags(int numTags);
    const char* getNewWordTags() const { return m_newWordTags.data(); }
    // Adds `score` to `tag` in the current guess list (inserting it after
    // the entries scoring at least as much) and keeps the list sorted.
    // Returns the list length; an insertion past kMaxGuessTags is dropped.
    int setTagId(int tag, float score);
    // The current guess list becomes n 10, ns -7, nt -9, nr -11, v -10,
    // a -11, in that order (tags missing from the model are left out).
    void setDefaultProbs();

    static int calcDataLen(int n) { return 4 * ((n + 4) / 4 + n); }
    static int getNumTags(const char* list) {
        return list != nullptr ? static_cast<unsigned char>(list[0]) : 0;
    }
    static int getTagIdAt(const char* list, int i) { return static_cast<signed char>(list[1 + i]); }
    static float getProbAt(const char* list, int i);

    const TagInfo& getTagInfo() const { return m_tagInfo; }
    const char* getTagName(int id) const { return m_tagInfo.getTagName(id); }
    int getTagId(const char* name) const { return m_tagInfo.getTagId(name); }
    const char* getTrieErr() const { return m_trie->get_err(); }
    const char* getPatchTrieErr() const { return m_patch ? m_patch->getTrieErr() : ""; }
    size_t typeMapSize() const { return m_typeToTag.size(); }

private:
    // The trained list at trie value `offset` if it is whole and sound.
    const char* listAt(int offset) const;
    const char* patchedList(const unsigned short* word, int len);
    char* nextGuessBuffer();
    void guessFromDictionary(const unsigned short* word, int len, const WORD_T* rec);
    void guessFromProperty(unsigned short prop);
    void guessFromText(const unsigned short* word, int len);
    // Words read by loadFromFiles, before they become the list area.
    struct WordTags;
    int readWordTags(const char* path, std::vector<WordTags>& words) const;

    TagInfo m_tagInfo;
    std::unique_ptr<DoubleTrie> m_trie;
    const char* m_area = nullptr;
    int32_t m_areaSize = 0;
    std::vector<char> m_areaStore;  // the list area when built from text
    std::vector<char> m_newWordTags;
    std::unique_ptr<BaseDict> m_patch;
    int m_guessIndex = -1;
    alignas(4) char m_guess[3][kGuessBytes] = {};
    std::map<int, std::string> m_typeToTag;
    std::map<int, int> m_typeToTagId;
    std::unique_ptr<MMap> m_map;
    WsDictSet* m_dicts;
    // Reused by the guesses so that a warm lookup allocates nothing.
    std::vector<short> m_props;
    std::vector<float> m_weights;
};

}  // namespace ws

#endif
