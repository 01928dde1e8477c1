#ifndef ZEG_WS_DICT_WSCORRECTPHRASEDICT_H
#define ZEG_WS_DICT_WSCORRECTPHRASEDICT_H

#include "ws/dict/wsPhraseDict.h"

namespace ws {

// The phrase dictionary the phrase correcter is given: the cuts it holds
// replace the segmenter's. A PhraseDict by another name; copying and
// thread safety as PhraseDict.
class CorrectPhraseDict : public PhraseDict {
public:
    CorrectPhraseDict() = default;
    ~CorrectPhraseDict() override = default;
};

}  // namespace ws

#endif
