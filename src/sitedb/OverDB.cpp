#include "sitedb/OverDB.h"

#include <algorithm>

#include "components/tbXML/XmlText.h"
#include "platform/AtomicWrite.h"
#include "platform/BadFile.h"
#include "sitedb/HostSuffixes.h"
#include "sitedb/OverridesFile.h"
#include "urlcheck/url/UrlAuthority.h"
#include "urlcheck/url/UrlDecode.h"

namespace tb {

namespace {

constexpr size_t SchemeLetters = 4;
constexpr const char* LoadError = "Override Database Load Error: ";

// True when no suffix of the URL's host can fail as a key: all of it is ASCII, no label is empty.
bool HasPlainHost(TextView url) {
    const std::optional<TextView> host = UrlAuthority(url);
    if (!host) return false;
    char last = '.';
    for (const char character : *host) {
        if (static_cast<std::uint8_t>(character) >= 0x80 || (character == '.' && last == '.')) return false;
        last = character;
    }
    return last != '.';
}

Text StoredForm(const Text& url) { return Text(WithoutTrailingSlashes(UrlDecode(LowerCase(url)))); }

}  // namespace

OverDB::OverDB(Files& files, Clock& clock, std::filesystem::path file, DateSeparators separators)
    : m_Files(files), m_Clock(clock), m_File(std::move(file)), m_Separators(separators) {
    m_Domains.IgnoreCase(true);
}

std::vector<Text> OverDB::URLS() const {
    if (m_Count < 1) throw Error(ErrorNumber::Subscript);
    std::vector<Text> urls(static_cast<size_t>(m_Count));
    size_t next = 0;
    for (const UrlListPtr& list : m_Domains.Values()) {
        for (const Text& url : *list) At(urls, next++) = url;
    }
    return urls;
}

bool OverDB::IsOverride(const Text& URL) noexcept {
    return TrapOr(
        false, [&] { return FindHit(URL); }, Failure("Override Database IsOverride Error: "));
}

bool OverDB::FindHit(TextView text) const {
    // Most users have none, and then only a host that is no key makes a difference.
    if (m_Domains.Count() == 0 && HasPlainHost(text)) return false;
    for (HostSuffixes url(text); url.Next();) {
        const UrlListPtr list = m_Domains.Item(Text(url.Suffix()));
        if (!list) continue;
        const Text candidate = Text(url.BeforeHost()) + Text(url.FromSuffix());
        const auto matches = [&](const Text& held) { return SiteMatch::InitialMatch(candidate, UrlDecode(held)); };
        if (std::any_of(list->begin(), list->end(), matches)) return true;
    }
    return false;
}

void OverDB::AddToDB(const Text& URL) noexcept {
    Trap(
        [&] {
            Text url = StoredForm(URL);
            if (Left(url, SchemeLetters) != "http") url.insert(0, "http://");
            const std::optional<TextView> host = UrlAuthority(url);
            if (!host) return Log("OverDB.AddToDB: bad entry (" + url + ")");
            const Text domain(*host);
            UrlListPtr list = m_Domains.Item(domain);
            if (!list) {
                m_Domains.Add(domain, std::make_shared<UrlList>(1, url));
            } else if (std::find(list->begin(), list->end(), url) != list->end()) {
                return Log("OverDB.AddToDB: dup entry - " + url);
            } else {
                list->push_back(url);
                m_Domains.Item(domain, list);
            }
            ++m_Count;
        },
        Failure("OverDB.AddToDB Error: "));
}

void OverDB::DelFromDB(const Text& URL) noexcept {
    Trap(
        [&] {
            const Text url = StoredForm(URL);
            const std::optional<TextView> host = UrlAuthority(url);
            if (!host) return Log("OverDB.DelFromDB: bad entry (" + url + ")");
            const Text domain(*host);
            const UrlListPtr list = m_Domains.Item(domain);
            if (!list) return Log("OverDB.DelFromDB: no domain (" + domain + ")");
            const auto found = std::find(list->begin(), list->end(), url);
            if (found != list->end()) {
                list->erase(found);
                --m_Count;
            }
            if (!list->empty()) return;
            m_Domains.Remove(domain);
            Log("OverDB.DelFromDB: domain removed (" + domain + ")");
        },
        Failure("OverDB.DelFromDB Error: "));
}

void OverDB::LoadDB() noexcept {
    Trap(
        [&] {
            m_KeepBadFile = false;
            if (!IsThere(m_Files, m_File)) SaveDB();
            const OverridesFile file = OverridesFile::Read(ReadWholeFile(m_Files, m_File));
            m_Domains.RemoveAll();
            m_Count = 0;
            for (const Text& url : file.URLs) AddToDB(url);
            m_Count = static_cast<std::int32_t>(file.URLs.size());
            if (!file.Defect) return;
            m_KeepBadFile = true;
            Log(LoadError + file.Defect->Line() + "; read one by one: " + std::to_string(file.URLs.size()) +
                    " overrides, " + std::to_string(file.Lost) + " lost",
                LogLevel::Always);
        },
        [this](const RuntimeError& error) {
            m_KeepBadFile = true;
            Failure(LoadError)(error);
        });
}

void OverDB::SaveDB() noexcept {
    Trap(
        [&] {
            const Text content = FileText();
            if (m_KeepBadFile) KeepBadFile(m_Files, m_File);
            m_KeepBadFile = false;
            WriteFileAtomically(m_Files, m_File, [&](FileWriter& writer) { writer.Write(content); });
        },
        Failure("Override Database Save Error: "));
}

Text OverDB::FileText() const {
    std::vector<Text> urls;
    if (m_Domains.Count() != 0) {
        for (const UrlListPtr& list : m_Domains.Values()) urls.insert(urls.end(), list->begin(), list->end());
    }
    return OverridesFile::Written(urls, EscapedValue(FormatDateTime(m_Clock.Now(), m_Separators)));
}

}  // namespace tb
