#ifndef ZEG_WS_POS_WSTRIGRAMPOSTAGGER_H
#define ZEG_WS_POS_WSTRIGRAMPOSTAGGER_H

#include <cstdint>
#include <memory>
#include <vector>

#include "ws/core/wsPosTagger.h"
#include "ws/pos/wsTrigramPosDict.h"

namespace ws {

class WsDictSet;

// Tags every word of a segmentation with a second-order hidden Markov
// model decoded by Viterbi over pairs of tags: transitions from the
// smoothed trigram table (the bigram table for the second word, the
// initial-tag scores for the first), emissions from the word-tag
// dictionary. All scores are natural logs and add. The work per word is the
// product of three tag-list lengths, not T^3; ties go to the tag listed
// first.
//
// Configuration keys: "TRIGRAM_POS_DICT" (the compiled dictionary),
// "TRIGRAM_POS_PATCH_DICT" (patch dictionary, may be empty) and
// "TRIGRAM_POS_TYPEID2TAG" (dictionary property id to tag name).
//
// The work tables and the back-pointer store only grow, so a warm tagger
// allocates nothing per call. Not copyable. Thread safety: one text at a
// time per tagger.
class TrigramPosTagger : public PosTagger {
public:
    // `dicts` (not owned) must outlive the tagger.
    explicit TrigramPosTagger(WsDictSet* dicts);
    ~TrigramPosTagger() override;

    bool init(const WsConfig& config) override;
    // Loads the dictionary, the type-id map and the patch dictionary (an
    // empty or null path skips it); false, with the reason logged, when
    // one fails.
    virtual bool init(const char* dictPath, const char* typeId2TagPath, const char* patchPath);

    // Writes a tag id (1..T) into the cell of every word of `seg.result`
    // over `seg.textLen` units. Always 0; a tagger without a model tags
    // nothing.
    int annotate(TextSegmentation& seg) override;

    const char* getTagName(int id) override;
    int getTagId(const char* name) const;
    const TrigramPosDict* dict() const { return m_dict.get(); }

private:
    struct Node {
        int32_t pair;  // a * T + b, 0-based tags
        int32_t prev;  // node of (a, b)'s own predecessor; -1 = none
    };

    void sizeTables(int numTags);
    // Collects the words of `seg.result` into m_words; returns their number.
    int collectWords(const TextSegmentation& seg);
    const char* listOf(const TextSegmentation& seg, int k);
    int32_t appendNode(int32_t pair, int32_t prev);
    // Fills m_tags[0..n) from the Viterbi tables; n >= 2.
    void decode(const TextSegmentation& seg, int n);
    void decodeFirstTwo(const char* l0, const char* l1);
    void decodeStep(int k, const char* l0, const char* l1, const char* l2);
    void backTrace(int n, const char* l0, const char* l1);

    std::unique_ptr<TrigramPosDict> m_dict;
    const float* m_init = nullptr;
    const float* m_bigram = nullptr;
    const float* m_trigram = nullptr;
    int m_numTags = 0;
    WsDictSet* m_dicts;
    int m_tableTags = 0;
    std::vector<double> m_score[2];
    std::vector<int32_t> m_node[2];
    std::vector<double> m_first;
    std::vector<int32_t> m_firstNode;
    // The step (counted over all calls) at which pair (a, b) of the
    // previous layer got its node.
    int64_t m_step = 0;
    std::vector<int64_t> m_madeAt;
    std::vector<int32_t> m_madeNode;
    std::vector<Node> m_nodes;
    size_t m_nodeCount = 0;
    // Start and length of each word, and the tags found.
    std::vector<uint32_t> m_wordStart;
    std::vector<unsigned char> m_tags;
    WORD_T m_record;
};

}  // namespace ws

#endif
