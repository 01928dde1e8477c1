#ifndef ZEG_WS_DICT_WSSEGMENTDICT_H
#define ZEG_WS_DICT_WSSEGMENTDICT_H

#include "ws/dict/wsCoreDict.h"

namespace ws {

// The base word dictionary of a dictionary set: a WsCoreDict by another
// name. Copying and thread safety as DATDict.
class WsSegmentDict : public WsCoreDict {
public:
    ~WsSegmentDict() override = default;
};

}  // namespace ws

#endif
