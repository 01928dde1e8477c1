#ifndef ZEG_WS_ALGO_WSSPACEPROCESSOR_H
#define ZEG_WS_ALGO_WSSPACEPROCESSOR_H

#include <string>
#include <vector>

#include "ws/core/wsTextProcessor.h"
#include "ws/core/wsWordRecord.h"

namespace ws {

// Removes spaces before segmentation so that spacing does not change the
// cut, and afterwards maps result words back onto the caller's text. The
// spaces are the members of "spacelist= ... end#" in the space definition
// file. A space run between two Chinese characters is dropped; any other
// interior run becomes its last space; leading and trailing runs vanish.
// Thread safety: read-only after loading, so one object may serve several
// threads, each with its own TextSegmentation.
class SpaceProcessor : public TextProcessor {
public:
    // Reads the definition at `path` and builds the class table. False, the
    // processor then unusable, when the file cannot be read, has no
    // "spacelist=" ... "end#" section, or lists nothing.
    bool loadText(const std::string& path);

    // removeSpace.
    int doPreProcess(TextSegmentation& seg) override;
    // Does nothing: mapping back is restoreSpace's, which needs the words.
    // Returns -1.
    int doPostProcess(TextSegmentation& seg) override;

    // Writes the text without its surplus spaces into `seg.spaceFreeText`
    // and points `seg.text` at it, updating the first two lengths; with
    // `seg.recordRemovedSpaces` set, appends the position in `seg.orgText` of
    // every removed space to `seg.removedSpaces`. Returns 0, or -1 (the
    // segmentation unchanged) when nothing but spaces is left.
    int removeSpace(TextSegmentation& seg) const;

    // Points `orgWord`/`orgWordLen` of words[first, end) at their span in
    // `seg.orgText`, spaces removed from inside a word included. The words
    // must be in text order with offsets relative to `seg.text`. Returns 0.
    int restoreSpace(const TextSegmentation& seg, std::vector<WORD_T>& words,
                     unsigned int first) const;

    bool isSpace(unsigned short c) const { return (m_table[c] & kSpace) != 0; }

private:
    static const unsigned char kSpace = 1;

    bool _doInit();
    // Copies in[0, n) to `out` without surplus spaces; returns the new length.
    unsigned int _removeSpace(const unsigned short* in, unsigned int n, unsigned short* out,
                              std::vector<unsigned int>* positions) const;
    bool _dropRun(unsigned short before, unsigned short after) const;

    std::string m_text;  // the members, UTF-8
    std::vector<unsigned char> m_table = std::vector<unsigned char>(65536, 0);
};

}  // namespace ws

#endif
