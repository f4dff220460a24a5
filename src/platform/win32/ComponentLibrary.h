// A component of the program as a library of functions, loaded when the first one is asked for.
#pragma once

#include <filesystem>
#include <utility>

namespace tb {

// The program starts and lives without the file; whoever calls the component says what is missing then. Once loaded it
// stays until the process ends: threads of the system may be on their way through it at any time.
class ComponentLibrary {
public:
    // By its full path, so that no other folder is searched for it.
    explicit ComponentLibrary(std::filesystem::path file) : m_File(std::move(file)) {}

    // The address of an exported function. Null when the file is not there, cannot be loaded or has no such function;
    // a file that could not be loaded is tried again by the next call. No message box of the system appears.
    void* Function(const char* name) noexcept;

    const std::filesystem::path& File() const { return m_File; }

private:
    const std::filesystem::path m_File;
    // The module, in the system's terms.
    void* m_Module = nullptr;
};

}  // namespace tb
