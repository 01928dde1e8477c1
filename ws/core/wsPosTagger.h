#ifndef ZEG_WS_CORE_WSPOSTAGGER_H
#define ZEG_WS_CORE_WSPOSTAGGER_H

namespace ws {

class WsConfig;
struct TextSegmentation;

// A part-of-speech tagger: gives every word of `seg.result` a tag id.
// Whoever owns one deletes it through this interface. Not copyable.
// Thread safety: each implementation states its own; the pipeline calls it
// for one text at a time.
class PosTagger {
public:
    PosTagger() = default;
    virtual ~PosTagger() = default;
    PosTagger(const PosTagger&) = delete;
    PosTagger& operator=(const PosTagger&) = delete;

    // Loads the tagger's model named by the options. False when it cannot work.
    virtual bool init(const WsConfig& config) = 0;
    // Writes a tag id into every word cell of `seg.result`.
    virtual int annotate(TextSegmentation& seg) = 0;
    // The name of tag `id`, owned by the tagger; null for an unknown id.
    virtual const char* getTagName(int id) = 0;
};

}  // namespace ws

#endif
