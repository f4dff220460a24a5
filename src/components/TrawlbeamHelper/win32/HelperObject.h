// The browser helper object: the browser makes one for each of its windows and hands the window in as the site.
#pragma once

#include <ocidl.h>

#include <filesystem>

#include "components/TrawlbeamHelper/win32/ServedObject.h"

namespace tb {

class HelperObject : public ServedObject<IObjectWithSite> {
public:
    // `folder` holds the configuration and the components.
    explicit HelperObject(std::filesystem::path folder) : m_Folder(std::move(folder)) {}

    // Listens to the site, and no longer to an earlier one; null is none. E_NOINTERFACE for a site without events.
    HRESULT STDMETHODCALLTYPE SetSite(IUnknown* site) noexcept override;
    // E_FAIL without a site.
    HRESULT STDMETHODCALLTYPE GetSite(REFIID id, void** site) noexcept override;

private:
    ~HelperObject() override { Disconnect(); }
    HRESULT Connect(IUnknown* site);
    void Disconnect() noexcept;

    const std::filesystem::path m_Folder;
    ComPointer<IUnknown> m_Site;
    ComPointer<IConnectionPoint> m_Point;
    DWORD m_Cookie = 0;
};

}  // namespace tb
