#include "service/store/SiteHistory.h"

#include <algorithm>

namespace tb {

namespace {

constexpr const char* PublicationColumns = "SELECT stamp, last_change, sites, added, removed FROM publications ";

Publication PublicationOf(Statement& row) {
    return {row.Bytes(0), row.Number(1), row.Number(2), row.Number(3), row.Number(4)};
}

// What a publication is made from, private to the connection: sites given, sites to go, sites to come, in order.
constexpr const char* EmptyWorkTables = R"(
    CREATE TEMP TABLE IF NOT EXISTS given(n INTEGER PRIMARY KEY, url BLOB UNIQUE, category BLOB, validated BLOB);
    CREATE TEMP TABLE IF NOT EXISTS gone(n INTEGER PRIMARY KEY, url BLOB, category BLOB, validated BLOB);
    CREATE TEMP TABLE IF NOT EXISTS come(n INTEGER PRIMARY KEY, url BLOB, category BLOB, validated BLOB);
    DELETE FROM given; DELETE FROM gone; DELETE FROM come)";

}  // namespace

SiteHistory::SiteHistory(Database& database, UtcNow now) : m_Database(database), m_Now(std::move(now)) {
    m_Database.Run("PRAGMA temp_store=MEMORY");
}

std::int64_t SiteHistory::RecordLimit(std::int64_t sites) { return std::clamp<std::int64_t>(sites, 1'000, 50'000); }

ImportResult SiteHistory::Import(const std::vector<Site>& sites) {
    m_Database.Run(EmptyWorkTables);
    {
        // Other writers need not wait for this: the tables are this connection's own.
        Transaction filling(m_Database, Transaction::Kind::Read);
        Statement give = m_Database.Prepare("INSERT OR IGNORE INTO given(url, category, validated) VALUES(?1, ?2, ?3)");
        for (const Site& site : sites) give.Bind(1, site.Url).Bind(2, site.Category).Bind(3, site.Validated).Run();
        filling.Commit();
    }
    Transaction transaction(m_Database, Transaction::Kind::Write);
    m_Database.Run(R"(
        INSERT INTO gone(url, category, validated)
            SELECT s.url, s.category, s.validated FROM given g CROSS JOIN sites s ON s.url = g.url
            WHERE s.category <> g.category OR s.validated <> g.validated ORDER BY g.n;
        INSERT INTO come(url, category, validated)
            SELECT g.url, g.category, g.validated FROM given g LEFT JOIN sites s ON s.url = g.url
            WHERE s.url IS NULL OR s.category <> g.category OR s.validated <> g.validated ORDER BY g.n)");
    const Publication published = Publish();
    transaction.Commit();
    ImportResult result;
    const std::int64_t given = m_Database.Ask("SELECT count(*) FROM given");
    result.Repeated = static_cast<std::int64_t>(sites.size()) - given;
    result.Changed = published.Removed;
    result.Added = published.Added - published.Removed;
    result.Unchanged = given - published.Added;
    m_Database.Run(EmptyWorkTables);
    return result;
}

std::vector<Text> SiteHistory::Remove(const std::vector<Text>& urls) {
    m_Database.Run(EmptyWorkTables);
    std::vector<Text> removed;
    Transaction transaction(m_Database, Transaction::Kind::Write);
    Statement go = m_Database.Prepare(
        "INSERT INTO gone(url, category, validated) SELECT url, category, validated FROM sites WHERE url = ?1 "
        "AND url NOT IN (SELECT url FROM gone) RETURNING 1");
    for (const Text& url : urls) {
        go.Bind(1, url);
        for (bool found = go.Step(); found; found = go.Step()) removed.push_back(url);
    }
    Publish();
    transaction.Commit();
    return removed;
}

// Makes a publication of the tables "gone" and "come", inside the caller's transaction. With both empty there is none,
// and the result has no stamp.
Publication SiteHistory::Publish() {
    Publication next;
    next.Removed = m_Database.Ask("SELECT count(*) FROM gone");
    next.Added = m_Database.Ask("SELECT count(*) FROM come");
    if (next.Removed + next.Added == 0) return next;
    const Publication last = Latest();
    next.Stamp = NextStamp(last.Stamp, m_Now());
    next.LastChange = last.LastChange + next.Removed + next.Added;
    next.Sites = last.Sites + next.Added - next.Removed;
    Record(last, next);
    m_Database.Run("DELETE FROM sites WHERE url IN (SELECT url FROM gone)");
    m_Database
        .Prepare(
            "INSERT INTO sites(number, url, category, validated) "
            "SELECT ?1 + n, url, category, validated FROM come ORDER BY n")
        .Bind(1, last.LastChange + next.Removed)
        .Run();
    m_Database.Prepare("INSERT INTO publications VALUES(?1, ?2, ?3, ?4, ?5)")
        .Bind(1, next.Stamp)
        .Bind(2, next.LastChange)
        .Bind(3, next.Sites)
        .Bind(4, next.Added)
        .Bind(5, next.Removed)
        .Run();
    Forget(next);
    return next;
}

// Sites go before others come, so that a changed one is never there twice.
void SiteHistory::Record(const Publication& last, const Publication& next) {
    // What would be forgotten at once need not be written.
    if (next.Removed + next.Added > RecordLimit(next.Sites)) return;
    const auto record = [&](const char* table, bool added, std::int64_t before) {
        m_Database
            .Prepare(Text("INSERT INTO changes(number, added, url, category, validated) "
                          "SELECT ?1 + n, ?2, url, category, validated FROM ") +
                     table + " ORDER BY n")
            .Bind(1, before)
            .Bind(2, std::int64_t{added})
            .Run();
    };
    record("gone", false, last.LastChange);
    record("come", true, last.LastChange + next.Removed);
}

void SiteHistory::Forget(const Publication& latest) {
    const std::int64_t oldest = latest.LastChange - RecordLimit(latest.Sites);
    m_Database.Prepare("DELETE FROM publications WHERE last_change < ?1").Bind(1, oldest).Run();
    m_Database.Run("DELETE FROM changes WHERE number <= (SELECT min(last_change) FROM publications)");
}

Publication SiteHistory::Latest() {
    Statement row = m_Database.Prepare(Text(PublicationColumns) + "ORDER BY last_change DESC LIMIT 1");
    if (!row.Step()) throw StoreError("the record of publications is empty");
    return PublicationOf(row);
}

std::vector<Publication> SiteHistory::Recorded() {
    std::vector<Publication> publications;
    Statement row = m_Database.Prepare(Text(PublicationColumns) + "ORDER BY last_change");
    while (row.Step()) publications.push_back(PublicationOf(row));
    return publications;
}

void SiteHistory::ForEachChange(const std::function<void(const Change&)>& visit) {
    Statement row = m_Database.Prepare("SELECT number, added, url, category, validated FROM changes ORDER BY number");
    while (row.Step()) visit({row.Number(0), row.Number(1) != 0, {row.Bytes(2), row.Bytes(3), row.Bytes(4)}});
}

void SiteHistory::ForEachSite(const std::function<bool(const Site&)>& visit) {
    Statement row = m_Database.Prepare("SELECT url, category, validated FROM sites ORDER BY number");
    while (row.Step()) {
        if (!visit({row.Bytes(0), row.Bytes(1), row.Bytes(2)})) return;
    }
}

}  // namespace tb
