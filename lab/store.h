// What the lab cloud remembers: accounts, reports, settings, actions, nonces, events, counters.
// Every call is atomic and may come from any thread.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "lab/database.h"
#include "lab/verify.h"

namespace lab {

struct SwitchRecord {
    std::string mac;
    std::string key;
    std::int64_t last_seen = 0;      // seconds since 1970, 0 before the first check-in
    std::int64_t reported_seqno = 0; // "config_seqno" of the latest report, 0 when it had none
    std::int64_t reports = 0;        // reports received
    std::int64_t pending = 0;        // settings neither acknowledged nor refused
};

struct ReportRecord {
    std::int64_t id = 0;
    std::int64_t time = 0;
    std::string body; // not in a list
    std::int64_t bytes = 0;
};

struct SettingsRecord {
    std::int64_t seqno = 0;
    std::string state; // pending, delivered, acknowledged, refused
    std::int64_t tries = 0;
    std::int64_t queued = 0;
    std::string document;
};

struct ActionRecord {
    std::int64_t id = 0;
    std::string state; // queued, answered
    std::string document;
    std::int64_t time = 0;
};

struct EventRecord {
    std::int64_t id = 0;
    std::int64_t time = 0;
    std::string kind;
    std::string mac;
    std::string text;
    std::string details; // a JSON object
};

struct DeliveryRules {
    std::int64_t now_ms = 0;
    std::int64_t pause_ms = 0;   // least time between two deliveries of one document
    std::int64_t most_tries = 0; // 0: no limit
};

struct Delivery {
    std::optional<SettingsRecord> document; // what to deliver now, its state already "delivered"
    std::vector<std::int64_t> refused;      // given up on the way
};

class Store {
  public:
    explicit Store(const std::string& path);

    bool put_switch(const std::string& mac, const Account& account); // true: it is new
    bool drop_switch(const std::string& mac);
    std::optional<Account> find_account(const std::string& mac);
    std::optional<SwitchRecord> find_switch(const std::string& mac);
    std::vector<SwitchRecord> list_switches();

    // True the first time that this switch uses it with this timestamp. What is older than `oldest`
    // is forgotten.
    bool
    record_nonce(const std::string& mac, const Authorization& authorization, std::int64_t oldest);

    // Its id.
    std::int64_t add_report(
        const std::string& mac, std::int64_t time, const std::string& body,
        std::int64_t reported_seqno);
    std::optional<ReportRecord>
    find_report(const std::string& mac, std::int64_t id);           // id 0: the latest
    std::vector<ReportRecord> list_reports(const std::string& mac); // newest first

    std::int64_t
    queue_settings(const std::string& mac, const std::string& document, std::int64_t now);
    std::vector<SettingsRecord> list_settings(const std::string& mac);
    bool drop_settings(const std::string& mac, std::int64_t seqno);
    bool acknowledge(const std::string& mac, std::int64_t seqno);
    Delivery
    deliver(const std::string& mac, std::int64_t reported_seqno, const DeliveryRules& rules);

    std::int64_t
    queue_action(const std::string& mac, const std::string& document, std::int64_t now);
    std::int64_t count_queued_actions(const std::string& mac);
    std::vector<ActionRecord> list_actions(const std::string& mac);
    std::optional<ActionRecord> take_action(const std::string& mac); // becomes "answered"
    void put_back_action(std::int64_t id);

    std::int64_t add_event(const EventRecord& event);
    std::vector<EventRecord>
    list_events(std::int64_t after, const std::string& kind, const std::string& mac);
    std::int64_t find_last_event();

    void count(const std::string& name);
    std::map<std::string, std::int64_t> list_counters();

  private:
    void renumber_open(const std::string& mac, std::int64_t reported_seqno);
    std::optional<SettingsRecord>
    find_oldest_open(const std::string& mac, std::int64_t& delivered_ms);

    std::mutex mutex_;
    Database database_;
};

} // namespace lab
