#ifndef ZEG_WS_POS_WSTAGINFO_H
#define ZEG_WS_POS_WSTAGINFO_H

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace ws {

// The tag set and tag statistics of the trigram tagger. Tags are numbered
// 1..T in the byte order of their names; vectors and matrices are indexed
// by id - 1, a bigram (a, b) at (a-1)*T + (b-1), a trigram (a, b, c) at
// ((a-1)*T + (b-1))*T + (c-1). Probabilities after smoothing are natural
// logarithms.
//
// Binary block (little-endian, written by write, used in place by
// loadFromMem):
//   0            4            T
//   4            4            B, size of the name buffer (a multiple of 4)
//   8            B            NUL-terminated names, one after another
//   8+B          4T           offset of each name in the buffer
//   8+B+4T       512          first-character index: entry c is the
//                             smallest id whose name starts with byte c
//   520+B+4T     4*calcBufLen(T)  floats: tag frequencies [T], tag
//                probabilities [T], initial log probabilities [T], bigram
//                log transitions [T*T], bigram frequencies [T*T], trigram
//                transitions [T^3], smoothed trigram log transitions [T^3]
//
// Built from five text files (loadTagInfo) or loaded from memory; a failed
// load of either kind leaves the object empty. Move-only: the parts point
// into its own storage or into the loaded buffer.
// Thread safety: read-only after loading, may then be shared by threads.
class TagInfo {
public:
    static const int kIndexSize = 128;
    static const int kFixedBytes = 8 + 4 * kIndexSize;  // 520
    // Unseen events: ln of this is the floor of every log probability.
    static constexpr double kFloorProb = 0.000001;

    TagInfo() = default;
    TagInfo(TagInfo&&) = default;
    TagInfo& operator=(TagInfo&&) = default;
    TagInfo(const TagInfo&) = delete;
    TagInfo& operator=(const TagInfo&) = delete;

    // Floats of the block for T tags: 2T^3 + 2T^2 + 3T.
    static int64_t calcBufLen(int numTags);

    // Builds the model from the five files in this order, stopping at the
    // first failure: 0, or -1 (with the reason on the error stream).
    int loadTagInfo(const char* tagNames, const char* tagFreq, const char* initTags,
                    const char* bigrams, const char* trigrams);
    // The five steps of loadTagInfo, each 0 on success and -1 on failure.
    // Names must come first; they must be in strictly rising byte order.
    // Lines with the wrong number of fields, an unknown tag or a count that
    // is not a positive integer are reported as FILE:LINE and skipped.
    int loadTagNames(const char* path);
    int loadTagFreqFile(const char* path);
    int loadInitialTagFile(const char* path);
    int loadBigramTagFile(const char* path);
    // Also smooths: the bigram transitions become their logarithms (floored
    // at ln kFloorProb) and the smoothed trigram table is filled.
    int loadTrigramTagFile(const char* path);

    // Makes an owned, zeroed model for `numTags` tags and a name buffer of
    // `nameBufSize` bytes (rounded up to a multiple of 4). 0, or -1 when a
    // size is below 1 or T is above 127 (tag ids are stored in signed bytes).
    int initTagInfo(int numTags, int nameBufSize);

    // Writes the binary block; 0, or -1 on a write error or an empty model.
    int write(std::FILE* fp) const;
    // Uses the block at `buf` (4-byte aligned; must outlive the model) in
    // place. Returns the bytes it takes, or -1 when `size` is below 520, T
    // or B is below 1, T is above 127, a part runs past `size`, the buffer
    // is misaligned, or a name or index entry is out of range.
    int64_t loadFromMem(const char* buf, int64_t size);
    void clear();

    bool isInitialized() const { return m_init; }
    int getNumTags() const { return m_numTags; }
    // The name of tag `id`, or null unless 1 <= id <= T.
    const char* getTagName(int id) const;
    // The id of `name`, or -1 (also for null, empty and non-ASCII names).
    int getTagId(const char* name) const;
    // Frequency of tag `id`, 0 outside 1..T.
    float getTagFreq(int id) const;

    // The seven parts of the float block (null when empty).
    const float* getTagFreqVector() const { return m_tagFreq; }
    const float* getTagProbVector() const { return m_tagProb; }
    const float* getInitTagProbVector() const { return m_initProb; }
    const float* getBigramTagTransProbMatrix() const { return m_bigramTrans; }
    const float* getBigramTagFreqMatrix() const { return m_bigramFreq; }
    const float* getTrigramTagTransProbMatrix() const { return m_trigramTrans; }
    const float* getSmoothedTrigramTagTransProbMatrix() const { return m_smoothed; }

    // Prints the tag names and frequencies, starting with "NumTags:".
    void dumpTagInfo(std::FILE* out) const;

private:
    // Points the seven parts into the float block `base`.
    void setVectors(float* base);
    // One usable line of a count file: the count and up to three tag ids.
    struct CountLine {
        double count;
        int tags[3];
    };
    // The usable lines of `path` (fields: a count, then `arity` tag names).
    // -1 when the model has no tags or the file cannot be opened or read
    // ("cannot open <what> file: PATH").
    int loadCounts(const char* path, const char* what, int arity, const std::string& delims,
                   std::vector<CountLine>& lines) const;
    void smooth();

    bool m_init = false;
    int m_numTags = 0;
    int m_nameBufSize = 0;
    const char* m_names = nullptr;
    std::vector<int32_t> m_nameOffsets;
    std::vector<int32_t> m_index;  // kIndexSize entries
    float* m_tagFreq = nullptr;
    float* m_tagProb = nullptr;
    float* m_initProb = nullptr;
    float* m_bigramTrans = nullptr;
    float* m_bigramFreq = nullptr;
    float* m_trigramTrans = nullptr;
    float* m_smoothed = nullptr;
    // Owned storage; empty when the model points into a loaded buffer.
    std::vector<char> m_nameStore;
    std::vector<float> m_floatStore;
};

}  // namespace ws

#endif
