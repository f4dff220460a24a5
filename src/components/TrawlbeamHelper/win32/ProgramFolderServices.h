// The helper's services by the components and the file that lie in one folder.
#pragma once

#include <windows.h>

#include <filesystem>

#include "components/TrawlbeamHelper/PageCheck.h"
#include "components/tbBHBridge/tbBHBridge.h"
#include "platform/win32/ComponentLibrary.h"

namespace tb {

class ProgramFolderServices : public HelperServices {
public:
    // How long a page waits at most for its addresses and for the program's answer. The first is a resolver that works;
    // the program answers within milliseconds, unless it shows a message to the user.
    static constexpr std::uint32_t ResolveMilliseconds = 1500;
    static constexpr std::uint32_t AnswerMilliseconds = 2000;

    // Boxes belong to the window `owner`, which may be null.
    ProgramFolderServices(const std::filesystem::path& folder, HWND owner);

    // From TB.BIN, read anew. Without the file, or with a damaged one, those of HelperOptions: it must not take an
    // unreadable file to switch the check off.
    HelperOptions Options() override;
    bool Reachable() override { return Bridge().Locate(); }
    Text Addresses(const Text& host) override;
    std::optional<Text> Ask(const Text& fields) override { return Bridge().Ask(fields, AnswerMilliseconds); }
    void Show(const Text& title, const Text& message) noexcept override;

private:
    tbBHBridge Bridge();

    const std::filesystem::path m_File;
    ComponentLibrary m_Configuration;
    ComponentLibrary m_Bridge;
    const HWND m_Owner;
};

}  // namespace tb
