#ifndef ZEG_NORMALIZE_NORMALIZEINTF_H
#define ZEG_NORMALIZE_NORMALIZEINTF_H

#include <memory>
#include <string>
#include <vector>

namespace normalize {

class Implement;

// The normaliser's facade: owns one Implement and refuses to normalise until
// it has been initialised successfully. The process-wide instance comes from
// getInstance and is never deleted. Not copyable. Thread safety: none;
// getInstance and init are meant for start-up, and doNormalize serves one
// query at a time.
class NormalizeIntf {
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
    bool isInitialized() const { return m_initialized; }

    // Implement::doNormalize (same arguments and return codes), or -1 with a
    // message and `output` untouched when not initialised. A non-zero
    // result is also reported on standard error with the input.
    int doNormalize(const std::string& input, int mode, std::string& output,
                    std::vector<std::string>& words, bool inputIsGbk, bool outputIsGbk);
    // The same, discarding the words.
    int doNormalize(const std::string& input, int mode, std::string& output, bool inputIsGbk,
                    bool outputIsGbk);

private:
    static NormalizeIntf* m_pInstance;

    bool m_initialized = false;
    std::unique_ptr<Implement> m_implement;
};

}  // namespace normalize

#endif
