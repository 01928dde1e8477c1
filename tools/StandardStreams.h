#ifndef ZEG_TOOLS_STANDARDSTREAMS_H
#define ZEG_TOOLS_STANDARDSTREAMS_H

namespace zeg_tools {

class FdLineReader;

// The start of every tool, before it opens anything: a standard stream that
// the caller closed (`tool <&-`) would otherwise be the descriptor of the
// first file the tool opens, and a dictionary would be read as its input
// or written over by its output. Puts /dev/null on each closed descriptor
// 0 to 2 and reports "TOOL: standard input is closed" (or output) for a
// stream the tool uses: standard output always, standard input when
// `readsInput`. False when it reported something (exit status 2) or could
// not open /dev/null.
bool guardStandardStreams(const char* tool, bool readsInput);

// The end of a line filter (a tool that reads standard input and writes
// standard output): flushes standard output and reports, as "TOOL: cannot
// write to standard output: REASON" or "TOOL: cannot read standard input:
// REASON", what went wrong on either stream. Returns 0 when nothing did,
// else 1, the exit status.
int finishStandardStreams(const char* tool, const FdLineReader& input);

}  // namespace zeg_tools

#endif
