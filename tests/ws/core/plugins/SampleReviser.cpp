// A plug-in reviser for the facade's tests: joins the first two words when
// both are Chinese, as a user's own correction rule might.
#include "ws/core/wsPlugIn.h"
#include "ws/core/wsUtility.h"

namespace {

class JoinFirstTwo : public ws::Reviser {
public:
    int doRevise(ws::TextSegmentation& seg) override {
        if (seg.getSegResultWordNum() < 2) return 0;
        ws::SegmentResult::Cell& first = seg.result.cells[0];
        const ws::SegmentResult::Cell& second = seg.result.cells[first.len];
        if (!ws::Utility::isHanziChar(seg.text[0]) || !ws::Utility::isHanziChar(seg.text[first.len]))
            return 0;
        first.len = static_cast<unsigned char>(first.len + second.len);
        first.wordId = -1;
        first.value = nullptr;
        return 0;
    }
};

}  // namespace

extern "C" ws::Reviser* createReviser() { return new JoinFirstTwo(); }
