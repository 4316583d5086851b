// What a person wants to know of the switches at one look, and the lab's lists in pages. It reads
// the file that the store writes through a connection of its own, so that check-ins never wait for
// it. Every call may come from any thread.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "lab/events.h"
#include "lab/store.h"

namespace lab {

// A part of a list: `count` entries from the `from`-th on, counted from 0.
struct Page {
    std::int64_t from = 0;
    std::int64_t count = 50;
};

struct OverviewQuery {
    std::string search; // in MAC, name, model or firmware, whatever the case; empty: all
    std::string state;  // empty: any
    Page page;
    std::int64_t now = 0; // seconds since 1970, for what counts as silent
};

struct SwitchOverview {
    std::string mac;
    std::string state; // ok, silent, refused, new
    std::string name;  // these four from its reports, empty before the first
    std::string model;
    std::string firmware;
    std::string address;
    std::int64_t last_seen = 0; // seconds since 1970, 0 before the first check-in
    std::int64_t reported_seqno = 0;
    std::int64_t pending = 0;       // settings neither acknowledged nor refused
    std::int64_t pending_seqno = 0; // the newest of them
    std::int64_t reports = 0;
    std::int64_t refused_at = 0; // when its last try was refused, 0 if it was not
    std::string refusal;         // the details of that event, a JSON object
};

struct SwitchPage {
    std::map<std::string, std::int64_t> states; // how many fit the search, by state
    std::vector<SwitchOverview> switches;
};

// The last refusal of somebody whom nobody has registered.
struct Stranger {
    std::string mac;
    std::int64_t time = 0;
    std::string refusal;
};

// JSON texts, and of how many in all.
struct TextPage {
    std::int64_t total = 0;
    std::vector<std::string> entries;
};

class Overview {
  public:
    // After the store has made the file.
    explicit Overview(const std::string& path);

    SwitchPage list_switches(const OverviewQuery& query);
    std::optional<SwitchOverview> find_switch(const std::string& mac, std::int64_t now);
    std::vector<Stranger> list_strangers(); // the newest first, a few

    // Of one switch, each the newest first.
    TextPage list_reports(const std::string& mac, const Page& page);
    TextPage list_settings(const std::string& mac, const Page& page);
    TextPage list_actions(const std::string& mac, const Page& page);
    // What the last reports tell of the switch's power and of one port's counters.
    std::vector<std::string>
    list_history(const std::string& mac, const std::string& port, std::int64_t count);
    std::vector<std::string> list_checkins(const std::string& mac, std::int64_t count);
    std::vector<std::string> list_diagnostics(const std::string& mac);

    // What happened to one settings document, the oldest first, and the report that a switch sent
    // next after it was delivered last; 0 while there is none.
    std::vector<EventRecord> list_settings_events(const std::string& mac, std::int64_t seqno);
    std::int64_t find_verdict(const std::string& mac, std::int64_t seqno);

    // Events before an id, the newest first.
    std::vector<EventRecord>
    list_events_before(std::int64_t before, const EventFilter& filter, std::int64_t count);

  private:
    TextPage list_texts(
        const char* count_sql, const char* rows_sql, const std::string& mac, const Page& page);

    std::mutex mutex_;
    Database database_;
};

} // namespace lab
