// The browser helper as the browser has it: registered, made by its class, hearing the events of a window.
#include <windows.h>

#include <exdisp.h>
#include <exdispid.h>
#include <gmock/gmock.h>
#include <objbase.h>
#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>

#include <future>

#include "components/TrawlbeamHelper/win32/ServedObject.h"
#include "components/tbBHBridge/tbBHBridgeFace.h"
#include "components/tbBHOCfg/HelperIdentity.h"
#include "components/tbBHOCfg/tbBHOCfg.h"
#include "platform/win32/ComponentLibrary.h"
#include "platform/win32/Win32Registry.h"
#include "platform/win32/Win32Text.h"
#include "windows/FakeChannel.h"
#include "windows/ProgramProcess.h"
#include "windows/ScratchFolder.h"

namespace tb {
namespace {

using testing::HasSubstr;

// A browser window as far as its helper sees it.
class BrowserWindow : public ServedObject<IConnectionPoint> {
public:
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override {
        *cookie = 7;
        return sink->QueryInterface(DIID_DWebBrowserEvents2, reinterpret_cast<void**>(m_Sink.Receive()));
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
        EXPECT_EQ(cookie, 7U);
        m_Sink = {};
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

    bool IsHeard() const { return static_cast<bool>(m_Sink); }
    // Whether the navigation was cancelled.
    bool Navigate(const wchar_t* url) {
        VARIANT address{};
        address.vt = VT_BSTR;
        address.bstrVal = SysAllocString(url);
        VARIANT_BOOL cancel = VARIANT_FALSE;
        VARIANT arguments[7]{};
        arguments[0].vt = VT_BOOL | VT_BYREF;
        arguments[0].pboolVal = &cancel;
        arguments[5].vt = VT_VARIANT | VT_BYREF;
        arguments[5].pvarVal = &address;
        DISPPARAMS parameters{arguments, nullptr, 7, 0};
        EXPECT_EQ(m_Sink->Invoke(DISPID_BEFORENAVIGATE2, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                                 nullptr),
                  S_OK);
        SysFreeString(address.bstrVal);
        return cancel != VARIANT_FALSE;
    }

private:
    ComPointer<IDispatch> m_Sink;
};

class Site : public ServedObject<IConnectionPointContainer> {
public:
    explicit Site(BrowserWindow* window) : m_Window(ComPointer<BrowserWindow>::Share(window)) {}
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID id, IConnectionPoint** point) override {
        if (!IsEqualIID(id, DIID_DWebBrowserEvents2)) return CONNECT_E_NOCONNECTION;
        return m_Window->QueryInterface(__uuidof(IConnectionPoint), reinterpret_cast<void**>(point));
    }

private:
    ComPointer<BrowserWindow> m_Window;
};

// A program folder of its own with the helper registered in it, as long as the object lives.
class BrowserHelper : public testing::Test {
protected:
    BrowserHelper() {
        CoInitialize(nullptr);
        for (const char* file : Files) std::filesystem::copy_file(BuiltProgram(file), Folder.Path() / file);
        EXPECT_EQ(Call("DllRegisterServer"), S_OK);
    }
    ~BrowserHelper() override {
        EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
        CoUninitialize();
        // So that the folder can go.
        for (const char* file : Files) Free(file);
    }

    static void Free(const char* file) {
        while (const HMODULE module = GetModuleHandleA(file)) FreeLibrary(module);
    }

    HRESULT Call(const char* name) {
        void* const function = ComponentLibrary(Folder.Path() / HelperFile).Function(name);
        return function == nullptr ? E_NOINTERFACE : reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(function)();
    }
    static ComPointer<IObjectWithSite> Make() {
        CLSID id{};
        CLSIDFromString(ToSystem(HelperCLSID).c_str(), &id);
        ComPointer<IObjectWithSite> helper;
        EXPECT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IObjectWithSite,
                                   reinterpret_cast<void**>(helper.Receive())),
                  S_OK);
        return helper;
    }
    void Configure(const char* flag, bool value) {
        ComponentLibrary library(Folder.Path() / tbBHOCfgFace::File);
        tbBHOCfg configuration(FaceOf<tbBHOCfgFace>(library.Function(tbBHOCfgFace::Entry)));
        configuration.Set(BHOSection::Alert, 0, "Caption", "Helper test");
        configuration.SetFlag(flag, value);
        configuration.Save(Folder.Path() / HelperConfigurationFile);
    }

    static constexpr const char* Files[] = {HelperFile, tbBHOCfgFace::File, tbBHBridgeFace::File};

    // The class in the registry is one for all.
    OnlyProgram Only;
    ScratchFolder Folder;
    ComPointer<BrowserWindow> Window{new BrowserWindow};
    ComPointer<Site> Browser{new Site(Window.Get())};
};

constexpr const wchar_t* Page = L"http://127.0.0.7:8080/a%20page";

TEST_F(BrowserHelper, BlocksWhatTheProgramNames) {
    const ComPointer<IObjectWithSite> helper = Make();
    ASSERT_TRUE(helper);
    ASSERT_EQ(helper->SetSite(Browser.Get()), S_OK);
    FakeChannel program;
    EXPECT_FALSE(Window->Navigate(Page)) << "not listed";
    EXPECT_EQ(program.Request().substr(program.Request().find('\t')),
              "\tCheck\thttp://127.0.0.7:8080/a%20page\t127.0.0.7");
    EXPECT_FALSE(Window->Navigate(L"about:blank"));

    program.Reply = "Validated: 11/01/2026  (Category: Test)";
    Configure(BHOOption::CheckOff, false);
    std::future<Text> told = std::async(std::launch::async, &AnswerBox, GetCurrentProcessId(), "Helper test", "", "OK");
    EXPECT_TRUE(Window->Navigate(Page));
    EXPECT_THAT(told.get(), HasSubstr("http://127.0.0.7:8080/a%20page\r\n\r\n" + program.Reply));
    Configure(BHOOption::CheckOff, true);
    EXPECT_FALSE(Window->Navigate(Page));
    Configure(BHOOption::ShowAlert, false);
    EXPECT_TRUE(Window->Navigate(Page)) << "without a box";

    // A program that hangs delays the page and no more.
    program.Hang();
    EXPECT_FALSE(Window->Navigate(Page));

    EXPECT_EQ(helper->SetSite(nullptr), S_OK);
    EXPECT_FALSE(Window->IsHeard());
}

TEST_F(BrowserHelper, LetsPagesPassWithoutProgramBridgeOrConfiguration) {
    {
        const ComPointer<IObjectWithSite> helper = Make();
        ASSERT_EQ(helper->SetSite(Browser.Get()), S_OK);
        EXPECT_FALSE(Window->Navigate(Page)) << "no program";
        EXPECT_EQ(Call("DllCanUnloadNow"), S_FALSE);
    }
    EXPECT_FALSE(Window->IsHeard()) << "a helper that goes lets go of the window";
    EXPECT_EQ(Call("DllCanUnloadNow"), S_OK);
    for (const char* file : {tbBHOCfgFace::File, tbBHBridgeFace::File}) {
        Free(file);
        std::filesystem::remove(Folder.Path() / file);
    }
    const ComPointer<IObjectWithSite> helper = Make();
    ASSERT_EQ(helper->SetSite(Browser.Get()), S_OK);
    EXPECT_FALSE(Window->Navigate(Page)) << "no bridge";
    EXPECT_EQ(helper->SetSite(Window.Get()), E_NOINTERFACE) << "a site without events";

    Win32Registry registry;
    const Text key = Text("CLSID\\") + HelperCLSID;
    EXPECT_EQ(registry.ReadText(RegistryRoot::ClassesRoot, key + "\\InprocServer32", "ThreadingModel"), "Apartment");
    EXPECT_EQ(Call("DllUnregisterServer"), S_OK);
    EXPECT_FALSE(registry.KeyExists(RegistryRoot::ClassesRoot, key)) << "and a second time is no failure";
}

}  // namespace
}  // namespace tb
