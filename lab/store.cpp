// The lab's memory in SQLite, one file in the data folder.
#include "lab/store.h"

namespace lab {

namespace {

// Written so as to survive the end of the program, not a power cut of the workstation.
constexpr const char* schema = R"sql(
PRAGMA journal_mode = WAL;
PRAGMA synchronous = OFF;
CREATE TABLE IF NOT EXISTS switches (
    mac TEXT PRIMARY KEY, key TEXT NOT NULL, secret TEXT NOT NULL,
    last_seen INTEGER NOT NULL DEFAULT 0, reported_seqno INTEGER NOT NULL DEFAULT 0,
    assigned_seqno INTEGER NOT NULL DEFAULT 1, reports INTEGER NOT NULL DEFAULT 0);
CREATE TABLE IF NOT EXISTS reports (
    id INTEGER PRIMARY KEY AUTOINCREMENT, mac TEXT NOT NULL, time INTEGER NOT NULL,
    body TEXT NOT NULL);
CREATE INDEX IF NOT EXISTS reports_of ON reports (mac, id);
CREATE TABLE IF NOT EXISTS settings (
    mac TEXT NOT NULL, seqno INTEGER NOT NULL, document TEXT NOT NULL,
    state TEXT NOT NULL DEFAULT 'pending', tries INTEGER NOT NULL DEFAULT 0,
    queued INTEGER NOT NULL, delivered_ms INTEGER NOT NULL DEFAULT 0, PRIMARY KEY (mac, seqno));
CREATE TABLE IF NOT EXISTS actions (
    id INTEGER PRIMARY KEY AUTOINCREMENT, mac TEXT NOT NULL, document TEXT NOT NULL,
    state TEXT NOT NULL DEFAULT 'queued', time INTEGER NOT NULL);
DROP TABLE IF EXISTS nonces; -- of an earlier version
CREATE TABLE IF NOT EXISTS used_nonces (
    timestamp INTEGER NOT NULL, mac TEXT NOT NULL, nonce TEXT NOT NULL,
    PRIMARY KEY (timestamp, mac, nonce)) WITHOUT ROWID;
CREATE TABLE IF NOT EXISTS events (
    id INTEGER PRIMARY KEY AUTOINCREMENT, time INTEGER NOT NULL, kind TEXT NOT NULL,
    mac TEXT NOT NULL, text TEXT NOT NULL, details TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS counters (name TEXT PRIMARY KEY, value INTEGER NOT NULL);
)sql";

// A lab left running for weeks keeps this much of the past.
constexpr std::int64_t reports_kept = 50;
constexpr std::int64_t events_kept = 10000;
constexpr std::int64_t finished_kept = 1000; // actions and settings of a switch

constexpr const char* forget_actions =
    "DELETE FROM actions WHERE mac = ?1 AND state = 'answered' AND id <= (SELECT id FROM actions "
    "WHERE mac = ?1 AND state = 'answered' ORDER BY id DESC LIMIT 1 OFFSET ?2)";
constexpr const char* forget_settings =
    "DELETE FROM settings WHERE mac = ?1 AND state IN ('acknowledged', 'refused') AND seqno <= "
    "(SELECT seqno FROM settings WHERE mac = ?1 AND state IN ('acknowledged', 'refused') ORDER BY "
    "seqno DESC LIMIT 1 OFFSET ?2)";

constexpr const char* switch_columns =
    "SELECT mac, key, last_seen, reported_seqno, reports, (SELECT COUNT(*) FROM settings WHERE "
    "settings.mac = switches.mac AND state IN ('pending', 'delivered')) FROM switches ";

SwitchRecord read_switch(const Statement& row) {
    return {row.text(0), row.text(1), row.number(2), row.number(3), row.number(4), row.number(5)};
}

SettingsRecord read_settings(const Statement& row) {
    return {row.number(0), row.text(1), row.number(2), row.number(3), row.text(4)};
}

ActionRecord read_action(const Statement& row) {
    return {row.number(0), row.text(1), row.text(2), row.number(3)};
}

ReportRecord read_report(const Statement& row) {
    return {row.number(0), row.number(1), row.text(2), row.number(3)};
}

EventRecord read_event(const Statement& row) {
    return {row.number(0), row.number(1), row.text(2), row.text(3), row.text(4), row.text(5)};
}

template <typename Record>
std::vector<Record> read_all(Statement& statement, Record (*read)(const Statement&)) {
    std::vector<Record> rows;
    while (statement.step())
        rows.push_back(read(statement));
    return rows;
}

template <typename Record>
std::optional<Record> read_first(Statement& statement, Record (*read)(const Statement&)) {
    return statement.step() ? std::optional(read(statement)) : std::nullopt;
}

} // namespace

Store::Store(const std::string& path) : database_(path) { database_.run(schema); }

bool Store::put_switch(const std::string& mac, const Account& account) {
    const std::lock_guard lock(mutex_);
    const bool is_new = !Statement(database_, "SELECT 1 FROM switches WHERE mac = ?", mac).step();
    Statement(
        database_,
        "INSERT INTO switches (mac, key, secret) VALUES (?, ?, ?) ON CONFLICT (mac) DO UPDATE SET "
        "key = excluded.key, secret = excluded.secret",
        mac, account.key, account.secret)
        .step();
    return is_new;
}

bool Store::drop_switch(const std::string& mac) {
    const std::lock_guard lock(mutex_);
    Transaction transaction(database_);
    for (const char* sql :
         {"DELETE FROM reports WHERE mac = ?", "DELETE FROM settings WHERE mac = ?",
          "DELETE FROM actions WHERE mac = ?", "DELETE FROM switches WHERE mac = ?"})
        Statement(database_, sql, mac).step();
    const bool known = database_.changes() > 0;
    transaction.keep();
    return known;
}

std::optional<Account> Store::find_account(const std::string& mac) {
    const std::lock_guard lock(mutex_);
    Statement row(database_, "SELECT key, secret FROM switches WHERE mac = ?", mac);
    if (!row.step())
        return std::nullopt;
    return Account{row.text(0), row.text(1)};
}

std::optional<SwitchRecord> Store::find_switch(const std::string& mac) {
    const std::lock_guard lock(mutex_);
    static const std::string sql = std::string(switch_columns) + "WHERE mac = ?";
    Statement row(database_, sql.c_str(), mac);
    return read_first(row, read_switch);
}

std::vector<SwitchRecord> Store::list_switches() {
    const std::lock_guard lock(mutex_);
    static const std::string sql = std::string(switch_columns) + "ORDER BY mac";
    Statement rows(database_, sql.c_str());
    return read_all(rows, read_switch);
}

bool Store::record_nonce(
    const std::string& mac, const Authorization& authorization, std::int64_t oldest) {
    const std::lock_guard lock(mutex_);
    Statement(database_, "DELETE FROM used_nonces WHERE timestamp < ?", oldest).step();
    Statement(
        database_, "INSERT OR IGNORE INTO used_nonces VALUES (?, ?, ?)", authorization.timestamp,
        mac, authorization.nonce)
        .step();
    return database_.changes() == 1;
}

std::int64_t Store::add_report(
    const std::string& mac, std::int64_t time, const std::string& body,
    std::int64_t reported_seqno) {
    const std::lock_guard lock(mutex_);
    Transaction transaction(database_);
    Statement(database_, "INSERT INTO reports (mac, time, body) VALUES (?, ?, ?)", mac, time, body)
        .step();
    const std::int64_t id = database_.last_id();
    Statement(
        database_,
        "UPDATE switches SET last_seen = ?, reported_seqno = ?, reports = reports + 1 WHERE mac = "
        "?",
        time, reported_seqno, mac)
        .step();
    Statement(
        database_,
        "DELETE FROM reports WHERE mac = ?1 AND id <= (SELECT id FROM reports WHERE mac = ?1 "
        "ORDER BY id DESC LIMIT 1 OFFSET ?2)",
        mac, reports_kept)
        .step();
    transaction.keep();
    return id;
}

std::optional<ReportRecord> Store::find_report(const std::string& mac, std::int64_t id) {
    const std::lock_guard lock(mutex_);
    Statement row(
        database_,
        "SELECT id, time, body, LENGTH(CAST(body AS BLOB)) FROM reports WHERE mac = ?1 AND (?2 = 0 "
        "OR id = ?2) "
        "ORDER BY id DESC LIMIT 1",
        mac, id);
    return read_first(row, read_report);
}

std::vector<ReportRecord> Store::list_reports(const std::string& mac) {
    const std::lock_guard lock(mutex_);
    Statement rows(
        database_,
        "SELECT id, time, '', LENGTH(CAST(body AS BLOB)) FROM reports WHERE mac = ? ORDER BY id "
        "DESC",
        mac);
    return read_all(rows, read_report);
}

std::int64_t
Store::queue_settings(const std::string& mac, const std::string& document, std::int64_t now) {
    const std::lock_guard lock(mutex_);
    Transaction transaction(database_);
    Statement(
        database_,
        "UPDATE switches SET assigned_seqno = MAX(assigned_seqno, reported_seqno) + 1 WHERE mac = "
        "?",
        mac)
        .step();
    Statement row(database_, "SELECT assigned_seqno FROM switches WHERE mac = ?", mac);
    row.step();
    const std::int64_t seqno = row.number(0);
    Statement(
        database_, "INSERT INTO settings (mac, seqno, document, queued) VALUES (?, ?, ?, ?)", mac,
        seqno, document, now)
        .step();
    Statement(database_, forget_settings, mac, finished_kept).step();
    transaction.keep();
    return seqno;
}

std::vector<SettingsRecord> Store::list_settings(const std::string& mac) {
    const std::lock_guard lock(mutex_);
    Statement rows(
        database_,
        "SELECT seqno, state, tries, queued, document FROM settings WHERE mac = ? ORDER BY seqno",
        mac);
    return read_all(rows, read_settings);
}

bool Store::drop_settings(const std::string& mac, std::int64_t seqno) {
    const std::lock_guard lock(mutex_);
    Statement(database_, "DELETE FROM settings WHERE mac = ? AND seqno = ?", mac, seqno).step();
    return database_.changes() > 0;
}

bool Store::acknowledge(const std::string& mac, std::int64_t seqno) {
    const std::lock_guard lock(mutex_);
    Statement(
        database_,
        "UPDATE settings SET state = 'acknowledged' WHERE mac = ? AND seqno = ? AND "
        "state IN ('delivered', 'refused')",
        mac, seqno)
        .step();
    return database_.changes() > 0;
}

// A switch may report a number beyond those assigned here (it was with another cloud, or the data
// folder is new): documents still to be delivered get numbers above it, so that numbers only rise.
void Store::renumber_open(const std::string& mac, std::int64_t reported_seqno) {
    std::vector<std::int64_t> open;
    Statement rows(
        database_,
        "SELECT seqno FROM settings WHERE mac = ? AND state IN ('pending', 'delivered') ORDER BY "
        "seqno",
        mac);
    while (rows.step())
        open.push_back(rows.number(0));
    if (open.empty() || open.front() > reported_seqno)
        return;
    Statement row(
        database_, "SELECT MAX(assigned_seqno, ?) FROM switches WHERE mac = ?", reported_seqno,
        mac);
    row.step();
    std::int64_t assigned = row.number(0);
    for (const std::int64_t seqno : open)
        Statement(
            database_, "UPDATE settings SET seqno = ? WHERE mac = ? AND seqno = ?", ++assigned, mac,
            seqno)
            .step();
    Statement(database_, "UPDATE switches SET assigned_seqno = ? WHERE mac = ?", assigned, mac)
        .step();
}

std::optional<SettingsRecord>
Store::find_oldest_open(const std::string& mac, std::int64_t& delivered_ms) {
    Statement row(
        database_,
        "SELECT seqno, state, tries, queued, document, delivered_ms FROM settings WHERE mac = ? "
        "AND state IN ('pending', 'delivered') ORDER BY seqno LIMIT 1",
        mac);
    if (!row.step())
        return std::nullopt;
    delivered_ms = row.number(5);
    return read_settings(row);
}

Delivery
Store::deliver(const std::string& mac, std::int64_t reported_seqno, const DeliveryRules& rules) {
    const std::lock_guard lock(mutex_);
    Transaction transaction(database_);
    renumber_open(mac, reported_seqno);
    Delivery delivery;
    std::int64_t delivered_ms = 0;
    while (auto oldest = find_oldest_open(mac, delivered_ms)) {
        if (oldest->state == "delivered" && rules.now_ms - delivered_ms < rules.pause_ms)
            break;
        if (rules.most_tries > 0 && oldest->tries >= rules.most_tries) {
            Statement(
                database_, "UPDATE settings SET state = 'refused' WHERE mac = ? AND seqno = ?", mac,
                oldest->seqno)
                .step();
            delivery.refused.push_back(oldest->seqno);
            continue;
        }
        Statement(
            database_,
            "UPDATE settings SET state = 'delivered', tries = tries + 1, delivered_ms = ? WHERE "
            "mac = ? AND seqno = ?",
            rules.now_ms, mac, oldest->seqno)
            .step();
        oldest->state = "delivered";
        oldest->tries++;
        delivery.document = std::move(oldest);
        break;
    }
    transaction.keep();
    return delivery;
}

std::int64_t
Store::queue_action(const std::string& mac, const std::string& document, std::int64_t now) {
    const std::lock_guard lock(mutex_);
    Statement(
        database_, "INSERT INTO actions (mac, document, time) VALUES (?, ?, ?)", mac, document, now)
        .step();
    const std::int64_t id = database_.last_id();
    Statement(database_, forget_actions, mac, finished_kept).step();
    return id;
}

std::int64_t Store::count_queued_actions(const std::string& mac) {
    const std::lock_guard lock(mutex_);
    Statement row(
        database_, "SELECT COUNT(*) FROM actions WHERE mac = ? AND state = 'queued'", mac);
    row.step();
    return row.number(0);
}

std::vector<ActionRecord> Store::list_actions(const std::string& mac) {
    const std::lock_guard lock(mutex_);
    Statement rows(
        database_, "SELECT id, state, document, time FROM actions WHERE mac = ? ORDER BY id", mac);
    return read_all(rows, read_action);
}

std::optional<ActionRecord> Store::take_action(const std::string& mac) {
    const std::lock_guard lock(mutex_);
    Statement row(
        database_,
        "UPDATE actions SET state = 'answered' WHERE id = (SELECT MIN(id) FROM actions WHERE "
        "mac = ? AND state = 'queued') RETURNING id, state, document, time",
        mac);
    auto action = read_first(row, read_action);
    if (action)
        row.step(); // the update is only complete once the statement has run to its end
    return action;
}

void Store::put_back_action(std::int64_t id) {
    const std::lock_guard lock(mutex_);
    Statement(database_, "UPDATE actions SET state = 'queued' WHERE id = ?", id).step();
}

std::int64_t Store::add_event(const EventRecord& event) {
    const std::lock_guard lock(mutex_);
    Statement(
        database_, "INSERT INTO events (time, kind, mac, text, details) VALUES (?, ?, ?, ?, ?)",
        event.time, event.kind, event.mac, event.text, event.details)
        .step();
    const std::int64_t id = database_.last_id();
    Statement(database_, "DELETE FROM events WHERE id <= ?", id - events_kept).step();
    return id;
}

std::vector<EventRecord>
Store::list_events(std::int64_t after, const std::string& kind, const std::string& mac) {
    const std::lock_guard lock(mutex_);
    Statement rows(
        database_,
        "SELECT id, time, kind, mac, text, details FROM events WHERE id > ?1 AND (?2 = '' OR kind "
        "= ?2) AND (?3 = '' OR mac = ?3) ORDER BY id",
        after, kind, mac);
    return read_all(rows, read_event);
}

std::int64_t Store::find_last_event() {
    const std::lock_guard lock(mutex_);
    Statement row(database_, "SELECT COALESCE(MAX(id), 0) FROM events");
    row.step();
    return row.number(0);
}

void Store::count(const std::string& name) {
    const std::lock_guard lock(mutex_);
    Statement(
        database_,
        "INSERT INTO counters VALUES (?, 1) ON CONFLICT (name) DO UPDATE SET value = value + 1",
        name)
        .step();
}

std::map<std::string, std::int64_t> Store::list_counters() {
    const std::lock_guard lock(mutex_);
    Statement rows(database_, "SELECT name, value FROM counters");
    std::map<std::string, std::int64_t> counters;
    while (rows.step())
        counters[rows.text(0)] = rows.number(1);
    return counters;
}

} // namespace lab
