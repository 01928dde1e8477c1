#ifndef ZEG_TOOLS_JAVATEXT_H
#define ZEG_TOOLS_JAVATEXT_H

#include <string>

namespace zeg_tools {

// Text as a Java program sees it at the two edges of a JNI call, so that a
// native tool can give byte for byte what Java code gets from the library.
// Java strings are UTF-16 (std::u16string here); JNI hands them over as
// modified UTF-8: U+0000 as C0 80, every UTF-16 code unit, surrogates
// included, as its own one- to three-byte sequence. Stateless; safe from
// any thread.

// new String(bytes, UTF_8): malformed input becomes U+FFFD by the JDK's own
// rules (one U+FFFD per maximal invalid prefix, one for an encoded
// surrogate, one for a sequence cut short at the end).
std::u16string decodeUtf8AsJava(const std::string& bytes);

// String.getBytes(UTF_8): a surrogate pair becomes one four-byte sequence,
// a lone surrogate becomes "?".
std::string encodeUtf8AsJava(const std::u16string& text);

// GetStringUTFChars: the modified UTF-8 of `text`.
std::string toModifiedUtf8(const std::u16string& text);

// NewStringUTF on well-formed modified UTF-8 (which also covers standard
// UTF-8 of the basic multilingual plane). A byte that starts no valid
// sequence becomes U+FFFD.
std::u16string fromModifiedUtf8(const std::string& bytes);

// True when `bytes` is standard UTF-8 of basic-plane characters other than
// U+0000 and the surrogates: then the two round trips above (decode and
// GetStringUTFChars; NewStringUTF and encode) give `bytes` back unchanged,
// and a caller may skip them.
bool isJavaNeutralUtf8(const std::string& bytes);

}  // namespace zeg_tools

#endif
