#include "tools/JavaText.h"

#include "ws/core/wsHot.h"

namespace zeg_tools {

namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool isContinuation(unsigned char b) { return (b & 0xC0) == 0x80; }
bool isSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// Second bytes that a three- or four-byte lead accepts (no overlong forms,
// nothing above U+10FFFF). E0 80 and F0 80 are overlong; F4 90 is too high.
bool secondOfThreeOk(unsigned char b1, unsigned char b2) {
    return isContinuation(b2) && !(b1 == 0xE0 && b2 < 0xA0);
}
bool secondOfFourOk(unsigned char b1, unsigned char b2) {
    if (b1 == 0xF0) return b2 >= 0x90 && b2 <= 0xBF;
    if (b1 == 0xF4) return b2 >= 0x80 && b2 <= 0x8F;
    return isContinuation(b2);
}

// Decoder over one byte string; each step reads one character or one
// malformed stretch and appends what Java appends for it.
class JavaUtf8Decoder {
public:
    explicit JavaUtf8Decoder(const std::string& bytes)
        : m_b(reinterpret_cast<const unsigned char*>(bytes.data())), m_n(bytes.size()) {}

    std::u16string run() {
        while (m_i < m_n && step()) {
        }
        return std::move(m_out);
    }

private:
    std::size_t left() const { return m_n - m_i; }
    unsigned char at(std::size_t k) const { return m_b[m_i + k]; }
    bool replace(std::size_t consumed) {
        m_out.push_back(kReplacement);
        m_i += consumed;
        return true;
    }

    // False when the rest of the input has been consumed by a cut sequence.
    bool step() {
        const unsigned char b1 = at(0);
        if (b1 < 0x80) {
            m_out.push_back(b1);
            ++m_i;
            return true;
        }
        if (b1 >= 0xC2 && b1 <= 0xDF) return two(b1);
        if (b1 >= 0xE0 && b1 <= 0xEF) return three(b1);
        if (b1 >= 0xF0 && b1 <= 0xF4) return four(b1);
        return replace(1);
    }

    bool two(unsigned char b1) {
        if (left() < 2) return replace(1) && false;
        if (!isContinuation(at(1))) return replace(1);
        m_out.push_back(static_cast<char16_t>(((b1 & 0x1F) << 6) | (at(1) & 0x3F)));
        m_i += 2;
        return true;
    }

    bool three(unsigned char b1) {
        if (left() < 3) {
            if (left() == 2 && !secondOfThreeOk(b1, at(1))) return replace(1);
            return replace(left()) && false;
        }
        if (!secondOfThreeOk(b1, at(1))) return replace(1);
        if (!isContinuation(at(2))) return replace(2);
        const char32_t c = ((b1 & 0x0F) << 12) | ((at(1) & 0x3F) << 6) | (at(2) & 0x3F);
        m_out.push_back(isSurrogate(c) ? kReplacement : static_cast<char16_t>(c));
        m_i += 3;
        return true;
    }

    bool four(unsigned char b1) {
        if (left() < 4) {
            if (left() >= 2 && !secondOfFourOk(b1, at(1))) return replace(1);
            if (left() == 3 && !isContinuation(at(2))) return replace(2);
            return replace(left()) && false;
        }
        if (!secondOfFourOk(b1, at(1))) return replace(1);
        if (!isContinuation(at(2))) return replace(2);
        if (!isContinuation(at(3))) return replace(3);
        const char32_t c = ((b1 & 0x07) << 18) | ((at(1) & 0x3F) << 12) |
                           ((at(2) & 0x3F) << 6) | (at(3) & 0x3F);
        m_out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
        m_out.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
        m_i += 4;
        return true;
    }

    const unsigned char* m_b;
    std::size_t m_n;
    std::size_t m_i = 0;
    std::u16string m_out;
};

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (c >> 18)));
        out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
}

}  // namespace

std::u16string decodeUtf8AsJava(const std::string& bytes) { return JavaUtf8Decoder(bytes).run(); }

std::string encodeUtf8AsJava(const std::u16string& text) {
    std::string out;
    out.reserve(text.size() * 3);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        const bool high = c >= 0xD800 && c <= 0xDBFF;
        if (high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
            appendUtf8(out, 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00));
            ++i;
        } else {
            appendUtf8(out, isSurrogate(c) ? U'?' : c);
        }
    }
    return out;
}

std::string toModifiedUtf8(const std::u16string& text) {
    std::string out;
    out.reserve(text.size() * 3);
    for (const char16_t c : text) {
        if (c == 0) {
            out += "\xC0\x80";
        } else {
            appendUtf8(out, c);
        }
    }
    return out;
}

std::u16string fromModifiedUtf8(const std::string& bytes) {
    const auto* b = reinterpret_cast<const unsigned char*>(bytes.data());
    const std::size_t n = bytes.size();
    std::u16string out;
    std::size_t i = 0;
    while (i < n) {
        if (b[i] < 0x80) {
            out.push_back(b[i++]);
        } else if ((b[i] & 0xE0) == 0xC0 && i + 1 < n && isContinuation(b[i + 1])) {
            out.push_back(static_cast<char16_t>(((b[i] & 0x1F) << 6) | (b[i + 1] & 0x3F)));
            i += 2;
        } else if ((b[i] & 0xF0) == 0xE0 && i + 2 < n && isContinuation(b[i + 1]) &&
                   isContinuation(b[i + 2])) {
            out.push_back(static_cast<char16_t>(((b[i] & 0x0F) << 12) |
                                                ((b[i + 1] & 0x3F) << 6) | (b[i + 2] & 0x3F)));
            i += 3;
        } else {
            out.push_back(kReplacement);
            ++i;
        }
    }
    return out;
}

WS_HOT bool isJavaNeutralUtf8(const std::string& bytes) {
    const auto* b = reinterpret_cast<const unsigned char*>(bytes.data());
    const std::size_t n = bytes.size();
    const auto trailing = [](unsigned char c) { return (c & 0xC0) == 0x80; };
    std::size_t i = 0;
    while (i < n) {
        const unsigned lead = b[i];
        if (lead < 0x80) {
            if (lead == 0) return false;
            ++i;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            // No overlong form (E0 80-9F) and no surrogate (ED A0-BF).
            if (n - i < 3 || !trailing(b[i + 1]) || !trailing(b[i + 2])) return false;
            if ((lead == 0xE0 && b[i + 1] < 0xA0) || (lead == 0xED && b[i + 1] > 0x9F))
                return false;
            i += 3;
        } else if (lead >= 0xC2 && lead <= 0xDF && n - i >= 2 && trailing(b[i + 1])) {
            i += 2;
        } else {
            return false;
        }
    }
    return true;
}

}  // namespace zeg_tools
