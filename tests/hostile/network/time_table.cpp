// A clock that is wrong shows in certificates that are not valid: the check-in hosts have such ones
// until the clock is set, and the host that tells the time misbehaves.
#include <cstring>

#include "base/state.h"
#include "sim/edges/transfers.h"
#include "tests/hostile/network/scene.h"
#include "tests/hostile/network/tables.h"

namespace {

class TimeRow {
  public:
    TimeRow(const LabProcess& lab, const Misbehaviour& what) : scene_(lab), what_(what) {}

    Row measure() {
        const Cycle fresh = run_cycle(false);
        const Cycle established = run_cycle(true);
        Row row = {what_.name};
        row.insert(row.end(), fresh.cells.begin(), fresh.cells.end());
        row.push_back(fresh.next + ", " + established.next);
        row.push_back(
            fresh.reached ? "" : absence(fresh, false) + ", " + absence(established, true));
        return row;
    }

  private:
    // A port that refuses does so for check-ins, too.
    void start(bool established) {
        scene_.mend();
        scene_.start_agent(established);
        if (what_.concerns_name())
            std::strcpy(fallback_host, Scene::named(fallback_host).c_str());
        const bool refuses = what_.name == "refused";
        scene_.lab.misbehave({{"mode", "expired"}});
        scene_.spoil(
            what_, {refuses ? "checkin" : "plain", scene_.lab.checkin_port(1),
                    std::string("http://") + fallback_host, 12, true});
    }

    // Certificates are valid again for whoever has the right time.
    std::function<bool()> clock_was_set() {
        return [this] { return scene_.called("clock_settime"); };
    }

    struct Cycle {
        std::vector<double> begun;
        Row cells;
        std::string next;
        bool reached;
    };

    Cycle run_cycle(bool established) {
        start(established);
        const std::vector<double> begun = scene_.begin_checkins({.cured = clock_was_set()});
        return {begun, describe(begun), scene_.last_sleep(), scene_.called("clock_settime")};
    }

    // The seconds are those from the first check-in to what comes after it.
    Row describe(const std::vector<double>& begun) const {
        return {
            scene_.outcomes("https://", "/checkin"), scene_.outcomes("http://", "/time"),
            show_seconds(begun.at(1) - begun.at(0)),
            scene_.called("clock_settime") ? "set" : "left alone",
            std::to_string(checkin_connect_establish)};
    }

    std::string absence(const Cycle& cycle, bool established) {
        return longest_absence(
            scene_, cycle.begun, [&] { start(established); }, clock_was_set());
    }

    Scene scene_;
    const Misbehaviour& what_;
};

} // namespace

Table measure_time() {
    Table table{
        "Time",
        {"misbehaviour", "check-ins", "requests", "take", "clock", "`establish`", "next check-in",
         "absence"},
        {}};
    const LabProcess lab;
    for (const Misbehaviour& what : all_misbehaviours())
        if (what.kind != Misbehaviour::of_certificate)
            table.rows.push_back(TimeRow(lab, what).measure());
    return table;
}
