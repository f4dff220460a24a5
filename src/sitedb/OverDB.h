// The sites and URLs that the user trusts whatever the list of malicious sites says. They are the user's own and lie in
// plain text. File format: docs/formats/site-overrides.md.
// Thread: the user-interface thread. Text is single-byte (see base/text.h).
#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "base/event.h"
#include "base/log.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "sitedb/HashTable.h"
#include "sitedb/SiteMatch.h"

namespace tb {

// Every operation but URLS has its trap: a failure gives one line of level 0 through LogMessage and the neutral value.
// Making and dropping an object can fail in nothing but memory, and has no line.
class OverDB {
public:
    // The overrides lie in `file`; `separators` are the user's, for the date in it. `files` and `clock` must outlive
    // the object.
    OverDB(Files& files, Clock& clock, std::filesystem::path file, DateSeparators separators = {});
    OverDB(const OverDB&) = delete;
    OverDB& operator=(const OverDB&) = delete;

    // Every line for the log.
    Event<Text, LogLevel> LogMessage;

    // URLs held. After a load: entries of the file, those that were refused too, until entries are added or removed.
    std::int32_t Count() const { return m_Count; }
    // All URLs in the order of the file, `Count` of them; where fewer are held, empty texts fill up. Raises error 9
    // when none is held.
    std::vector<Text> URLS() const;

    // True when an override is a text prefix of the URL, its host shortened to one of its suffixes. Overrides are
    // decoded once more for the comparison.
    bool IsOverride(const Text& URL) noexcept;

    // Adds an override in lower case, decoded, without trailing slashes; what does not begin with "http" becomes
    // "http://" and the text. A duplicate and a URL without a host change nothing but give a line of level 1.
    // Neither this nor DelFromDB saves.
    void AddToDB(const Text& URL) noexcept;
    // Removes an override, told with its scheme. One that is not there changes nothing.
    void DelFromDB(const Text& URL) noexcept;

    // Replaces what is held by the file, which is made if it is not there. Of one that is damaged all elements count
    // that have an end; a line of level 0 tells the defect and how many there are. On a failure what is held stays.
    void LoadDB() noexcept;
    // Writes the file, whole or not at all. One that was damaged or did not load is first copied to its name and
    // ".bad"; without that copy nothing is written.
    void SaveDB() noexcept;

private:
    // The URLs of one domain, in the order of adding.
    using UrlList = std::vector<Text>;
    using UrlListPtr = std::shared_ptr<UrlList>;

    bool FindHit(TextView text) const;
    Text FileText() const;
    void Log(const Text& message, LogLevel level = LogLevel::Debug) const { LogMessage.Raise(message, level); }
    // The handler of an operation's trap.
    auto Failure(const char* text) const {
        return [this, text](const RuntimeError& error) { Log(text + error.Line(), LogLevel::Always); };
    }

    HashTable<UrlListPtr> m_Domains;
    Files& m_Files;
    Clock& m_Clock;
    std::filesystem::path m_File;
    DateSeparators m_Separators;
    std::int32_t m_Count = 0;
    // The file is one that is damaged or did not load, and no copy of it has been made.
    bool m_KeepBadFile = false;
};

}  // namespace tb
