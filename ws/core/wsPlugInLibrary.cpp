#include "ws/core/wsPlugInLibrary.h"

#include <dlfcn.h>

#include <utility>

namespace ws {

PlugInLibrary::~PlugInLibrary() { _close(); }

PlugInLibrary::PlugInLibrary(PlugInLibrary&& other) noexcept
    : m_handle(std::exchange(other.m_handle, nullptr)) {}

PlugInLibrary& PlugInLibrary::operator=(PlugInLibrary&& other) noexcept {
    if (this != &other) {
        _close();
        m_handle = std::exchange(other.m_handle, nullptr);
    }
    return *this;
}

void PlugInLibrary::_close() {
    if (m_handle != nullptr) dlclose(m_handle);
    m_handle = nullptr;
}

bool PlugInLibrary::open(const char* path, std::string& error) {
    _close();
    if (path == nullptr) {
        error = "The .so file name is NULL";
        return false;
    }
    m_handle = dlopen(path, RTLD_LAZY);
    if (m_handle != nullptr) return true;
    const char* why = dlerror();
    error = why != nullptr ? why : path;
    return false;
}

void* PlugInLibrary::symbol(const char* name, std::string& error) const {
    void* address = m_handle != nullptr ? dlsym(m_handle, name) : nullptr;
    if (address == nullptr) error = std::string("There isn't the function ") + name + " in dll";
    return address;
}

}  // namespace ws
