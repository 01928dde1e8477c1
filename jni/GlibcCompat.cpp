// The static C++ runtime (std::random_device) calls arc4random, which glibc
// has only since 2.36. Defining it here, hidden, binds that call inside the
// library, so that the library loads on older glibc; getrandom (2.25) is
// what glibc's own arc4random uses.
#include <sys/random.h>

#include <cerrno>
#include <cstdint>

extern "C" {

__attribute__((visibility("hidden"))) uint32_t arc4random(void) {
    uint32_t value = 0;
    unsigned char* p = reinterpret_cast<unsigned char*>(&value);
    size_t left = sizeof value;
    while (left > 0) {
        const ssize_t n = getrandom(p, left, 0);
        if (n > 0) {
            p += n;
            left -= static_cast<size_t>(n);
        } else if (n < 0 && errno != EINTR) {
            break;  // no kernel source: an unlikely, non-fatal zero
        }
    }
    return value;
}

}  // extern "C"
