#include "norm_utility/BaseConfiguration.h"

namespace norm_utility {

BaseConfiguration::~BaseConfiguration() = default;

int BaseConfiguration::setExpiry(int seconds) {
    m_expiry = seconds < 0 ? 0 : seconds;
    return m_expiry;
}

void BaseConfiguration::checkExpiry() {
    if (m_expiry <= 0) return;
    if (time(nullptr) < m_lastLoadTime + m_expiry) return;
    initialize();
}

}  // namespace norm_utility
