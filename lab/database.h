// A thin hold on SQLite: a database closed and statements finalised by scope, failures thrown.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace lab {

class Database {
  public:
    explicit Database(const std::string& path);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void run(const char* sql);
    std::int64_t last_id() const;
    std::int64_t changes() const; // rows touched by the last statement

  private:
    friend class Statement;
    sqlite3* handle_ = nullptr;
};

class Statement {
  public:
    template <typename... Values>
    Statement(Database& database, const char* sql, const Values&... values)
        : Statement(database, sql) {
        int index = 0;
        (bind(++index, values), ...);
    }
    Statement(Database& database, const char* sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    bool step(); // true: a row is there to be read
    std::int64_t number(int column) const;
    std::string text(int column) const;

  private:
    void bind(int index, std::int64_t value);
    void bind(int index, std::string_view value);
    void check(int code) const;

    sqlite3* database_;
    sqlite3_stmt* handle_ = nullptr;
};

// All or nothing: what was done in its scope is rolled back unless keep() was reached.
class Transaction {
  public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void keep();

  private:
    Database& database_;
    bool open_ = true;
};

} // namespace lab
