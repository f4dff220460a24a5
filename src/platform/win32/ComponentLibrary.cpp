#include "platform/win32/ComponentLibrary.h"

#include <windows.h>

namespace tb {

void* ComponentLibrary::Function(const char* name) noexcept {
    if (m_Module == nullptr && m_File.is_absolute()) {
        DWORD mode = 0;
        SetThreadErrorMode(SEM_FAILCRITICALERRORS, &mode);
        // What the component imports is looked for beside it, not beside the program that loads it.
        m_Module = LoadLibraryExW(m_File.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
        SetThreadErrorMode(mode, nullptr);
    }
    if (m_Module == nullptr) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(m_Module), name));
}

}  // namespace tb
