// A plug-in text processor for the facade's tests: a text starting with '#'
// is a comment and has no words; after segmentation the first of several
// words is marked as an organisation.
#include "ws/core/wsPlugIn.h"

namespace {

class CommentsAndMarks : public ws::TextProcessor {
public:
    int doPreProcess(ws::TextSegmentation& seg) override { return seg.text[0] == '#' ? 1 : 0; }
    int doPostProcess(ws::TextSegmentation& seg) override {
        if (seg.getSegResultWordNum() > 1) seg.result.cells[0].prop |= ws::WS_PROPERTY_ORG;
        return 0;
    }
};

}  // namespace

extern "C" ws::TextProcessor* createTextProcessor() { return new CommentsAndMarks(); }
