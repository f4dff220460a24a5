// Makes browser helper objects for the system.
#pragma once

#include <filesystem>

#include "components/TrawlbeamHelper/win32/ServedObject.h"

namespace tb {

class HelperFactory : public ServedObject<IClassFactory> {
public:
    explicit HelperFactory(std::filesystem::path folder) : m_Folder(std::move(folder)) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override;

private:
    const std::filesystem::path m_Folder;
};

}  // namespace tb
