#ifndef ZEG_JNI_COM_ORVANE_DW_COMM_ZEG_NORMALIZER_H
#define ZEG_JNI_COM_ORVANE_DW_COMM_ZEG_NORMALIZER_H

#include <jni.h>

// The native methods of com.orvane.dw.comm.zeg.Normalizer, all static. These
// three are the only symbols the library exports. None of them throws into
// Java or reports anything to it: every failure shows as an empty result.

#ifdef __cplusplus
extern "C" {
#endif

// initialize(String configPath): the first call builds the normaliser from
// the configuration file (a null path counts as a file that cannot be
// loaded); every later call does nothing, whether or not the first worked.
JNIEXPORT void JNICALL Java_com_orvane_dw_comm_zeg_Normalizer_initialize(JNIEnv* env, jclass cls,
                                                                         jstring configPath);

// normalize(String query, int mode): the normalised query; "" before a
// successful initialize, for a null query and for a query of 512 or more
// modified UTF-8 bytes. Null only when the JVM is out of memory (with
// OutOfMemoryError pending).
JNIEXPORT jstring JNICALL Java_com_orvane_dw_comm_zeg_Normalizer_normalize(JNIEnv* env,
                                                                           jclass cls,
                                                                           jstring query,
                                                                           jint mode);

// unitialize(): does nothing; the normaliser lives until the process ends.
JNIEXPORT void JNICALL Java_com_orvane_dw_comm_zeg_Normalizer_unitialize(JNIEnv* env, jclass cls);

// Null once the normaliser is initialised; otherwise why not, as text.
JNIEXPORT jstring JNICALL Java_com_orvane_dw_comm_zeg_Normalizer_initializationFailure(JNIEnv* env,
                                                                                       jclass cls);

#ifdef __cplusplus
}
#endif

#endif
