#include "ws/algo/wsMEPersonNameTagger.h"

#include <cmath>

#include "ws/core/wsTextSegmentation.h"
#include "ws/dict/wsMaxentDict.h"

namespace ws {

namespace {

// (first offset, second offset or none) of each template, relative to i.
const int kNone = 99;
const int kOffsets[MEPersonNameTagger::kTemplates][2] = {
    {0, kNone},  {-2, kNone}, {-1, kNone}, {1, kNone}, {2, kNone}, {-1, 0},
    {0, 1},      {-2, -1},    {1, 2},      {2, 3},     {-3, -2},   {-1, 1}};

unsigned short charAt(const unsigned short* text, unsigned n, long k) {
    return k < 0 || k >= static_cast<long>(n) ? MEPersonNameTagger::kBoundary : text[k];
}

const double kImpossible = -1e300;
const int kOutside = 3;

}  // namespace

bool MEPersonNameTagger::init(const MaxentDict* model, int bufferIndex) {
    m_model = model;
    m_bufferIndex = bufferIndex;
    if (model == nullptr) return false;
    // One logarithm per code sum here saves four per character later.
    m_logCodeSum.resize(MaxentDict::kCodeSums);
    for (int s = 0; s < MaxentDict::kCodeSums; ++s) {
        const double v = model->codeSum(s);
        m_logCodeSum[s] = v > 0 ? std::log(v) : kImpossible;
    }
    return true;
}

void MEPersonNameTagger::contextKeys(const unsigned short* text, unsigned n, unsigned i,
                                     Key keys[kTemplates]) {
    for (int t = 0; t < kTemplates; ++t) {
        keys[t].units[0] = charAt(text, n, static_cast<long>(i) + kOffsets[t][0]);
        keys[t].len = 1;
        if (kOffsets[t][1] != kNone) {
            keys[t].units[1] = charAt(text, n, static_cast<long>(i) + kOffsets[t][1]);
            keys[t].len = 2;
        }
    }
}

bool MEPersonNameTagger::allowed(int prev, int next) {
    const bool inName = prev == 0 || prev == 1;
    return next == 1 || next == 2 ? inName : !inName;
}

const unsigned char* MEPersonNameTagger::_record(unsigned short a, unsigned short b,
                                                 unsigned len) const {
    const unsigned short key[2] = {a, b};
    return m_model->match(reinterpret_cast<const char*>(key), len * 2);
}

void MEPersonNameTagger::_lookUp(const unsigned short* text, unsigned n) {
    // Every template reads a character, an adjacent pair or the pair around
    // position i: one look-up each per position instead of twelve per position.
    for (long k = -kMargin; k < static_cast<long>(n) + kMargin; ++k) {
        const unsigned short c = charAt(text, n, k);
        m_single[k + kMargin] = _record(c, 0, 1);
        m_pair[k + kMargin] = _record(c, charAt(text, n, k + 1), 2);
        m_around[k + kMargin] = _record(charAt(text, n, k - 1), charAt(text, n, k + 1), 2);
    }
}

void MEPersonNameTagger::_score(const unsigned short* text, unsigned n) {
    _lookUp(text, n);
    for (unsigned i = 0; i < n; ++i) {
        int sums[kLabels] = {};
        for (int t = 0; t < kTemplates; ++t) {
            const long at = static_cast<long>(i) + kOffsets[t][0] + kMargin;
            const unsigned char* r = kOffsets[t][1] == kNone ? m_single[at]
                                     : kOffsets[t][1] == kOffsets[t][0] + 1
                                         ? m_pair[at]
                                         : m_around[i + kMargin];
            const int group = MaxentDict::kTemplateGroup[t];
            for (int l = 0; l < kLabels; ++l) {
                const unsigned char c = r[l + kLabels * group];
                if (c != MaxentDict::kNoAlpha) sums[l] += c;
            }
        }
        double total = 0;
        for (int l = 0; l < kLabels; ++l) total += m_model->codeSum(sums[l]);
        const double logTotal = total > 0 ? std::log(total) : 0;
        for (int l = 0; l < kLabels; ++l)
            m_score[i * kLabels + l] =
                m_logCodeSum[sums[l]] - logTotal + (l < kOutside ? m_nameBias : 0);
    }
}

void MEPersonNameTagger::_viterbi(unsigned n) {
    // m_score becomes the best path score ending in each label.
    for (int l = 0; l < kLabels; ++l)
        if (!allowed(3, l)) m_score[l] = kImpossible;
    for (unsigned i = 1; i < n; ++i) {
        for (int l = 0; l < kLabels; ++l) {
            double best = kImpossible;
            unsigned char from = 3;
            for (int p = 0; p < kLabels; ++p) {
                const double s = m_score[(i - 1) * kLabels + p];
                if (allowed(p, l) && s > best) {
                    best = s;
                    from = static_cast<unsigned char>(p);
                }
            }
            m_score[i * kLabels + l] += best;
            m_back[i * kLabels + l] = from;
        }
    }
    // A text ends outside a name or on a name's last character.
    int last = m_score[(n - 1) * kLabels + 2] > m_score[(n - 1) * kLabels + 3] ? 2 : 3;
    for (unsigned i = n; i-- > 0;) {
        m_labels[i] = static_cast<unsigned char>(last);
        if (i > 0) last = m_back[i * kLabels + last];
    }
}

int MEPersonNameTagger::_record(TextSegmentation& seg, unsigned n) const {
    if (m_bufferIndex < 0 || static_cast<unsigned>(m_bufferIndex) >= seg.newWordBuffers.size())
        return 0;
    NewWordBuffer& buf = seg.newWordBuffers[m_bufferIndex];
    int names = 0;
    for (unsigned i = 0; i < n && i < buf.words.size(); ++i) {
        if (m_labels[i] != 0) continue;
        unsigned e = i + 1;
        while (e < n && m_labels[e] == 1) ++e;
        if (e == n || m_labels[e] != 2) continue;
        ++e;
        if (e - i > kMaxNameLength) continue;
        buf.words[i].len = static_cast<unsigned char>(e - i);
        buf.words[i].flag = 1;
        ++names;
    }
    // The segmenter reads only the count's lowest byte.
    if (names > 0) buf.count = static_cast<unsigned>(names) % 255 + 1;
    return names;
}

int MEPersonNameTagger::tag(TextSegmentation& seg, int) {
    const unsigned n = seg.textLen;
    if (m_model == nullptr || n == 0 || seg.text == nullptr) return 0;
    if (m_labels.size() < n) {
        m_score.resize(static_cast<size_t>(n) * kLabels);
        m_back.resize(static_cast<size_t>(n) * kLabels);
        m_labels.resize(n);
        for (auto* records : {&m_single, &m_pair, &m_around}) records->resize(n + 2 * kMargin);
    }
    _score(seg.text, n);
    _viterbi(n);
    return _record(seg, n);
}

}  // namespace ws
