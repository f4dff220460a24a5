#include "sitedb/EvilDB.h"
#include "sitedb/KeptEntries.h"
#include "sitedb/UpdateReply.h"
#include "sitedb/codec/Encryption.h"
#include "sitedb/codec/UrlEncode.h"

namespace tb {

namespace {

constexpr const char* Page = "MalDB.aspx";
constexpr TextView StartAnew = "1";
constexpr char LineEnd = '\n';
// With this many line ends changes are not logged line by line any more.
constexpr std::int64_t LongUpdate = 50;
constexpr std::int16_t SnapshotsKept = 5;

class EventLog : public LogSink {
public:
    explicit EventLog(const Event<Text, LogLevel>& lines) : m_Lines(lines) {}
    void WriteLog(const Text& message, LogLevel level) noexcept override { m_Lines.Raise(message, level); }

private:
    const Event<Text, LogLevel>& m_Lines;
};

std::int64_t CountOf(char character, TextView text) {
    std::int64_t count = 0;
    for (size_t at = text.find(character); at != TextView::npos; at = text.find(character, at + 1)) ++count;
    return count;
}

}  // namespace

Text EvilDB::Load(const Text& ClientKey) noexcept {
    Trap(
        [&] {
            bool corrupt = false;
            if (!RestoreDB(corrupt) || corrupt) Update(ClientKey);
        },
        Failure("Malicious Database Load Error: "));
    return {};
}

Text EvilDB::Update(const Text& ClientKey) noexcept {
    if (m_IsUpdating || m_IsClosed) return {};
    Trap(
        [&] {
            const Text post = "Key=" + UrlEncode(ClientKey) + "&TS=" + m_LastTimestamp;
            const ElementPtr servers = m_Host.UpdateServers();
            if (!servers) return;
            m_IsUpdating = true;
            Text reply;
            const Text error = TheSender().PostRequest(servers, Page, post, reply, {});
            m_IsUpdating = false;
            if (!m_IsClosed) TakeReply(error, std::move(reply));
        },
        [&](const RuntimeError& error) {
            m_IsUpdating = false;
            if (!m_IsClosed) Failure("Malicious Database Update Error: ")(error);
        });
    return {};
}

void EvilDB::TakeReply(const Text& error, Text reply) {
    if (!error.empty()) return Log("MalDB.Update: " + error + SinceStamp());
    if (reply.empty()) return Log("MalDB.Update: No data" + SinceStamp());
    Text plain;
    EventLog lines(LogMessage);
    if (!ChkEncryptString(reply, plain, lines)) return Log("MalDB.Update: Invalid data format" + SinceStamp());
    // It can be large.
    Text().swap(reply);
    TakeChanges(plain);
}

void EvilDB::TakeChanges(TextView plain) {
    const std::int64_t highestLine = CountOf(LineEnd, plain);
    if (highestLine == 0) throw Error(ErrorNumber::Subscript);
    TextView rest = plain;
    const Text stamp(TakeLine(rest));
    const TextView mode = TakeLine(rest);
    if (mode.empty()) {
        if (m_Guard) m_Guard->HasNothingNew(m_Domains.EntryCount());
        return Log("MalDB.Update: Received update, no data" + SinceStamp());
    }
    if (m_Guard && !PassesGuard(stamp, mode == StartAnew, rest)) return;
    if (mode == StartAnew) {
        Log("MalDB.Update, RemoveAll" + SinceStamp());
        m_Domains.RemoveAll();
    }
    Log("Received: " + std::to_string(highestLine - 2) + SinceStamp());
    Changes changes;
    while (!rest.empty()) Apply(TakeLine(rest), highestLine < LongUpdate, changes);
    m_Domains.PackIfSparse();
    SaveDB(stamp, Fingerprint());
    // Also when it was not saved: the list is as of this stamp, and the next update saves it.
    m_LastTimestamp = stamp;
    if (m_Guard) m_Guard->Holds(stamp, m_Domains.EntryCount());
    PruneFiles(SnapshotsKept, stamp);
    EvilAdded.Raise(changes.Added, changes.Deleted);
}

bool EvilDB::PassesGuard(const Text& stamp, bool anew, TextView changes) {
    if (!m_Guard->TakesStamp(stamp)) return false;
    const std::int64_t held = m_Domains.EntryCount();
    return m_Guard->Passes(CountKept(m_Domains, anew, changes, m_Guard->LeastKept(held)), held);
}

void EvilDB::Apply(TextView line, bool logged, Changes& changes) {
    if (line.empty()) return;
    const ChangeLine change(line);
    if (!change.IsWhole()) {
        return Log("MalDB.Update: incorrect urlEntryParts," + Text(line) + ", count (" +
                   std::to_string(change.Count - 1) + ")");
    }
    const auto& [mark, url, category, validated] = change.Fields;
    const bool adds = change.Adds();
    if (logged) {
        Log(Text("MalDB.Update ") + (adds ? "AddToDB (" : "DelFromDB (") + Text(url) + " " + Text(category) + " " +
            Text(validated) + ")");
    }
    if (adds) {
        AddToDB(url, category, validated);
        ++changes.Added;
    } else {
        DelFromDB(url, category, validated);
        ++changes.Deleted;
    }
}

}  // namespace tb
