// The published list of sites and the record of its changes. Every publication has a stamp of its own, later than all
// before it; what a client at one stamp lacks is the changes recorded behind that stamp, in order.
#pragma once

#include <functional>

#include "service/store/Database.h"
#include "service/store/SiteEntry.h"
#include "service/store/Stamp.h"

namespace tb {

struct Publication {
    Text Stamp;
    // Number of its last change. Changes are numbered from 1 on through all publications.
    std::int64_t LastChange = 0;
    // Sites in the list since then.
    std::int64_t Sites = 0;
    // Sites that came and went with it; one whose category or date changed counts in both.
    std::int64_t Added = 0;
    std::int64_t Removed = 0;

    // The state of a store before its first publication: it says nothing about any site. A list that was emptied is
    // another thing.
    bool IsNone() const { return LastChange == 0; }
};

struct Change {
    std::int64_t Number = 0;
    bool IsAdded = false;
    Site Entry;
};

struct ImportResult {
    std::int64_t Added = 0;
    std::int64_t Changed = 0;
    std::int64_t Unchanged = 0;
    // Given before with the same URL; the first one counts.
    std::int64_t Repeated = 0;
};

// Every operation raises a StoreError, and the list is then as it was.
class SiteHistory {
public:
    // The database must outlive the history.
    explicit SiteHistory(Database& database, UtcNow now = SystemUtcNow);

    // Adds sites and changes the category and date of those that are listed already, as one publication; nothing is
    // published when nothing differs. A changed site leaves its place and comes in again at the end.
    ImportResult Import(const std::vector<Site>& sites);
    // Removes those that are listed, as one publication; returns their URLs.
    std::vector<Text> Remove(const std::vector<Text>& urls);

    Publication Latest();
    // Those that the record reaches back to, oldest first. What a client at one of their stamps lacks is known; the
    // record of the oldest itself is gone. Never empty: before the first import it is the one of NoSitesStamp.
    std::vector<Publication> Recorded();
    // The recorded changes, in order.
    void ForEachChange(const std::function<void(const Change&)>& visit);
    // The list, in the order of adding. `visit` returns False to end early.
    void ForEachSite(const std::function<bool(const Site&)>& visit);

    // The record is cut to this many changes, by whole publications: beyond it the list itself is the shorter answer.
    static std::int64_t RecordLimit(std::int64_t sites);

private:
    Publication Publish();
    void Record(const Publication& last, const Publication& next);
    void Forget(const Publication& latest);

    Database& m_Database;
    UtcNow m_Now;
};

}  // namespace tb
