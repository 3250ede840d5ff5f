// Libraries that are loaded when something of them is needed: linked with, they would let every command start
// later.
#pragma once

namespace tool {

struct LoadedLibrary {
    const char* file;
    const char* what; // cannot be done without it
    const char* hint;
};

// What a library has under a name, as a pointer to whatever it is. Throws Failure where it is not there.
class Loaded {
public:
    Loaded(const LoadedLibrary& library, const char* name) : m_library(library), m_name(name) {}
    template <class Pointee>
    operator Pointee*() const
    {
        return reinterpret_cast<Pointee*>(address());
    }

private:
    void* address() const;

    const LoadedLibrary& m_library;
    const char* m_name;
};

} // namespace tool
