// What a browser window tells while it navigates. Thread: that of the window.
#pragma once

#include "components/TrawlbeamHelper/win32/ProgramFolderServices.h"
#include "components/TrawlbeamHelper/win32/ServedObject.h"

namespace tb {

// Cancels the navigation to a page that must be blocked, in the window and in its frames; hears nothing else.
class BrowserEvents : public ServedObject<IDispatch> {
public:
    BrowserEvents(const std::filesystem::path& folder, HWND owner) : m_Services(folder, owner), m_Check(m_Services) {}

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override;

private:
    bool IsAlso(REFIID id) const noexcept override;
    void BeforeNavigate(const VARIANT& url, VARIANT_BOOL& cancel);

    ProgramFolderServices m_Services;
    PageCheck m_Check;
};

}  // namespace tb
