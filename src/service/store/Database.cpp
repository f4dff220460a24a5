#include "service/store/Database.h"

#include <sqlite3.h>

#include <chrono>
#include <thread>
#include <utility>

namespace tb {

namespace {

constexpr int DefaultPatience = 10'000;

[[noreturn]] void Fail(sqlite3* connection) { throw StoreError(sqlite3_errmsg(connection)); }

}  // namespace

RuntimeError StoreError(Text description) {
    return {static_cast<std::int32_t>(ErrorNumber::DeviceIO), std::move(description)};
}

Statement::Statement(sqlite3* connection, TextView sql) : m_Connection(connection) {
    if (sqlite3_prepare_v2(connection, sql.data(), static_cast<int>(sql.size()), &m_Statement, nullptr) != SQLITE_OK) {
        Fail(connection);
    }
}

Statement::Statement(Statement&& other) noexcept
    : m_Connection(other.m_Connection), m_Statement(std::exchange(other.m_Statement, nullptr)) {}

Statement::~Statement() { sqlite3_finalize(m_Statement); }

Statement& Statement::Bind(int position, TextView bytes) {
    // A null pointer would bind no value instead of an empty one.
    const char* data = bytes.data() == nullptr ? "" : bytes.data();
    if (sqlite3_bind_blob64(m_Statement, position, data, bytes.size(), SQLITE_TRANSIENT) != SQLITE_OK) {
        Fail(m_Connection);
    }
    return *this;
}

Statement& Statement::Bind(int position, std::int64_t number) {
    if (sqlite3_bind_int64(m_Statement, position, number) != SQLITE_OK) Fail(m_Connection);
    return *this;
}

bool Statement::Step() {
    const int result = sqlite3_step(m_Statement);
    if (result == SQLITE_ROW) return true;
    const Text message = result == SQLITE_DONE ? "" : sqlite3_errmsg(m_Connection);
    sqlite3_reset(m_Statement);
    if (result != SQLITE_DONE) throw StoreError(message);
    return false;
}

void Statement::Run() {
    while (Step()) {
    }
}

Text Statement::Bytes(int column) {
    const void* bytes = sqlite3_column_blob(m_Statement, column);
    return bytes == nullptr
               ? Text()
               : Text(static_cast<const char*>(bytes), static_cast<size_t>(sqlite3_column_bytes(m_Statement, column)));
}

std::int64_t Statement::Number(int column) { return sqlite3_column_int64(m_Statement, column); }

Database::Database(const std::filesystem::path& file) {
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
    try {
        if (sqlite3_open_v2(file.c_str(), &m_Connection, flags, nullptr) != SQLITE_OK) Fail(m_Connection);
        Patience(DefaultPatience);
        KeepLog();
    } catch (const RuntimeError& error) {
        sqlite3_close(m_Connection);
        throw StoreError(file.string() + ": " + error.what());
    }
}

Database::~Database() {
    m_VersionQuery.reset();
    sqlite3_close(m_Connection);
}

void Database::Patience(int milliseconds) { sqlite3_busy_timeout(m_Connection, milliseconds); }

// Changes go into a log beside the file first, so that readers need not wait for them. Whoever switches a new file over
// refuses others for a moment, without regard to their patience.
void Database::KeepLog() {
    for (int attempt = 0;; ++attempt) {
        try {
            return Run("PRAGMA journal_mode=WAL; PRAGMA journal_size_limit=16777216");
        } catch (const RuntimeError&) {
            if (attempt == 200 || sqlite3_errcode(m_Connection) != SQLITE_BUSY) throw;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
}

void Database::Run(const char* sql) {
    if (sqlite3_exec(m_Connection, sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail(m_Connection);
}

std::int64_t Database::Ask(TextView sql) {
    Statement statement = Prepare(sql);
    if (!statement.Step()) throw StoreError("no answer to " + Text(sql));
    return statement.Number(0);
}

bool Database::WasChanged() {
    // Asked at every request, so it is prepared once.
    if (!m_VersionQuery) m_VersionQuery.emplace(Prepare("PRAGMA data_version"));
    std::int64_t version = m_Version;
    while (m_VersionQuery->Step()) version = m_VersionQuery->Number(0);
    return std::exchange(m_Version, version) != version;
}

Transaction::Transaction(Database& database, Kind kind) : m_Database(database) {
    m_Database.Run(kind == Kind::Write ? "BEGIN IMMEDIATE" : "BEGIN");
}

Transaction::~Transaction() {
    if (!m_IsOpen) return;
    try {
        m_Database.Run("ROLLBACK");
    } catch (const RuntimeError&) {
        // After some failures the library has rolled back itself.
    }
}

void Transaction::Commit() {
    m_Database.Run("COMMIT");
    m_IsOpen = false;
}

}  // namespace tb
