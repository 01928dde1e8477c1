#ifndef ZEG_WS_CORE_WSSTRINGUTIL_H
#define ZEG_WS_CORE_WSSTRINGUTIL_H

#include <string>

namespace ws {

// String helpers of the dictionary and configuration loaders. Blanks are
// space and tab only. Pure functions; safe from any thread.

// Sets `out` to `in` without its leading blanks; returns how many were removed.
int stripSpace(const std::string& in, std::string& out);

// Sets `out` to `in` without its trailing blanks; returns the index of the
// last character kept (-1 when `in` is blank or empty).
int rstripSpace(const std::string& in, std::string& out);

// Finds `pattern` in `text`; returns its position or std::string::npos.
// An empty pattern never matches. "^rest" matches only when `text` starts
// with rest (a trailing '$' in rest is literal); returns 0. Otherwise
// "rest$" matches only when the first occurrence of rest ends `text` (a
// later occurrence is not looked for). Anything else is a plain search.
std::string::size_type match(const std::string& pattern, const std::string& text);

// match("^" + prefix, text) found something.
bool startwith(const std::string& prefix, const std::string& text);

// match(suffix + "$", text) found something: true only when the first
// occurrence of `suffix` ends `text` (so endwith("b", "abab") is false).
bool endwith(const std::string& suffix, const std::string& text);

}  // namespace ws

#endif
