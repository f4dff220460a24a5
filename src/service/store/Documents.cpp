#include "service/store/Documents.h"

#include <algorithm>

#include "base/errors.h"
#include "components/tbXML/Document.h"
#include "sitedb/codec/Encryption.h"

namespace tb {

namespace {

ElementPtr RootOf(const Text& xml) {
    Document document;
    try {
        document.LoadXML(xml);
    } catch (const RuntimeError& error) {
        throw InputError(error.Description);
    }
    if (!document.Root()) throw InputError("no element in it");
    return document.Root();
}

}  // namespace

Documents::Documents(Database& database, UtcNow now) : m_Database(database), m_Now(std::move(now)) {}

StoredDocument Documents::PublishDefaults(const Text& xml) {
    const ElementPtr root = RootOf(xml);
    for (const ElementPtr& group : *root) {
        if (group->FindAttributeValue("NAME").empty()) {
            throw InputError("a group <" + group->Name() + "> has no NAME, by which clients find it");
        }
    }
    return Publish(DefaultsFile, root->FindAttributeValue("Version"), xml);
}

StoredDocument Documents::PublishReference(const Text& xml) {
    const ElementPtr root = RootOf(xml);
    for (const char* section : {"CATEGORIES", "SUBMISSIONS", "DISPOSITIONS", "COUNTRIES"}) {
        if (!root->FindElement(section)) {
            throw InputError(Text("no section <") + section + ">, without which clients refuse it");
        }
    }
    return Publish(ReferenceFile, root->FindAttributeValue("Version"), xml);
}

StoredDocument Documents::Publish(TextView name, const Text& version, const Text& xml) {
    StoredDocument document{m_Now(), version, EncryptStringChk(xml)};
    Transaction transaction(m_Database, Transaction::Kind::Write);
    // Clients fetch only what is later than what they have.
    if (const auto last = ModifiedOf(name)) document.Modified = std::max(document.Modified, last->PlusSeconds(1));
    m_Database.Prepare("INSERT OR REPLACE INTO documents(name, modified, version, framed) VALUES(?1, ?2, ?3, ?4)")
        .Bind(1, name)
        .Bind(2, document.Modified.Seconds())
        .Bind(3, document.Version)
        .Bind(4, document.Framed)
        .Run();
    transaction.Commit();
    return document;
}

std::optional<StoredDocument> Documents::Find(TextView name) {
    Statement row = m_Database.Prepare("SELECT modified, version, framed FROM documents WHERE name = ?1");
    row.Bind(1, name);
    if (!row.Step()) return std::nullopt;
    return StoredDocument{Date(row.Number(0)), row.Bytes(1), row.Bytes(2)};
}

std::optional<Date> Documents::ModifiedOf(TextView name) {
    Statement row = m_Database.Prepare("SELECT modified FROM documents WHERE name = ?1");
    row.Bind(1, name);
    if (!row.Step()) return std::nullopt;
    return Date(row.Number(0));
}

}  // namespace tb
