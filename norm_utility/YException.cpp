#include "norm_utility/YException.h"

namespace norm_utility {

YException::YException(const char* msg) : m_msg(msg ? msg : "") {}

YException::YException(const std::string& msg) : m_msg(msg) {}

YException::~YException() = default;

}  // namespace norm_utility
