// Domains that the reference data declares as beyond suspicion; in memory only.
// Thread: the user-interface thread.
#pragma once

#include "base/event.h"
#include "base/log.h"
#include "sitedb/HashTable.h"
#include "sitedb/SiteMatch.h"

namespace tb {

// Every operation has its trap: a failure gives one line of level 0 through LogMessage and the neutral value.
class WhiteListDB {
public:
    WhiteListDB();
    WhiteListDB(const WhiteListDB&) = delete;
    WhiteListDB& operator=(const WhiteListDB&) = delete;

    // Every line for the log. The program connects nobody: there the lines go nowhere.
    Event<Text, LogLevel> LogMessage;

    std::int32_t Count() const { return m_Domains.Count(); }
    // True when a domain of the list is the host or one of its suffixes of at least two labels. `Host` is no URL: a
    // port belongs to its last label. A host of one label counts when it is itself on the list.
    bool isWhiteList(const Text& Host) noexcept;
    // Blanks around the domain stay part of it. A domain that is there, in whatever case, gives a line of level 1.
    void AddToDB(const Text& Domain) noexcept;

private:
    // Nothing but the keys counts.
    struct Nothing {};

    void Log(const Text& message, LogLevel level) const { LogMessage.Raise(message, level); }

    HashTable<Nothing> m_Domains;
    SiteMatch m_Match;
};

}  // namespace tb
