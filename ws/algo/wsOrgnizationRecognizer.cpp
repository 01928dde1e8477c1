#include "ws/algo/wsOrgnizationRecognizer.h"

#include "ws/core/wsSegmenter.h"
#include "ws/core/wsTextSegmentation.h"
#include "ws/core/wsWordRecord.h"

namespace ws {

OrgnizationRecognizer::OrgnizationRecognizer(Segmenter* segmenter) : m_segmenter(segmenter) {}

bool OrgnizationRecognizer::init(const WsConfig& config, int bufferIndex) {
    return m_segmenter != nullptr && m_tagger.init(config, bufferIndex);
}

int OrgnizationRecognizer::doRecognize(TextSegmentation& seg) {
    if (!seg.resultByDict.valid) m_segmenter->doSegment(seg, 1, 1);
    m_tagger.tag(seg);
    return 1;
}

int OrgnizationRecognizer::getProperty(std::vector<unsigned short>& props) {
    props.push_back(WS_PROPERTY_ORG);
    return 1;
}

}  // namespace ws
