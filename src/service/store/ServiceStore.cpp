#include "service/store/ServiceStore.h"

#include <iterator>

namespace tb {

namespace {

// Texts are bytes of the code page, so they are kept as blobs. The first publication is the empty list.
constexpr const char* FirstSchema = R"(
    CREATE TABLE sites(
        number INTEGER PRIMARY KEY, url BLOB NOT NULL UNIQUE, category BLOB NOT NULL, validated BLOB NOT NULL);
    CREATE TABLE changes(
        number INTEGER PRIMARY KEY, added INTEGER NOT NULL,
        url BLOB NOT NULL, category BLOB NOT NULL, validated BLOB NOT NULL);
    CREATE TABLE publications(
        stamp BLOB PRIMARY KEY, last_change INTEGER NOT NULL UNIQUE,
        sites INTEGER NOT NULL, added INTEGER NOT NULL, removed INTEGER NOT NULL);
    INSERT INTO publications VALUES(CAST('200001010000' AS BLOB), 0, 0, 0, 0);
    CREATE TABLE documents(
        name BLOB PRIMARY KEY, modified INTEGER NOT NULL, version BLOB NOT NULL, framed BLOB NOT NULL);
    CREATE TABLE reports(
        number INTEGER PRIMARY KEY, received INTEGER NOT NULL,
        client BLOB NOT NULL, program BLOB NOT NULL, system BLOB NOT NULL, browser BLOB NOT NULL);
    PRAGMA user_version = 1)";

// What is asked for often stands before what is long. Kinds: 0 an e-mail, 1 a URL.
constexpr const char* SubmissionSchema = R"(
    CREATE TABLE submissions(
        number INTEGER PRIMARY KEY, kind INTEGER NOT NULL, received INTEGER NOT NULL,
        status INTEGER NOT NULL, disposition INTEGER NOT NULL, category INTEGER NOT NULL, confidence INTEGER NOT NULL,
        client BLOB NOT NULL, sender BLOB NOT NULL, subject BLOB NOT NULL,
        content_check INTEGER NOT NULL, head BLOB NOT NULL, content BLOB NOT NULL);
    CREATE INDEX submissions_by_content ON submissions(kind, content_check);
    PRAGMA user_version = 2)";

// The number of a version is also the address of its files, so test versions take theirs from the same row of numbers.
constexpr const char* UpdateSchema = R"(
    CREATE TABLE updates(
        number INTEGER PRIMARY KEY, test BLOB NOT NULL, published INTEGER NOT NULL,
        signature BLOB NOT NULL, manifest BLOB NOT NULL);
    CREATE TABLE update_files(
        number INTEGER NOT NULL, name BLOB NOT NULL, content BLOB NOT NULL, PRIMARY KEY(number, name));
    PRAGMA user_version = 3)";

// Each makes of a store of the version before one of the next.
constexpr const char* Steps[] = {FirstSchema, SubmissionSchema, UpdateSchema};
constexpr std::int64_t KnownVersion = std::size(Steps);

std::filesystem::path Prepared(const std::filesystem::path& folder, Database::Opening opening) {
    std::error_code failure;
    if (opening == Database::Opening::OrNew) std::filesystem::create_directories(folder, failure);
    if (failure) throw StoreError(folder.string() + ": " + failure.message());
    return ServiceStoreFile(folder);
}

}  // namespace

std::filesystem::path ServiceStoreFile(const std::filesystem::path& folder) { return folder / "service.db"; }

ServiceStore::ServiceStore(const std::filesystem::path& folder, Opening opening)
    : Database(Prepared(folder, opening), opening) {
    if (Ask("PRAGMA user_version") == KnownVersion) return;
    Transaction transaction(*this, Transaction::Kind::Write);
    // Another process may have made it while this one waited.
    std::int64_t version = Ask("PRAGMA user_version");
    if (version < 0 || version > KnownVersion || (version == 0 && Ask("SELECT count(*) FROM sqlite_master") > 0)) {
        throw StoreError(ServiceStoreFile(folder).string() + ": made by another program or a newer version");
    }
    while (version < KnownVersion) Run(Steps[version++]);
    transaction.Commit();
}

}  // namespace tb
