#ifndef ZEG_WS_CORE_WSEXPORT_H
#define ZEG_WS_CORE_WSEXPORT_H

// Marks what the shared segmenter library (libzegws.so) exports: the facade
// and what plug-ins may call. Everything else stays hidden.
#define WS_EXPORT __attribute__((visibility("default")))

#endif
