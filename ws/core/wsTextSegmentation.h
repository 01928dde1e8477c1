#ifndef ZEG_WS_CORE_WSTEXTSEGMENTATION_H
#define ZEG_WS_CORE_WSTEXTSEGMENTATION_H

#include <vector>

#include "ws/core/wsExport.h"
#include "ws/core/wsNewWordBuffer.h"
#include "ws/core/wsSegmentResult.h"
#include "ws/core/wsSegmentResultByDict.h"

namespace ws {

// The working state of one segmentation of one UTF-16 text, handed by
// reference to every stage of the pipeline. One object is re-initialised for
// every text; its buffers grow to the longest text seen and never shrink, so
// once the longest text has been seen, init allocates nothing. All lengths
// and positions count UTF-16 code units. The text pointers are not owned and
// must outlive the segmentation of their text; copying shares them and
// copies the buffers. Thread safety: none; one segmentation serves one call
// at a time.
struct WS_EXPORT TextSegmentation {
    // getPropIdx's answer when no buffer collects the property.
    static constexpr unsigned int kNoBuffer = 0xFFFFFFFFu;

    // Prepares the segmentation of `orgText[0, len)`: stores the three
    // pointers, points `text` at `orgText`, sets the three lengths to `len`,
    // empties `removedSpaces` and re-initialises every new-word buffer in
    // order, then `resultByDict` and `result`, for `len` code units. The flags
    // and `normalizeMode` are left alone. The two work buffers must hold at
    // least `len` code units each; they are the text processors' to write.
    // False, changing nothing, when `len` is 0 or `orgText` is null. False,
    // with an error logged, when a buffer cannot grow: the lengths are then 0,
    // so that no stage reads the missing cells.
    bool init(const unsigned short* orgText, unsigned short* spaceFreeText,
              unsigned short* normalizedText, unsigned int len);

    // Appends an empty buffer for the candidates of `prop` and returns its
    // index. Buffers are added once, when the segmenter is set up, never per
    // text. kNoBuffer, with an error logged, when memory runs out.
    unsigned int addNewWordBuffer(unsigned short prop, float threshold);

    // Index of the first new-word buffer collecting `prop`, or kNoBuffer.
    unsigned int getPropIdx(unsigned short prop) const;

    // Number of words in `result`: walks the cells from position 0 by their
    // lengths until `textLen` is reached. 0 for an empty text. A cell of
    // length 0 is logged and stepped over as one code unit, so the walk
    // always ends; so does a walk that runs out of cells.
    unsigned int getSegResultWordNum() const;

    unsigned int textLen = 0;        // length of `text`; every stage iterates over it
    unsigned int spaceFreeLen = 0;   // length of the text in `spaceFreeText`
    unsigned int normalizedLen = 0;  // length of the text in `normalizedText`
    const unsigned short* orgText = nullptr;  // the caller's text
    unsigned short* spaceFreeText = nullptr;  // work buffer: the text with spaces removed
    unsigned short* normalizedText = nullptr; // work buffer: the case- and width-folded text
    const unsigned short* text = nullptr;     // what segmenters read and result words point into
    unsigned char denormalizeToSpaceFree = 0; // after folding, return to spaceFreeText, not orgText
    unsigned char recordRemovedSpaces = 0;    // fill `removedSpaces` when removing spaces
    int normalizeMode = 0;                    // the folding mode of the normalising processor
    std::vector<NewWordBuffer> newWordBuffers;  // in the order they were added
    SegmentResultByDict resultByDict;
    SegmentResult result;
    std::vector<unsigned int> removedSpaces;  // positions in orgText, ascending; emptied by init
};

}  // namespace ws

#endif
