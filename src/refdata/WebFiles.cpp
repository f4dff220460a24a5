#include "refdata/WebFiles.h"

#include "base/errors.h"
#include "platform/AtomicWrite.h"
#include "refdata/DataGuard.h"
#include "refdata/mFileInfo.h"
#include "shell/helpers/SettingValues.h"
#include "shell/helpers/Versions.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

constexpr TextView DateHeader = "Last-Modified:";
constexpr long DateLength = 50;

}  // namespace

bool WebFiles::GetFileFromWebService(const ElementPtr& Server, const Text& Page, const Text& File) noexcept {
    return TrapOr(
        false, [&] { return Server != nullptr && Fetch(Server, Page, File); },
        [&](const RuntimeError& error) { Refuse("GetFileFromWebService Error: " + error.Line()); });
}

bool WebFiles::Fetch(const ElementPtr& Server, const Text& Page, const Text& File) const {
    const std::unique_ptr<Sender> sender = MakeSender();
    const std::optional<Date> date = ServerDate(*sender, Server, File);
    if (!date) return Refuse("Error retrieving file head from " + Page);
    if (!IsWanted(*date, File)) return false;
    Text reply;
    const Text error = sender->PostRequest(Server, Page, {}, reply, {});
    if (!error.empty()) return Refuse("Error retreiving file from " + Page + " " + error);
    // Only a whole reply may take the place of a good file.
    Text plain;
    if (!ChkEncryptString(reply, plain, m_Access.Log)) {
        return Refuse("Error with ChkEncryptString, decrypt: " + std::to_string(reply.size()));
    }
    const DataGuard guard(m_Access);
    if (!guard.Admits(File, plain, *date)) return false;
    guard.KeepLast(File);
    WriteFileAtomically(m_Access.Program.System.Files, m_Access.DataFile(File),
                        [&](FileWriter& writer) { writer.Write(reply); });
    return true;
}

std::optional<Date> WebFiles::ServerDate(Sender& sender, const ElementPtr& Server, const Text& File) const {
    ResponseHead head;
    sender.GetHead(Server, File, {}, head);
    const size_t start = head.Text.find(DateHeader);
    if (start == Text::npos) return std::nullopt;
    // Behind the word and one blank.
    const size_t position = start + DateHeader.size() + 2;
    return ParseHttpDate(Mid(head.Text, static_cast<long>(position), DateLength));
}

std::unique_ptr<Sender> WebFiles::MakeSender() const {
    std::unique_ptr<Sender> sender = m_Access.MakeSender();
    sender->Key(GetClientKey(m_Access.Program));
    return sender;
}

bool WebFiles::IsWanted(const Date& date, const Text& File) const {
    if (DataGuard(m_Access).WasRefused(File, date)) return false;
    Files& files = m_Access.Program.System.Files;
    const std::filesystem::path path = m_Access.DataFile(File);
    if (!files.Exists(path)) return true;
    Date created;
    Date accessed;
    Date modified;
    GetFileDates(files, path, created, accessed, modified);
    return date > modified;
}

bool WebFiles::Refuse(const Text& line) const {
    m_Access.Log.WriteLog(line, LogLevel::Always);
    return false;
}

}  // namespace tb
