// The questions that the page asks of the lab's memory.
#include "lab/overview.h"

namespace lab {

namespace {

// What a switch says of itself is kept beside its reports, for a search would have to read them all
// otherwise. A member that is missing in a report is no news.
constexpr const char* schema = R"sql(
CREATE TABLE IF NOT EXISTS summaries (
    mac TEXT PRIMARY KEY, name TEXT, model TEXT, firmware TEXT, address TEXT, pause INTEGER);
CREATE INDEX IF NOT EXISTS events_of ON events (mac, kind, id);
DROP TRIGGER IF EXISTS summarise;
CREATE TRIGGER summarise AFTER INSERT ON reports WHEN json_valid(NEW.body) BEGIN
    INSERT INTO summaries VALUES (NEW.mac,
        json_extract(NEW.body, '$.system.summary_info.device_name'),
        json_extract(NEW.body, '$.system.summary_info.model'),
        json_extract(NEW.body, '$.system.summary_info.firmware_version'),
        json_extract(NEW.body, '$.system.summary_info.ip'),
        json_extract(NEW.body, '$.system.cloud.checkin_interval'))
    ON CONFLICT (mac) DO UPDATE SET
        name = coalesce(excluded.name, name), model = coalesce(excluded.model, model),
        firmware = coalesce(excluded.firmware, firmware),
        address = coalesce(excluded.address, address), pause = coalesce(excluded.pause, pause);
END;
DROP TRIGGER IF EXISTS forget;
CREATE TRIGGER forget AFTER DELETE ON switches BEGIN
    DELETE FROM summaries WHERE mac = OLD.mac;
END;
)sql";

// ?1 is now. A switch is silent when it has missed two check-ins and half a minute.
constexpr const char* switches_sql = R"sql(
WITH tries AS (
    SELECT switches.*, coalesce(name, '') AS name, coalesce(model, '') AS model,
        coalesce(firmware, '') AS firmware, coalesce(address, '') AS address,
        coalesce(CAST(pause AS INTEGER), 300) AS pause,
        (SELECT max(id) FROM events WHERE mac = switches.mac AND kind = 'rejected') AS rejected,
        (SELECT max(id) FROM events WHERE mac = switches.mac AND kind = 'checkin') AS accepted
    FROM switches LEFT JOIN summaries USING (mac)),
known AS (
    SELECT *, CASE
        WHEN rejected > coalesce(accepted, 0) THEN 'refused'
        WHEN last_seen = 0 THEN 'new'
        WHEN last_seen < ?1 - 2 * pause - 30 THEN 'silent'
        ELSE 'ok' END AS state
    FROM tries)
)sql";

constexpr const char* fitting_sql = R"sql(
(instr(lower(mac), ?2) OR instr(lower(name), ?2) OR instr(lower(model), ?2)
 OR instr(lower(firmware), ?2))
)sql";

constexpr const char* columns_sql = R"sql(
SELECT mac, state, name, model, firmware, address, last_seen, reported_seqno, reports,
    (SELECT count(*) FROM settings WHERE settings.mac = known.mac
        AND settings.state IN ('pending', 'delivered')),
    (SELECT max(seqno) FROM settings WHERE settings.mac = known.mac
        AND settings.state IN ('pending', 'delivered')),
    (SELECT time FROM events WHERE id = rejected AND known.state = 'refused'),
    (SELECT details FROM events WHERE id = rejected AND known.state = 'refused')
FROM known
)sql";

SwitchOverview read_switch(const Statement& row) {
    SwitchOverview entry;
    entry.mac = row.text(0);
    entry.state = row.text(1);
    entry.name = row.text(2);
    entry.model = row.text(3);
    entry.firmware = row.text(4);
    entry.address = row.text(5);
    entry.last_seen = row.number(6);
    entry.reported_seqno = row.number(7);
    entry.reports = row.number(8);
    entry.pending = row.number(9);
    entry.pending_seqno = row.number(10);
    entry.refused_at = row.number(11);
    entry.refusal = row.text(12);
    return entry;
}

EventRecord read_event(const Statement& row) {
    return {row.number(0), row.number(1), row.text(2), row.text(3), row.text(4), row.text(5)};
}

std::vector<std::string> read_texts(Statement& row) {
    std::vector<std::string> texts;
    while (row.step())
        texts.push_back(row.text(0));
    return texts;
}

std::vector<EventRecord> read_events(Statement& row) {
    std::vector<EventRecord> events;
    while (row.step())
        events.push_back(read_event(row));
    return events;
}

std::string lower_case(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c + ('a' - 'A'));
    return text;
}

} // namespace

Overview::Overview(const std::string& path) : database_(path) { database_.run(schema); }

SwitchPage Overview::list_switches(const OverviewQuery& query) {
    static const std::string counts = std::string(switches_sql) +
                                      "SELECT state, count(*) FROM known WHERE " + fitting_sql +
                                      "GROUP BY state";
    static const std::string rows = std::string(switches_sql) + columns_sql + "WHERE " +
                                    fitting_sql +
                                    "AND (?3 = '' OR state = ?3) ORDER BY mac LIMIT ?4 OFFSET ?5";
    const std::string search = lower_case(query.search);
    const std::lock_guard lock(mutex_);
    SwitchPage page;
    Statement state(database_, counts.c_str(), query.now, search);
    while (state.step())
        page.states[state.text(0)] = state.number(1);
    Statement row(
        database_, rows.c_str(), query.now, search, query.state, query.page.count, query.page.from);
    while (row.step())
        page.switches.push_back(read_switch(row));
    return page;
}

std::optional<SwitchOverview> Overview::find_switch(const std::string& mac, std::int64_t now) {
    static const std::string sql = std::string(switches_sql) + columns_sql + "WHERE mac = ?2";
    const std::lock_guard lock(mutex_);
    Statement row(database_, sql.c_str(), now, mac);
    return row.step() ? std::optional(read_switch(row)) : std::nullopt;
}

std::vector<Stranger> Overview::list_strangers() {
    const std::lock_guard lock(mutex_);
    Statement row(
        database_,
        "SELECT mac, time, details FROM events WHERE id IN (SELECT max(id) FROM events WHERE kind "
        "= 'rejected' AND mac <> '' AND mac NOT IN (SELECT mac FROM switches) GROUP BY mac) "
        "ORDER BY id DESC LIMIT 20");
    std::vector<Stranger> strangers;
    while (row.step())
        strangers.push_back({row.text(0), row.number(1), row.text(2)});
    return strangers;
}

// --- Lists of one switch.

TextPage Overview::list_texts(
    const char* count_sql, const char* rows_sql, const std::string& mac, const Page& page) {
    const std::lock_guard lock(mutex_);
    TextPage texts;
    Statement count(database_, count_sql, mac);
    if (count.step())
        texts.total = count.number(0);
    Statement row(database_, rows_sql, mac, page.count, page.from);
    texts.entries = read_texts(row);
    return texts;
}

TextPage Overview::list_reports(const std::string& mac, const Page& page) {
    return list_texts(
        "SELECT count(*) FROM reports WHERE mac = ?",
        "SELECT json_object('id', id, 'time', strftime('%Y-%m-%dT%H:%M:%SZ', time, 'unixepoch'), "
        "'bytes', length(CAST(body AS BLOB))) FROM reports WHERE mac = ? ORDER BY id DESC LIMIT ? "
        "OFFSET ?",
        mac, page);
}

TextPage Overview::list_settings(const std::string& mac, const Page& page) {
    return list_texts(
        "SELECT count(*) FROM settings WHERE mac = ?",
        "SELECT json_object('config_seqno', seqno, 'state', state, 'tries', tries, 'queued', "
        "strftime('%Y-%m-%dT%H:%M:%SZ', queued, 'unixepoch'), 'document', json(document)) FROM "
        "settings WHERE mac = ? ORDER BY seqno DESC LIMIT ? OFFSET ?",
        mac, page);
}

TextPage Overview::list_actions(const std::string& mac, const Page& page) {
    return list_texts(
        "SELECT count(*) FROM actions WHERE mac = ?",
        "SELECT json_object('id', id, 'state', state, 'time', strftime('%Y-%m-%dT%H:%M:%SZ', "
        "time, 'unixepoch'), 'document', json(document)) FROM actions WHERE mac = ? "
        "ORDER BY id DESC LIMIT ? OFFSET ?",
        mac, page);
}

std::vector<std::string>
Overview::list_history(const std::string& mac, const std::string& port, std::int64_t count) {
    const std::lock_guard lock(mutex_);
    Statement row(
        database_,
        "SELECT json_object('report', id, 'time', strftime('%Y-%m-%dT%H:%M:%SZ', time, "
        "'unixepoch'), 'uptime', json_extract(body, '$.system.summary_info.uptime_seconds'), "
        "'budget', json_extract(body, '$.system.poe.total_power_watts'), "
        "'available', json_extract(body, '$.system.poe.available_power_watts'), "
        "'statistics', json((SELECT json_extract(value, '$.statistics') FROM json_each(body, "
        "'$.system.ports') WHERE json_extract(value, '$.id') = ?2))) "
        "FROM reports WHERE mac = ?1 AND json_valid(body) ORDER BY id DESC LIMIT ?3",
        mac, port, count);
    return read_texts(row);
}

std::vector<std::string> Overview::list_checkins(const std::string& mac, std::int64_t count) {
    const std::lock_guard lock(mutex_);
    Statement row(
        database_,
        "SELECT json_object('report', json_extract(details, '$.report'), 'time', "
        "strftime('%Y-%m-%dT%H:%M:%SZ', time, 'unixepoch'), 'milliseconds', json_extract(details, "
        "'$.milliseconds')) FROM events WHERE mac = ? AND kind = 'checkin' ORDER BY id DESC "
        "LIMIT ?",
        mac, count);
    return read_texts(row);
}

std::vector<std::string> Overview::list_diagnostics(const std::string& mac) {
    const std::lock_guard lock(mutex_);
    Statement row(
        database_,
        "SELECT json_object('report', id, 'time', strftime('%Y-%m-%dT%H:%M:%SZ', time, "
        "'unixepoch'), 'diagnostic', json_extract(body, '$.diagnostic')) FROM reports WHERE mac = "
        "? AND json_valid(body) AND json_type(body, '$.diagnostic') = 'object' ORDER BY id DESC",
        mac);
    return read_texts(row);
}

// --- The way of a settings document.

std::vector<EventRecord>
Overview::list_settings_events(const std::string& mac, std::int64_t seqno) {
    const std::lock_guard lock(mutex_);
    Statement row(
        database_,
        "SELECT id, time, kind, mac, text, details FROM events WHERE mac = ? AND kind IN "
        "('settings-queued', 'settings-delivered', 'settings-acknowledged', 'settings-refused') "
        "AND json_extract(details, '$.config_seqno') = ? ORDER BY id",
        mac, seqno);
    return read_events(row);
}

std::int64_t Overview::find_verdict(const std::string& mac, std::int64_t seqno) {
    const std::lock_guard lock(mutex_);
    Statement row(
        database_,
        "SELECT json_extract(details, '$.report') FROM events WHERE mac = ?1 AND kind = 'checkin' "
        "AND id > (SELECT max(id) FROM events WHERE mac = ?1 AND kind = 'settings-delivered' AND "
        "json_extract(details, '$.config_seqno') = ?2) ORDER BY id LIMIT 1",
        mac, seqno);
    return row.step() ? row.number(0) : 0;
}

std::vector<EventRecord>
Overview::list_events_before(std::int64_t before, const EventFilter& filter, std::int64_t count) {
    const std::lock_guard lock(mutex_);
    Statement row(
        database_,
        "SELECT id, time, kind, mac, text, details FROM events WHERE id < ?1 AND (?2 = '' OR kind "
        "= ?2) AND (?3 = '' OR mac = ?3) ORDER BY id DESC LIMIT ?4",
        before, filter.kind, filter.mac, count);
    return read_events(row);
}

} // namespace lab
