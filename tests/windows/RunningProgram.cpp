#include "windows/RunningProgram.h"

#include "components/tbBHBridge/ChannelNames.h"
#include "platform/win32/Win32Files.h"
#include "sitedb/EvilDB.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

// "mm/dd/yyyy hh:mm:ss".
constexpr size_t LogPrefix = 19;

struct NoReferenceData : EvilDBHost {
    Text CategoryName(const Text&) override { return {}; }
    bool IsDebugMode() override { return false; }
};

}  // namespace

ProgramFolder::ProgramFolder() {
    for (const Text& name : Split(TRAWLBEAM_INSTALLED, '|')) {
        std::filesystem::copy_file(BuiltProgram(name.c_str()), Path() / name);
    }
    WriteSnapshot();
    WriteData("defaults.bin", EncryptStringChk("<Defaults/>"));
}

void ProgramFolder::WriteSnapshot() const {
    std::filesystem::create_directory(Path() / "Data");
    Win32Files files;
    NoReferenceData host;
    EvilDB list(files, host, Path() / "Data");
    for (const char* url : Listed) list.AddToDB(url, "2", "11/21/2026");
    if (!list.SaveDB("202611210900", list.Fingerprint())) throw RuntimeError(1, "no snapshot");
}

void ProgramFolder::WriteSetting(const Text& section, const Text& key, const Text& value) const {
    const auto file = Win32Files().OpenForWriting(Path() / "Trawlbeam.ini");
    file->Write("<INI DATE='01/01/2026 00:00:00'>\r\n<SECTION name='" + section + "'>\r\n<ELEMENT NAME='" + key + "'>" +
                value + "</ELEMENT>\r\n</SECTION>\r\n</INI>\r\n");
    file->Finish();
}

void ProgramFolder::WriteData(const char* name, const Text& bytes) const {
    const auto file = Win32Files().OpenForWriting(Path() / "Data" / name);
    file->Write(bytes);
    file->Finish();
}

Text ProgramFolder::Settings() const {
    Win32Files files;
    return files.Exists(Path() / "Trawlbeam.ini") ? ReadWholeFile(files, Path() / "Trawlbeam.ini") : Text();
}

Text ProgramFolder::Log() const {
    Text lines;
    for (const auto& name : Win32Files().List(Path() / "Log")) {
        // The program opens it for writing again and again: others must let it.
        const OwnedFile file(CreateFileW((Path() / "Log" / name).c_str(), GENERIC_READ,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
        Text whole(GetFileSize(file.Get(), nullptr), '\0');
        DWORD read = 0;
        ReadFile(file.Get(), whole.data(), static_cast<DWORD>(whole.size()), &read, nullptr);
        for (const TextView line : SplitViews(whole, '\n')) {
            if (line.size() > LogPrefix) lines += RemoveAll(line.substr(LogPrefix), "\r") + "\n";
        }
    }
    return lines;
}

RunningProgram::RunningProgram() : RunningProgram(std::make_shared<ProgramFolder>()) {}

RunningProgram::RunningProgram(std::shared_ptr<ProgramFolder> folder, const Text& lastLine)
    : m_Folder(std::move(folder)), m_Process(m_Folder->Path() / "Trawlbeam.exe") {
    WaitUntilReady(lastLine);
}

void RunningProgram::WaitUntilReady(const Text& lastLine) {
    const bool ready = Eventually(
        [&] { return (Box() != 0 && m_Folder->Log().ends_with(lastLine)) || m_Process.WaitForEnd(0) != STILL_ACTIVE; });
    if (!ready || Box() == 0) throw RuntimeError(1, "the program does not come up: " + m_Folder->Log());
    m_ReadyAt = m_Folder->Log().size();
}

HWND RunningProgram::Top() { return ToHwnd(m_Windows.FindTopLevel(NormalClasses.Window, ChannelCaption)); }

WindowHandle RunningProgram::Box() { return m_Windows.FindChild(ToWindowHandle(Top()), NormalClasses.TextBox); }

DWORD RunningProgram::ExitThroughTray(bool answerYes) {
    return ProgramProcess(BuiltProgram("tbprobe.exe"), answerYes ? L"--exit" : L"--refuse-exit").WaitForEnd();
}

}  // namespace tb
