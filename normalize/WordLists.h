#ifndef ZEG_NORMALIZE_WORDLISTS_H
#define ZEG_NORMALIZE_WORDLISTS_H

#include <map>
#include <set>
#include <string>

namespace normalize {

// Process-wide word lists, filled at start-up and only read afterwards. The
// loaders add to what is there and never clear. Entries are raw bytes of
// the files, which are to be GBK-encoded.
extern std::set<std::string> gStopWords;
// Key: the word with ASCII letters upper-cased; value: its replacement.
extern std::map<std::string, std::string> gSynonymsWords;

// Indexes built from the lists (per thread or per worker) remember this
// number and the list's size, and rebuild when either changed. Both loaders
// bump it; code that edits a list by hand calls wordListsChanged().
unsigned wordListsGeneration();
void wordListsChanged();

// Adds every white-space separated word of the file to gStopWords.
// False, silently, when the file cannot be opened (a directory included).
bool loadStopFile(const std::string& path);

// Adds the pairs "word 0x01 replacement" of the file, one a line, to
// gSynonymsWords; a later key overwrites an earlier one. A line that does
// not split into exactly two non-empty fields is reported on standard error
// and skipped. False, with a message, when the file is missing or cannot be
// opened.
bool loadSynonymsFile(const std::string& path);

}  // namespace normalize

#endif
