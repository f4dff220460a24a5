#include "service/store/Updates.h"

#include <algorithm>

#include "components/tbXML/Document.h"
#include "refdata/manifest/UpdateManifest.h"

namespace tb {

namespace {

PublishedUpdate UpdateOf(Statement& row) {
    return {static_cast<std::int32_t>(row.Number(0)), row.Bytes(1), {}, row.Bytes(2), Date(row.Number(3))};
}

}  // namespace

void Updates::Publish(const PublishedUpdate& update, const std::vector<ReleaseFile>& files) {
    Document manifest;
    manifest.LoadXML(update.Manifest);
    Transaction transaction(m_Database, Transaction::Kind::Write);
    const std::int64_t last = LastNumber();
    if (update.Number <= last) {
        throw InputError("number " + std::to_string(update.Number) + " is not above " + std::to_string(last) +
                         ", the last one published");
    }
    m_Database.Prepare("INSERT INTO updates(number, test, published, manifest, signature) VALUES(?1, ?2, ?3, ?4, ?5)")
        .Bind(1, std::int64_t{update.Number})
        .Bind(2, update.Test)
        .Bind(3, update.Published.Seconds())
        .Bind(4, update.Manifest)
        .Bind(5, update.Signature)
        .Run();
    Statement insert = m_Database.Prepare("INSERT INTO update_files(number, name, content) VALUES(?1, ?2, ?3)");
    for (const ReleaseFile& file : files) {
        const bool takesPart = std::any_of(manifest.begin(), manifest.end(), [&](const ElementPtr& child) {
            return TakesPart(*child) && child->FindAttributeValue("FILE") == file.Name;
        });
        if (takesPart) insert.Bind(1, std::int64_t{update.Number}).Bind(2, file.Name).Bind(3, file.Content).Run();
    }
    Forget(update.Test);
    transaction.Commit();
}

// Numbers only grow, so the last one is never forgotten.
void Updates::Forget(TextView test) {
    m_Database
        .Prepare(
            "DELETE FROM updates WHERE test = ?1 AND number NOT IN "
            "(SELECT number FROM updates WHERE test = ?1 ORDER BY number DESC LIMIT ?2)")
        .Bind(1, test)
        .Bind(2, VersionsKept)
        .Run();
    m_Database
        .Prepare(
            "DELETE FROM updates WHERE test <> x'' AND number NOT IN "
            "(SELECT number FROM updates WHERE test <> x'' ORDER BY number DESC LIMIT ?1)")
        .Bind(1, TestVersionsKept)
        .Run();
    m_Database.Run("DELETE FROM update_files WHERE number NOT IN (SELECT number FROM updates)");
}

std::optional<PublishedUpdate> Updates::Latest(TextView test) {
    Statement row = m_Database.Prepare(
        "SELECT number, test, signature, published, manifest FROM updates WHERE test = ?1 ORDER BY number DESC LIMIT "
        "1");
    row.Bind(1, test);
    if (!row.Step()) return std::nullopt;
    PublishedUpdate update = UpdateOf(row);
    update.Manifest = row.Bytes(4);
    return update;
}

std::vector<PublishedUpdate> Updates::Kept() {
    Statement row = m_Database.Prepare("SELECT number, test, signature, published FROM updates ORDER BY number DESC");
    std::vector<PublishedUpdate> kept;
    while (row.Step()) kept.push_back(UpdateOf(row));
    return kept;
}

std::int64_t Updates::LastNumber() { return m_Database.Ask("SELECT coalesce(max(number), 0) FROM updates"); }

std::optional<Text> Updates::File(std::int64_t number, TextView name) {
    Statement row = m_Database.Prepare("SELECT content FROM update_files WHERE number = ?1 AND name = ?2");
    row.Bind(1, number).Bind(2, name);
    if (!row.Step()) return std::nullopt;
    return row.Bytes(0);
}

}  // namespace tb
