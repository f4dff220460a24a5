#include "components/TrawlbeamHelper/win32/HelperObject.h"

#include <exdisp.h>

#include "components/TrawlbeamHelper/win32/BrowserEvents.h"

namespace tb {

namespace {

// The window of the browser, for boxes; none for a site that is no browser.
HWND WindowOf(IUnknown* site) {
    const auto browser = ComPointer<IWebBrowser2>::AskFor(site);
    SHANDLE_PTR window = 0;
    if (!browser || FAILED(browser->get_HWND(&window))) return nullptr;
    return reinterpret_cast<HWND>(window);
}

}  // namespace

HRESULT STDMETHODCALLTYPE HelperObject::SetSite(IUnknown* site) noexcept {
    Disconnect();
    if (site == nullptr) return S_OK;
    return Guarded([&] { return Connect(site); });
}

HRESULT HelperObject::Connect(IUnknown* site) {
    const auto points = ComPointer<IConnectionPointContainer>::AskFor(site);
    if (!points) return E_NOINTERFACE;
    ComPointer<IConnectionPoint> events;
    if (FAILED(points->FindConnectionPoint(DIID_DWebBrowserEvents2, events.Receive()))) return E_NOINTERFACE;
    const ComPointer<BrowserEvents> sink(new BrowserEvents(m_Folder, WindowOf(site)));
    const HRESULT advised = events->Advise(sink.Get(), &m_Cookie);
    if (FAILED(advised)) return advised;
    m_Point = std::move(events);
    m_Site = ComPointer<IUnknown>::Share(site);
    return S_OK;
}

void HelperObject::Disconnect() noexcept {
    if (m_Point) m_Point->Unadvise(m_Cookie);
    m_Point = {};
    m_Site = {};
}

HRESULT STDMETHODCALLTYPE HelperObject::GetSite(REFIID id, void** site) noexcept {
    if (site == nullptr) return E_POINTER;
    *site = nullptr;
    return m_Site ? m_Site->QueryInterface(id, site) : E_FAIL;
}

}  // namespace tb
