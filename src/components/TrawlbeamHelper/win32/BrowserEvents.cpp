#include "components/TrawlbeamHelper/win32/BrowserEvents.h"

#include <exdisp.h>
#include <exdispid.h>

#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

// Arguments come last first: cancel, headers, posted data, frame, flags, URL, the navigating object.
constexpr UINT CancelArgument = 0;
constexpr UINT UrlArgument = 5;
constexpr UINT ArgumentCount = 7;

// The URL itself may lie behind a reference.
const VARIANT& Plain(const VARIANT& value) {
    return value.vt == (VT_VARIANT | VT_BYREF) && value.pvarVal != nullptr ? *value.pvarVal : value;
}

}  // namespace

bool BrowserEvents::IsAlso(REFIID id) const noexcept { return IsEqualIID(id, DIID_DWebBrowserEvents2); }

HRESULT STDMETHODCALLTYPE BrowserEvents::GetTypeInfoCount(UINT* count) noexcept {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE BrowserEvents::Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                                EXCEPINFO*, UINT*) noexcept {
    if (member != DISPID_BEFORENAVIGATE2) return S_OK;
    if (parameters == nullptr || parameters->cArgs != ArgumentCount) return DISP_E_BADPARAMCOUNT;
    const VARIANT& cancel = parameters->rgvarg[CancelArgument];
    if (cancel.vt != (VT_BOOL | VT_BYREF) || cancel.pboolVal == nullptr) return DISP_E_TYPEMISMATCH;
    // The browser may let go of its helper while the user reads the alert.
    const auto self = ComPointer<IDispatch>::Share(this);
    Trap([&] { BeforeNavigate(Plain(parameters->rgvarg[UrlArgument]), *cancel.pboolVal); },
         [](const RuntimeError&) { /* no memory for the URL: the page passes */ });
    return S_OK;
}

void BrowserEvents::BeforeNavigate(const VARIANT& url, VARIANT_BOOL& cancel) {
    if (url.vt != VT_BSTR || url.bstrVal == nullptr) return;
    if (m_Check.MustBlock(FromSystem({url.bstrVal, SysStringLen(url.bstrVal)}))) cancel = VARIANT_TRUE;
}

}  // namespace tb
