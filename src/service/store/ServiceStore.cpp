#include "service/store/ServiceStore.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
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

constexpr mode_t OwnerOnly = S_IRUSR | S_IWUSR;

// True when the file has been made now. The library gives its companions the rights of the file itself.
bool MakeFile(const std::filesystem::path& folder) {
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    if (failure) throw StoreError(folder.string() + ": " + failure.message());
    const std::filesystem::path file = ServiceStoreFile(folder);
    const int made = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, OwnerOnly);
    if (made < 0 && errno == EEXIST) return false;
    if (made < 0) throw StoreError(file.string() + ": " + std::strerror(errno));
    ::close(made);
    return true;
}

void RequireFile(const std::filesystem::path& folder) {
    std::error_code failure;
    if (std::filesystem::exists(ServiceStoreFile(folder), failure)) return;
    const Text name = folder.string();
    if (failure) throw StoreError(name + ": " + failure.message());
    const bool isThere = std::filesystem::is_directory(folder, failure);
    throw StoreError(name +
                     (isThere ? ": this folder is fresh, there is no store in it" : ": there is no such folder") +
                     "; \"tbservice --data " + name + " init\" makes a store there");
}

void CloseToOthers(const std::filesystem::path& folder) {
    for (const char* companion : {"", "-wal", "-shm"}) {
        const Text file = ServiceStoreFile(folder).string() + companion;
        struct stat status {};
        if (::stat(file.c_str(), &status) != 0 || (status.st_mode & (S_IRWXG | S_IRWXO)) == 0) continue;
        if (::chmod(file.c_str(), status.st_mode & S_IRWXU) != 0) {
            throw StoreError(file +
                             ": others may read it, and their right cannot be taken back: " + std::strerror(errno));
        }
    }
}

// The part of opening that is about files; true when the store has been made.
bool PrepareFile(const std::filesystem::path& folder, ServiceStore::Opening opening) {
    const bool isNew = opening == ServiceStore::Opening::OrNew && MakeFile(folder);
    if (!isNew) RequireFile(folder);
    return isNew;
}

}  // namespace

std::filesystem::path ServiceStoreFile(const std::filesystem::path& folder) { return folder / "service.db"; }

ServiceStore::ServiceStore(const std::filesystem::path& folder, Opening opening)
    : ServiceStore(folder, PrepareFile(folder, opening)) {}

ServiceStore::ServiceStore(const std::filesystem::path& folder, bool isNew)
    : Database(ServiceStoreFile(folder)), m_IsNew(isNew) {
    if (Ask("PRAGMA user_version") != KnownVersion) BringUpToDate(folder);
    CloseToOthers(folder);
}

void ServiceStore::BringUpToDate(const std::filesystem::path& folder) {
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
