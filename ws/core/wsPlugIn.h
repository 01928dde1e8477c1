#ifndef ZEG_WS_CORE_WSPLUGIN_H
#define ZEG_WS_CORE_WSPLUGIN_H

// The header a segmenter plug-in is built against.
//
// A plug-in is a shared library that defines one or both factories below
// with C linkage. The segmenter opens every library named by
// REVISER_PLUG_IN, PREPROCESS_PLUG_IN and POSTPROCESS_PLUG_IN (with
// ENABLE_PLUG_IN = true), calls the factory once per name and appends the
// object to its stage list: createReviser for revisers, createTextProcessor
// for pre- and post-processors (doPreProcess runs for the first,
// doPostProcess for the second).
//
// Ownership: the segmenter owns what a factory returns and deletes it
// through the interface's virtual destructor, before it closes the library.
// A factory that returns null makes init fail. A plug-in object serves one
// text at a time.
//
// What a plug-in may use: the stage interfaces (Reviser, TextProcessor), the
// fields of TextSegmentation and SegmentResult (its cells: offset-indexed,
// `len` code units from the cell's position, `prop`, `tag`, `wordId`,
// `value`), the word records (a plug-in that adds a candidate to a
// NewWordBuffer makes its `count` non-zero), and the exported helpers Utility and
// EncodeConverter. Those helpers and the rest of the public segmenter live in
// the shared library libzeg.so; link it (-lzeg). Build with the same
// compiler and C++ standard library as the segmenter.
#include "ws/core/wsExport.h"
#include "ws/core/wsReviser.h"
#include "ws/core/wsTextProcessor.h"
#include "ws/core/wsTextSegmentation.h"

extern "C" {
// Returns a new reviser, or null on failure.
WS_EXPORT ws::Reviser* createReviser();
// Returns a new text processor, or null on failure.
WS_EXPORT ws::TextProcessor* createTextProcessor();
}

namespace ws {
using CreateReviserFn = Reviser* (*)();
using CreateTextProcessorFn = TextProcessor* (*)();
}  // namespace ws

#endif
