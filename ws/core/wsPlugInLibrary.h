#ifndef ZEG_WS_CORE_WSPLUGINLIBRARY_H
#define ZEG_WS_CORE_WSPLUGINLIBRARY_H

#include <string>

namespace ws {

// One shared library opened with dlopen (lazy binding); dlclose in the
// destructor. Movable, not copyable. Thread safety: one thread at a time.
class PlugInLibrary {
public:
    PlugInLibrary() = default;
    ~PlugInLibrary();
    PlugInLibrary(PlugInLibrary&& other) noexcept;
    PlugInLibrary& operator=(PlugInLibrary&& other) noexcept;
    PlugInLibrary(const PlugInLibrary&) = delete;
    PlugInLibrary& operator=(const PlugInLibrary&) = delete;

    // Opens `path`, closing what was open. False with `error` set to "The .so
    // file name is NULL" for a null path, or to the dlerror text.
    bool open(const char* path, std::string& error);

    // The address of `name`, or null with `error` set to "There isn't the
    // function NAME in dll".
    void* symbol(const char* name, std::string& error) const;

    bool isOpen() const { return m_handle != nullptr; }

private:
    void _close();

    void* m_handle = nullptr;
};

}  // namespace ws

#endif
