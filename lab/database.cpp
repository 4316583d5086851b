// SQLite behind a few lines of scope and exceptions.
#include "lab/database.h"

#include <sqlite3.h>

#include <filesystem>
#include <stdexcept>

#include "lab/private_file.h"

namespace lab {

Database::Database(const std::string& path) {
    // What SQLite keeps beside the file has the file's mode, but for what is there already.
    make_private_file(path);
    for (const char* suffix : {"-wal", "-shm", "-journal"})
        if (std::filesystem::exists(path + suffix))
            make_private_file(path + suffix);
    if (sqlite3_open(path.c_str(), &handle_) != SQLITE_OK) {
        const std::string reason = sqlite3_errmsg(handle_);
        sqlite3_close(handle_);
        throw std::runtime_error("cannot open " + path + ": " + reason);
    }
    sqlite3_busy_timeout(handle_, 2000);
}

Database::~Database() { sqlite3_close(handle_); }

void Database::run(const char* sql) {
    if (sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(std::string("database: ") + sqlite3_errmsg(handle_));
}

std::int64_t Database::last_id() const { return sqlite3_last_insert_rowid(handle_); }

std::int64_t Database::changes() const { return sqlite3_changes(handle_); }

Statement::Statement(Database& database, const char* sql) : database_(database.handle_) {
    check(sqlite3_prepare_v2(database_, sql, -1, &handle_, nullptr));
}

Statement::~Statement() { sqlite3_finalize(handle_); }

void Statement::check(int code) const {
    if (code != SQLITE_OK)
        throw std::runtime_error(std::string("database: ") + sqlite3_errmsg(database_));
}

void Statement::bind(int index, std::int64_t value) {
    check(sqlite3_bind_int64(handle_, index, value));
}

void Statement::bind(int index, std::string_view value) {
    check(sqlite3_bind_text64(
        handle_, index, value.data() ? value.data() : "", value.size(), SQLITE_TRANSIENT,
        SQLITE_UTF8));
}

bool Statement::step() {
    const int code = sqlite3_step(handle_);
    if (code == SQLITE_ROW)
        return true;
    check(code == SQLITE_DONE ? SQLITE_OK : code);
    return false;
}

std::int64_t Statement::number(int column) const { return sqlite3_column_int64(handle_, column); }

std::string Statement::text(int column) const {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(handle_, column));
    return bytes
               ? std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_, column)))
               : std::string();
}

Transaction::Transaction(Database& database) : database_(database) { database_.run("BEGIN"); }

Transaction::~Transaction() {
    if (open_)
        try {
            database_.run("ROLLBACK");
        } catch (const std::exception&) { // SQLite has already rolled back by itself
        }
}

void Transaction::keep() {
    database_.run("COMMIT");
    open_ = false;
}

} // namespace lab
