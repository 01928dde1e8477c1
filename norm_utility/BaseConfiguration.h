#ifndef ZEG_NORM_UTILITY_BASECONFIGURATION_H
#define ZEG_NORM_UTILITY_BASECONFIGURATION_H

#include <ctime>

namespace norm_utility {

// A configuration source that can be reloaded after an expiry interval.
// Thread safety: none; reloads must not overlap with reads.
class BaseConfiguration {
public:
    BaseConfiguration() = default;
    virtual ~BaseConfiguration();

    // Stores the reload interval in seconds; a negative value is stored as 0
    // (never reload). Returns the stored value.
    virtual int setExpiry(int seconds);

    // (Re)loads the source and stamps the load time. False on failure.
    virtual bool initialize() = 0;

    // Reloads through initialize() once the interval has passed since the
    // last load; does nothing while the interval is 0.
    void checkExpiry();

    int getExpiry() const { return m_expiry; }
    time_t getLastLoadTime() const { return m_lastLoadTime; }
    void setLastLoadTime(time_t when) { m_lastLoadTime = when; }

private:
    int m_expiry = 0;
    time_t m_lastLoadTime = 0;
};

}  // namespace norm_utility

#endif
