#ifndef ZEG_TOOLS_COREDICTCOMPILER_H
#define ZEG_TOOLS_COREDICTCOMPILER_H

#include <cstdint>
#include <ostream>
#include <string>

#include "tools/PropertyTable.h"
#include "tools/WordListReader.h"
#include "ws/dict/wsCoreDict.h"

namespace zeg_tools {

// What `zeg-dict core` is asked to do.
struct CoreDictOptions {
    std::string input;       // the word list
    std::string output;      // the dictionary file to write
    std::string properties;  // the property table: read if present, extended, written
    bool strict = false;     // a malformed line is fatal
    bool progress = false;   // show a progress line on the error stream
};

// Compiles a word list (see WordListReader) into a core dictionary file.
// Each word gets the record weight ln(frequency) and, when it has a tag,
// one property (the tag's id in the property table, weight = frequency);
// no granularities, semantic items or user value. The dictionary's total
// frequency is the sum of the frequencies.
//
// Malformed lines (WordListReader's reasons, and repeated words) are
// reported as "FILE:LINE: reason" and skipped, or end the run with
// `strict`. The output and the property table are written through
// temporary files, so a failed run leaves no half-written file.
// Not thread-safe.
class CoreDictCompiler {
public:
    CoreDictCompiler(const CoreDictOptions& options, std::ostream& err);

    // Runs the whole job; 0 on success, 1 on failure (with one line on the
    // error stream saying why).
    int run();

    uint64_t words() const { return m_words; }
    uint64_t skipped() const { return m_skipped; }
    double totalFreq() const { return m_totalFreq; }

private:
    bool compile(std::istream& in, uint64_t inputBytes);
    // Adds one entry; false with `reason` when the dictionary refuses it.
    bool addEntry(const WordEntry& entry, std::string& reason);
    bool reportMalformed(long line, const std::string& reason);
    bool writeOutputs();
    int fail(const std::string& message);

    CoreDictOptions m_options;
    std::ostream& m_err;
    PropertyTable m_properties;
    ws::WsCoreDict m_dict;
    uint64_t m_words = 0;
    uint64_t m_skipped = 0;
    double m_totalFreq = 0.0;
    bool m_fatal = false;
};

}  // namespace zeg_tools

#endif
