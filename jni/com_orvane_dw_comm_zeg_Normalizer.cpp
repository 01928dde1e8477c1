#include "jni/com_orvane_dw_comm_zeg_Normalizer.h"

#include <string>

#include "jni/NormalizerBridge.h"
#include "normalize/NormalizeIntf.h"

namespace {

using normalize::NormalizeIntf;

// Set by the first initialize and never reset, so that later calls are no-ops.
NormalizeIntf* norm = nullptr;

// The modified UTF-8 characters of a Java string, released on destruction.
// get() is null for a null string or when the JVM could not provide them.
class JavaUtfChars {
public:
    JavaUtfChars(JNIEnv* env, jstring text)
        : m_env(env), m_text(text),
          m_chars(env != nullptr && text != nullptr ? env->GetStringUTFChars(text, nullptr)
                                                    : nullptr) {}
    ~JavaUtfChars() {
        if (m_chars != nullptr) m_env->ReleaseStringUTFChars(m_text, m_chars);
    }
    JavaUtfChars(const JavaUtfChars&) = delete;
    JavaUtfChars& operator=(const JavaUtfChars&) = delete;

    const char* get() const { return m_chars; }

private:
    JNIEnv* m_env;
    jstring m_text;
    const char* m_chars;
};

// Each calling thread's query and result, kept from call to call so that a
// warm thread allocates nothing in the library.
thread_local std::string t_query;
thread_local std::string t_result;

// The modified UTF-8 of `text` into `out`, copied by the JVM into our own
// buffer (GetStringUTFChars would allocate one per call). False when the
// query is too long to be normalised: its bytes are not needed then.
bool readQuery(JNIEnv* env, jstring text, std::string& out) {
    const jsize bytes = env->GetStringUTFLength(text);
    if (bytes < 0 || static_cast<std::size_t>(bytes) >= normalize::kQueryLimitBytes) return false;
    out.resize(static_cast<std::size_t>(bytes) + 1);  // the JVM may write a terminating zero
    env->GetStringUTFRegion(text, 0, env->GetStringLength(text), &out[0]);
    out.resize(static_cast<std::size_t>(bytes));
    return !env->ExceptionCheck();
}

}  // namespace

extern "C" {

JNIEXPORT void JNICALL Java_com_orvane_dw_comm_zeg_Normalizer_initialize(JNIEnv* env, jclass,
                                                                         jstring configPath) {
    try {
        if (norm != nullptr || env == nullptr) return;
        JavaUtfChars path(env, configPath);
        if (configPath != nullptr && path.get() == nullptr) return;  // OutOfMemoryError pending
        norm = NormalizeIntf::getInstance();
        norm->init(path.get() != nullptr ? path.get() : "");
    } catch (...) {
        // Nothing may unwind into the JVM; a failed start shows as empty results.
    }
}

JNIEXPORT jstring JNICALL Java_com_orvane_dw_comm_zeg_Normalizer_normalize(JNIEnv* env, jclass,
                                                                           jstring query,
                                                                           jint mode) {
    if (env == nullptr) return nullptr;
    std::string& result = t_result;
    try {
        result.clear();
        if (norm != nullptr && query != nullptr && readQuery(env, query, t_query))
            normalize::normalizeForJava(norm, t_query, static_cast<int>(mode), result);
    } catch (...) {
        result.clear();
    }
    if (env->ExceptionCheck()) return nullptr;
    return env->NewStringUTF(result.c_str());
}

JNIEXPORT void JNICALL Java_com_orvane_dw_comm_zeg_Normalizer_unitialize(JNIEnv*, jclass) {}

JNIEXPORT jstring JNICALL Java_com_orvane_dw_comm_zeg_Normalizer_initializationFailure(JNIEnv* env,
                                                                                       jclass) {
    if (env == nullptr) return nullptr;
    std::string why;
    try {
        if (norm == nullptr)
            why = "initialize has not been called";
        else if (norm->isInitialized())
            return nullptr;
        else if (norm->failure().empty())
            why = "the normaliser could not be initialised (its messages are on standard error)";
        else
            why = norm->failure();
        while (!why.empty() && why.back() == '\n') why.pop_back();
    } catch (...) {
        why = "the normaliser could not be initialised";
    }
    if (env->ExceptionCheck()) return nullptr;
    return env->NewStringUTF(why.c_str());
}

}  // extern "C"
