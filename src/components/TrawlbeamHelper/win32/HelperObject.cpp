#include "components/TrawlbeamHelper/win32/HelperObject.h"

#include <exdisp.h>

#include "components/TrawlbeamHelper/win32/BrowserEvents.h"

namespace tb {

namespace {

// The window of the browser, for boxes; none for a site that is no browser.
HWND WindowOf(IUnknown* site) {
    const Reference<IWebBrowser2> browser = AskFor<IWebBrowser2>(site);
    SHANDLE_PTR window = 0;
    if (!browser || FAILED(browser.Get()->get_HWND(&window))) return nullptr;
    return reinterpret_cast<HWND>(window);
}

}  // namespace

HRESULT STDMETHODCALLTYPE HelperObject::SetSite(IUnknown* site) noexcept {
    Disconnect();
    if (site == nullptr) return S_OK;
    HRESULT result = E_OUTOFMEMORY;
    Trap([&] { result = Connect(site); }, [](const RuntimeError&) { /* no memory */ });
    return result;
}

HRESULT HelperObject::Connect(IUnknown* site) {
    const Reference<IConnectionPointContainer> points = AskFor<IConnectionPointContainer>(site);
    if (!points) return E_NOINTERFACE;
    IConnectionPoint* point = nullptr;
    if (FAILED(points.Get()->FindConnectionPoint(DIID_DWebBrowserEvents2, &point))) return E_NOINTERFACE;
    Reference<IConnectionPoint> events(point);
    const Reference<BrowserEvents> sink(new BrowserEvents(m_Folder, WindowOf(site)));
    const HRESULT advised = events.Get()->Advise(sink.Get(), &m_Cookie);
    if (FAILED(advised)) return advised;
    m_Point = std::move(events);
    m_Site = Share(site);
    return S_OK;
}

void HelperObject::Disconnect() noexcept {
    if (m_Point) m_Point.Get()->Unadvise(m_Cookie);
    m_Point.Close();
    m_Site.Close();
}

HRESULT STDMETHODCALLTYPE HelperObject::GetSite(REFIID id, void** site) noexcept {
    if (site == nullptr) return E_POINTER;
    *site = nullptr;
    return m_Site ? m_Site.Get()->QueryInterface(id, site) : E_FAIL;
}

}  // namespace tb
