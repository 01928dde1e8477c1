#ifndef ZEG_WS_DICT_WSMAXENTDICT_H
#define ZEG_WS_DICT_WSMAXENTDICT_H

#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

#include "ws/dict/wsDoubleTrie.h"
#include "ws/dict/wsMMap.h"

namespace ws {

// The weights (alphas) of the maximum-entropy character tagger that finds
// person names. A feature is a character context: one character (key of 2
// bytes, UTF-16LE) or two (4 bytes) at some position around the character
// being tagged. Each key has a 20-byte record: the alpha of feature group
// g (0 .. 4) and label l (0 .. 3) at byte l + 4 * g, coded in one byte on a
// logarithmic scale between the smallest and the largest alpha
// (code = floor((ln a - ln min) / step), step = (ln max - ln min) / 255,
// clamped to 0 .. 254; 255 means "no alpha"). Slots a key never got hold
// the default alpha's code; an unknown key reads as the default record.
// A tagger adds the codes of its twelve features per label and turns the
// sum s back into the product of the alphas with codeSum(s)
// = exp(s * step + 12 * ln min).
//
// Templates 0 .. 11 of the frequency file map to groups by kTemplateGroup.
//
// File (little-endian, packed):
//   0      4       record capacity N (int32)
//   4      4       records used (int32, from 1; record 0 is never a key's)
//   8      4       longest key (bytes)
//   12     8       default alpha (float64)
//   20     104     its powers 0 .. 12 (float64)
//   124    20      the default record
//   144    12      min alpha, max alpha, step (float32)
//   156    4       code of the default alpha (int32)
//   160    24480   code-sum table: 3060 float64
//   24640  8192    character bits (bit c & 7 of byte c >> 3): characters
//                  that are features of template 0 with label 0
//   32832  256     reserved
//   33088  20 N    records
//   ...            key trie (a DoubleTrie section) to record indices
//
// Built from text by buildDict, or loaded: copied from a stream, used in
// place from a buffer, or mapped read-only from a file. Loaded bytes are
// not trusted: counts are checked against the bytes there are, a trie
// value outside the records reads as an unknown key, and codes are bytes
// whose twelve-fold sum stays inside the code-sum table.
//
// Load error codes (WsErrorCode): -1 cannot open / counts that do not fit,
// -2 shorter than the header, -5 a damaged trie section; writes give -1
// (cannot open) or -7.
//
// Not copyable (owns its records, trie and mapping). Thread safety: a
// loaded model is only read and may be shared by threads; building and
// loading need exclusive use.
class MaxentDict {
public:
    static constexpr int kLabels = 4;
    static constexpr int kGroups = 5;
    static constexpr int kRecordSize = kLabels * kGroups;
    static constexpr int kTemplates = 12;
    static constexpr int kPowers = 13;
    static constexpr int kCodeSums = 3060;  // 12 codes of at most 254, and room
    static constexpr unsigned char kNoAlpha = 255;
    static constexpr int kRecordStep = 1024;
    static constexpr unsigned kHeaderBytes = 32832;
    static constexpr unsigned kReservedBytes = 256;
    static constexpr unsigned kRecordsOffset = kHeaderBytes + kReservedBytes;
    static constexpr int kAlphaStep = 100;
    static constexpr int kMaxFeatureId = 1 << 26;  // keeps a bad id from asking for gigabytes
    static const int kTemplateGroup[kTemplates];

    MaxentDict();
    virtual ~MaxentDict();
    MaxentDict(const MaxentDict&) = delete;
    MaxentDict& operator=(const MaxentDict&) = delete;

    // Reads the alphas at `alphaPath` and the features at `freqPath`, sets
    // the coding from the smallest and largest alpha and the default alpha
    // from the last feature id, and writes the model to `outPath`. False,
    // logged, when a file cannot be read or written.
    bool buildDict(const char* freqPath, const char* alphaPath, const char* outPath);

    // Reads "<feature id> <alpha>" lines (ids from 1; lines that do not give
    // both, give a negative or too large id, or an alpha that is not a
    // positive float, are logged and skipped),
    // replacing any alphas read before. Returns the last id read, or -1 when
    // the file cannot be opened.
    int loadAlphaFromText(const char* path);
    // Reads "<feature id> <frequency> <label> <key> <template>" lines and
    // adds each key's alpha (alphas must be loaded). Keys of one or two
    // characters are added; longer ones are logged and skipped, as are lines
    // that do not parse or name an unknown id, label or template. 0, or -1
    // (no alphas, cannot open, an add that does not stick).
    int loadFreqFromText(const char* path);

    // Copies kCodeSums values into the code-sum table.
    void setI2FTable(const double* table);
    // Default alpha, its powers, its code and the default record.
    void setDefaultFeatureAlpha(double alpha);
    // The one-byte code of `alpha`: 0 .. 254.
    int alphaF2I(float alpha) const;

    // Writes alphaF2I(alpha) at byte `slot` (0 .. 19) of the record of
    // `key` (`len` bytes), adding the key with a fresh record (every slot
    // at the default code) when it is new. Returns the record index; 0 when
    // the model is read-only, `slot` is out of range or memory runs out.
    int add(const char* key, unsigned len, int slot, float& alpha);

    // The record of `key` (`len` bytes); the default record when absent.
    const unsigned char* match(const char* key, unsigned len) const;
    // The record at `index`; the default record for 0 and from used on.
    const unsigned char* operator[](unsigned index) const;
    // match(key, strlen(key)).
    const unsigned char* operator[](const char* key) const;
    // Every prefix of `key` that is a key, as the trie reports it.
    int matchAll(const char* key, unsigned len, TrieBase::MatchInfo* out, unsigned max) const;

    // Loads as described above; 0 or an error code. Buffer and mapped
    // loads use the bytes in place (the buffer must outlive the model); a
    // mapped model is read-only (even when the load fails). A failed load
    // leaves the model empty.
    int loadDict(const char* path);
    int loadDict(std::FILE* fp);
    int loadDict(const char* buffer, unsigned size);
    int writeDict(const char* path);
    int writeDict(std::FILE* fp);

    // The trie's last error text.
    const char* getTrieErr() const;
    // Empties the model (records, trie, coding); the alphas read stay.
    void clearData();

    // Fills the label-pair table: entry (i, j) holds, per label l, 1 + the
    // codes below 255 of group 4 of the key "i" and of group 0 of the key
    // "j" (the labels' digits as one-character keys).
    void buildPOSConditionalProbTable();
    int labelPairSum(int i, int j, int l) const { return m_labelPairs[i][j][l]; }

    // qsort comparator for floats: 1, -1 or 0.
    static int cmpFloat(const void* a, const void* b);

    // exp(s * step + 12 * ln min): the product of alphas whose codes sum to
    // s. REQUIRES: 0 <= s < kCodeSums.
    double codeSum(int s) const { return m_h.i2f[s]; }
    // True when `c` was a template-0 feature with label 0.
    bool isCharFeature(unsigned short c) const { return (m_h.charBits[c >> 3] >> (c & 7)) & 1; }
    const unsigned char* defaultRecord() const { return m_h.defaultRecord; }
    int defaultCode() const { return m_h.defaultCode; }
    double defaultAlpha() const { return m_h.defaultAlpha; }
    double defaultPower(int n) const { return m_h.powers[n]; }
    float minAlpha() const { return m_h.minAlpha; }
    float maxAlpha() const { return m_h.maxAlpha; }
    int capacity() const { return m_h.capacity; }
    int used() const { return m_h.used; }
    unsigned maxKeyBytes() const { return m_h.maxKeyLen; }
    bool isReadOnly() const { return m_readOnly; }

private:
    // Everything before the records, in file order.
    struct Header {
        int32_t capacity = 0;
        int32_t used = 1;
        uint32_t maxKeyLen = 0;
        double defaultAlpha = 1.0;
        double powers[kPowers] = {};
        unsigned char defaultRecord[kRecordSize] = {};
        float minAlpha = 1.0f;
        float maxAlpha = 1.0f;
        float step = 0.0f;
        int32_t defaultCode = 0;
        double i2f[kCodeSums] = {};
        unsigned char charBits[65536 / 8] = {};
        unsigned char reserved[kReservedBytes] = {};
    };
    template <typename H, typename F>
    static void forEachField(H& h, F&& f);

    // Parses a whole model at `data` (`size` bytes) and, when it is sound,
    // commits it pointing into `data`; `keep` and `map` hold the bytes.
    int _parse(const char* data, uint64_t size, std::vector<char> keep,
               std::unique_ptr<MMap> map);
    int _failLoad(int code);
    // Makes the records owned and room for one more; false without memory.
    bool _reserveRecord();
    // One frequency-file line: 1 added, 0 skipped, -1 failed.
    int _addFeature(const char* line, const char* path, unsigned lineNo);
    // Coding from the smallest and largest alpha; false when there is none.
    bool _setCoding();

    Header m_h;
    const unsigned char* m_records = nullptr;    // m_recordStorage, or loaded bytes
    std::vector<unsigned char> m_recordStorage;  // the records once built or added to
    std::vector<char> m_bytes;                   // a stream's bytes, used in place
    std::unique_ptr<DoubleTrie> m_trie;
    std::unique_ptr<MMap> m_map;
    int m_labelPairs[kLabels][kLabels][kLabels] = {};
    bool m_readOnly = false;
    std::vector<float> m_alphas;  // by feature id, from loadAlphaFromText
    int m_lastFeature = -1;
};

}  // namespace ws

#endif
