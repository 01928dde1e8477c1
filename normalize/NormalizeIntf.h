#ifndef ZEG_NORMALIZE_NORMALIZEINTF_H
#define ZEG_NORMALIZE_NORMALIZEINTF_H

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "ws/core/wsExport.h"

namespace normalize {

class Implement;

// The normaliser's facade: owns one Implement and refuses to normalise until
// it has been initialised successfully. The process-wide instance comes from
// getInstance and is never deleted. Not copyable. Thread safety: getInstance
// and init are meant for start-up, before any doNormalize; doNormalize may
// then run on any number of threads at once, without locks: each thread
// normalises with an Implement of its own (the one init built, for the
// thread that ran init), set up on its first call over the settings, word
// lists and mapped dictionaries init loaded, and freed when the thread ends.
class WS_EXPORT NormalizeIntf {
public:
    // The process-wide instance, created on first call (allocation failure
    // throws std::bad_alloc).
    static NormalizeIntf* getInstance();

    NormalizeIntf();
    virtual ~NormalizeIntf();
    NormalizeIntf(const NormalizeIntf&) = delete;
    NormalizeIntf& operator=(const NormalizeIntf&) = delete;

    // Builds a new Implement from `configFile`, dropping any previous one.
    // False, with a message on standard error, when it fails; the facade is
    // then uninitialised until a later init succeeds.
    bool init(const std::string& configFile);
    bool isInitialized() const { return m_initialized.load(std::memory_order_acquire); }
    // Why the last init failed: the lines it wrote to standard error; empty
    // after a successful one.
    const std::string& failure() const { return m_failure; }

    // Implement::doNormalize (same arguments and return codes) with the
    // calling thread's Implement, or -1 with a message and `output` untouched
    // when not initialised or when this thread's Implement cannot be set up.
    // A non-zero result is also reported on standard error with the input.
    int doNormalize(const std::string& input, int mode, std::string& output,
                    std::vector<std::string>& words, bool inputIsGbk, bool outputIsGbk);
    // The same, discarding the words.
    int doNormalize(const std::string& input, int mode, std::string& output, bool inputIsGbk,
                    bool outputIsGbk);

private:
    // The calling thread's Implement for the current init; null, with a
    // message, when it cannot be set up.
    Implement* _threadImplement();
    // _threadImplement once the interface is initialised; null, with a
    // message, otherwise.
    Implement* _readyImplement(const std::string& input);
    // `result`, with a message when it is a failure.
    static int _reported(int result, const std::string& input);

    static NormalizeIntf* m_pInstance;

    std::atomic<bool> m_initialized{false};
    // Changes with every init, so that threads drop Implements built for an
    // earlier one.
    std::atomic<unsigned long> m_generation{0};
    std::unique_ptr<Implement> m_implement;
    std::string m_failure;
};

}  // namespace normalize

#endif
