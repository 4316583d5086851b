// A check-in where both hosts misbehave, where the check-in host alone does, and what comes next.
#include <cstdlib>
#include <cstring>

#include "base/state.h"
#include "tests/hostile/network/scene.h"
#include "tests/hostile/network/tables.h"
#include "transport/send.h"

namespace {

// A byte that is altered anywhere in the middle of them makes them unreadable.
const nlohmann::json settings = {
    {"system", {{"jumbo_frames", {{"size", 2000}}}}},
    {"pad", nlohmann::json(200, nlohmann::json::array())}};

std::string url_of(const char* host) { return std::string("https://") + host; }

// One switch and one misbehaviour.
class CheckinRow {
  public:
    CheckinRow(const LabProcess& lab, const Misbehaviour& what) : scene_(lab), what_(what) {}

    Row measure() {
        Row row = {what_.name, result_of_sending()};
        const Cycle fresh = run_cycle(false);
        const Cycle established = run_cycle(true);
        row.insert(row.end(), fresh.cells.begin(), fresh.cells.end());
        row.push_back(fresh.next + ", " + established.next);
        row.push_back(fallback_alone());
        row.push_back(
            fresh.reached ? "" : absence(fresh, false) + ", " + absence(established, true));
        return row;
    }

  private:
    void start(bool established, bool both_hosts) {
        scene_.mend();
        scene_.start_agent(established);
        if (what_.concerns_name())
            std::strcpy(CheckinHost, Scene::named(CheckinHost).c_str());
        if (what_.concerns_name() && both_hosts)
            std::strcpy(fallback_host, Scene::named(fallback_host).c_str());
        const std::string url = both_hosts ? "https://" : url_of(CheckinHost);
        scene_.spoil(what_, {"checkin", both_hosts ? 0 : scene_.lab.checkin_port(0), url, 2, true});
    }
    void offer_settings() {
        scene_.forget_switch();
        scene_.queue("settings?anyway=1", settings);
    }

    std::string result_of_sending() {
        offer_settings();
        start(false, true);
        checkin_type = CHECKIN_IPV4_ONLY;
        char* reply = nullptr;
        const int result =
            api_send_buff1(proto, CheckinHost, Checkinstr, &reply, "{}", gCattr.key, gCattr.secret);
        std::free(reply);
        return std::to_string(result);
    }

    struct Cycle {
        std::vector<double> begun;
        Row cells;
        std::string next;
        bool reached;
    };

    Cycle run_cycle(bool established) {
        offer_settings();
        start(established, true);
        const std::vector<double> begun = scene_.begin_checkins({});
        return {begun, describe(), scene_.last_sleep(), checkin_connect_establish != 0};
    }

    Row describe() const {
        const std::size_t pauses = scene_.pauses().size();
        return {
            scene_.outcomes(url_of(CheckinHost), "/checkin"),
            pauses ? std::to_string(pauses) + " of 10 s" : "",
            scene_.outcomes(url_of(fallback_host), "/checkin"),
            scene_.called("sal_switch_maxFrameSize_set") ? "applied" : "",
            std::to_string(checkin_connect_establish) + ", " + std::to_string(checkin_type) + ", " +
                std::to_string(checkin_retry_count) + ", " + std::to_string(setting_from_cloud),
            scene_.board.log.empty() ? "" : "yes"};
    }

    std::string fallback_alone() {
        offer_settings();
        start(false, false);
        scene_.begin_checkins({});
        return scene_.outcomes(url_of(fallback_host), "/checkin");
    }

    std::string absence(const Cycle& cycle, bool established) {
        offer_settings();
        return longest_absence(scene_, cycle.begun, [&] { start(established, true); });
    }

    Scene scene_;
    const Misbehaviour& what_;
};

} // namespace

Table measure_checkins() {
    Table table{
        "Check-in",
        {"misbehaviour", "result", "at the check-in host", "pauses", "at the fallback host",
         "settings", "flags", "log", "next check-in", "a sound fallback host", "absence"},
        {}};
    const LabProcess lab;
    for (const Misbehaviour& what : all_misbehaviours())
        table.rows.push_back(CheckinRow(lab, what).measure());
    return table;
}
