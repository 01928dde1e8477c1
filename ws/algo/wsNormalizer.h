#ifndef ZEG_WS_ALGO_WSNORMALIZER_H
#define ZEG_WS_ALGO_WSNORMALIZER_H

#include "ws/core/wsTextProcessor.h"

namespace ws {

// Folds full-width forms to half-width and changes the case of Latin letters
// before segmentation, so that dictionary words match however they were
// typed; afterwards points the segmentation back at the unfolded text.
// The mode is `TextSegmentation::normalizeMode`:
//   0 copy only; 1 lower to upper case; 2 upper to lower case;
//   3 every unit above U+FF00 moves down by 0xFEE0 (modulo 65536, so the
//     half-width forms from U+FF61 move too) and U+3000 becomes a space;
//   4 mode 3 then 1; 5 mode 3 then 2; anything else: copy only.
// Has no data; any number of threads may share one object.
class Normalizer : public TextProcessor {
public:
    // normalize; returns 0.
    int doPreProcess(TextSegmentation& seg) override { return normalize(seg); }
    // denormalize; returns 0.
    int doPostProcess(TextSegmentation& seg) override { return denormalize(seg); }

    // Copies the first `seg.textLen` units of `seg.text` into
    // `seg.normalizedText`, folds them by the mode, points `seg.text` at them
    // and sets `seg.normalizedLen` to `seg.textLen`. Returns 0.
    int normalize(TextSegmentation& seg) const;

    // Points `seg.text` back at `seg.orgText`, or at `seg.spaceFreeText` when
    // `seg.denormalizeToSpaceFree` is set. Returns 0.
    int denormalize(TextSegmentation& seg) const;
};

}  // namespace ws

#endif
