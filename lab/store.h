// What the lab cloud remembers: accounts, reports, settings, actions, nonces, events, counters.
// Every call is atomic and may come from any thread.
#pragma once

#include "lab/database.h"
#include "lab/verify.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace lab {

struct SwitchRecord {
    std::string mac;
    std::string key;
    int64_t last_seen = 0;      // seconds since 1970, 0 before the first check-in
    int64_t reported_seqno = 0; // "config_seqno" of the latest report, 0 when it had none
    int64_t reports = 0;        // reports received
    int64_t pending = 0;        // settings neither acknowledged nor refused
};

struct ReportRecord {
    int64_t id = 0;
    int64_t time = 0;
    std::string body;
};

struct SettingsRecord {
    int64_t seqno = 0;
    std::string state; // pending, delivered, acknowledged, refused
    int64_t tries = 0;
    int64_t queued = 0;
    std::string document;
};

struct ActionRecord {
    int64_t id = 0;
    std::string state; // queued, answered
    std::string document;
    int64_t time = 0;
};

struct EventRecord {
    int64_t id = 0;
    int64_t time = 0;
    std::string kind;
    std::string mac;
    std::string text;
    std::string details; // a JSON object
};

struct DeliveryRules {
    int64_t now_ms = 0;
    int64_t pause_ms = 0;   // least time between two deliveries of one document
    int64_t most_tries = 0; // 0: no limit
};

struct Delivery {
    std::optional<SettingsRecord> document; // what to deliver now, its state already "delivered"
    std::vector<int64_t> refused;           // given up on the way
};

class Store {
  public:
    explicit Store(const std::string& path);

    bool put_switch(const std::string& mac, const Account& account); // true: it is new
    bool drop_switch(const std::string& mac);
    std::optional<Account> account(const std::string& mac);
    std::optional<SwitchRecord> switch_record(const std::string& mac);
    std::vector<SwitchRecord> switches();

    // True the first time. What is older than `oldest` is forgotten.
    bool first_use(const Authorization& authorization, int64_t oldest);

    void add_report(
        const std::string& mac, int64_t time, const std::string& body, int64_t reported_seqno);
    std::optional<ReportRecord> report(const std::string& mac, int64_t id); // id 0: the latest
    std::vector<ReportRecord> reports(const std::string& mac);              // newest first

    int64_t queue_settings(const std::string& mac, const std::string& document, int64_t now);
    std::vector<SettingsRecord> settings(const std::string& mac);
    bool drop_settings(const std::string& mac, int64_t seqno);
    bool acknowledge(const std::string& mac, int64_t seqno);
    Delivery deliver(const std::string& mac, int64_t reported_seqno, const DeliveryRules& rules);

    int64_t queue_action(const std::string& mac, const std::string& document, int64_t now);
    std::vector<ActionRecord> actions(const std::string& mac);
    std::optional<ActionRecord> take_action(const std::string& mac); // becomes "answered"
    void put_back_action(int64_t id);

    int64_t add_event(const EventRecord& event);
    std::vector<EventRecord> events(int64_t after, const std::string& kind, const std::string& mac);
    int64_t last_event();

    void count(const std::string& name);
    std::map<std::string, int64_t> counters();

  private:
    void renumber_open(const std::string& mac, int64_t reported_seqno);
    std::optional<SettingsRecord> oldest_open(const std::string& mac, int64_t& delivered_ms);

    std::mutex mutex_;
    Database database_;
};

} // namespace lab
