// One connection to a SQLite file, its statements and transactions. Several connections, of one process or of many, may
// use the file at the same time: readers never wait, writers wait for each other.
// Thread: a connection and what was made from it belong to one thread at a time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "base/errors.h"

struct sqlite3;
struct sqlite3_stmt;

namespace tb {

// What the library reports: the file is no database, the disk is full, another writer did not end in time.
RuntimeError StoreError(Text description);

// A prepared statement. Values are bound by their position, from 1 on, and stay bound until they are bound anew.
class Statement {
public:
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    Statement(Statement&& other) noexcept;
    Statement& operator=(Statement&&) = delete;
    ~Statement();

    // Texts are kept as bytes.
    Statement& Bind(int position, TextView bytes);
    Statement& Bind(int position, std::int64_t number);

    // The next row; False behind the last one, and the next call begins anew.
    bool Step();
    // To the end, for a statement whose rows nobody needs.
    void Run();
    // Of the present row, columns from 0 on.
    Text Bytes(int column);
    std::int64_t Number(int column);

private:
    friend class Database;
    Statement(sqlite3* connection, TextView sql);

    sqlite3* m_Connection;
    sqlite3_stmt* m_Statement = nullptr;
};

class Database {
public:
    // Raises a StoreError when there is no such file and when it cannot be opened. An empty file is an empty database.
    explicit Database(const std::filesystem::path& file);
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    ~Database();

    // How long a writer waits for another one before it raises an error; 10 seconds unless set.
    void Patience(int milliseconds);
    Statement Prepare(TextView sql) { return Statement(m_Connection, sql); }
    // One or more statements without values.
    void Run(const char* sql);
    // The only value of the only row.
    std::int64_t Ask(TextView sql);
    // True when another connection has changed the file since the last call; True at the first one.
    bool WasChanged();

private:
    void KeepLog();

    sqlite3* m_Connection = nullptr;
    std::optional<Statement> m_VersionQuery;
    std::int64_t m_Version = -1;
};

// Everything between construction and Commit becomes visible to others at once, or, without Commit, never.
class Transaction {
public:
    enum class Kind {
        // One unchanging view of the file.
        Read,
        // Waits for other writers at the beginning.
        Write
    };

    Transaction(Database& database, Kind kind);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    void Commit();

private:
    Database& m_Database;
    bool m_IsOpen = true;
};

}  // namespace tb
