#ifndef ZEG_WS_DICT_WSALNUMDICT_H
#define ZEG_WS_DICT_WSALNUMDICT_H

#include "ws/dict/wsCoreDict.h"

namespace ws {

// The dictionary of words with Latin letters or digits in a dictionary set:
// a WsCoreDict by another name. Copying and thread safety as DATDict.
class WsAlnumDict : public WsCoreDict {
public:
    ~WsAlnumDict() override = default;
};

}  // namespace ws

#endif
