#ifndef ZEG_TOOLS_STANDARDSTREAMS_H
#define ZEG_TOOLS_STANDARDSTREAMS_H

namespace zeg_tools {

class FdLineReader;

// The end of a line filter (a tool that reads standard input and writes
// standard output): flushes standard output and reports, as "TOOL: cannot
// write to standard output: REASON" or "TOOL: cannot read standard input:
// REASON", what went wrong on either stream. Returns 0 when nothing did,
// else 1, the exit status.
int finishStandardStreams(const char* tool, const FdLineReader& input);

}  // namespace zeg_tools

#endif
