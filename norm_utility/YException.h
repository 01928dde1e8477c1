#ifndef ZEG_NORM_UTILITY_YEXCEPTION_H
#define ZEG_NORM_UTILITY_YEXCEPTION_H

#include <string>

namespace norm_utility {

// The settings library's exception: a message and nothing else. It does not
// derive from std::exception; callers catch it by type and print GetMsg().
class YException {
public:
    // A null message is taken as empty.
    explicit YException(const char* msg);
    explicit YException(const std::string& msg);
    virtual ~YException();

    const char* GetMsg() const { return m_msg.c_str(); }

private:
    std::string m_msg;
};

}  // namespace norm_utility

#endif
