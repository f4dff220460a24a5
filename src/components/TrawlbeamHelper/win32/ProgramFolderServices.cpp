#include "components/TrawlbeamHelper/win32/ProgramFolderServices.h"

#include "components/TrawlbeamHelper/win32/HostAddresses.h"
#include "components/tbBHOCfg/HelperIdentity.h"
#include "components/tbBHOCfg/tbBHOCfg.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

HelperOptions Read(const tbBHOCfg& configuration) {
    HelperOptions options;
    options.CheckOff = configuration.Flag(BHOOption::CheckOff);
    options.ShowAlert = configuration.Flag(BHOOption::ShowAlert);
    options.Messages = configuration.Flag(BHOOption::Messages);
    options.WithNumber = configuration.Get(BHOSection::Options, 0, BHOOption::MessageDetail) == "2";
    for (const Text& title : {configuration.Get(BHOSection::Product, 0, "ProductName"),
                              configuration.Get(BHOSection::Alert, 0, "Caption")}) {
        if (!title.empty()) options.Title = title;
    }
    return options;
}

}  // namespace

ProgramFolderServices::ProgramFolderServices(const std::filesystem::path& folder, HWND owner)
    : m_File(folder / HelperConfigurationFile),
      m_Configuration(folder / tbBHOCfgFace::File),
      m_Bridge(folder / tbBHBridgeFace::File),
      m_Owner(owner) {}

HelperOptions ProgramFolderServices::Options() {
    HelperOptions options;
    Trap(
        [&] {
            tbBHOCfg configuration(FaceOf<tbBHOCfgFace>(m_Configuration.Function(tbBHOCfgFace::Entry)));
            configuration.Load(m_File);
            options = Read(configuration);
        },
        [](const RuntimeError&) { /* the defaults */ });
    return options;
}

Text ProgramFolderServices::Addresses(const Text& host) { return HostAddresses(host, ResolveMilliseconds); }

void ProgramFolderServices::Show(const Text& title, const Text& message) noexcept {
    Trap(
        [&] {
            MessageBoxW(m_Owner, ToSystem(message).c_str(), ToSystem(title).c_str(),
                        MB_OK | MB_ICONWARNING | MB_SETFOREGROUND);
        },
        [](const RuntimeError&) { /* no memory for the texts */ });
}

tbBHBridge ProgramFolderServices::Bridge() {
    return tbBHBridge(FaceOf<tbBHBridgeFace>(m_Bridge.Function(tbBHBridgeFace::Entry)));
}

}  // namespace tb
