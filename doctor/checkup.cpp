// The order of the steps, and which of them can be looked at.
#include "doctor/checkup.h"

#include <string.h>

#include "doctor/agent_checks.h"
#include "doctor/cloud_checks.h"
#include "doctor/network_checks.h"
#include "doctor/resource_checks.h"
#include "doctor/trust_checks.h"

// "identity", "settings" and "account" read what the later steps look at. A clock that is wrong
// spoils the certificates; one that nobody can be asked about does not.
const Step steps[] = {
    {"agent", "agent", check_agent, &agent_findings, false, {}, nullptr},
    {"identity", "identity", check_identity, &identity_findings, false, {}, nullptr},
    {"settings", "stored settings", check_settings, &settings_findings, false, {}, nullptr},
    {"account", "account", check_account, &account_findings, false, {"identity"}, nullptr},
    {"checkin-name",
     "name of the check-in host",
     check_checkin_name,
     &name_findings,
     false,
     {"settings"},
     nullptr},
    {"checkin-connect",
     "way to the check-in host",
     check_checkin_connect,
     &connect_findings,
     false,
     {"checkin-name"},
     nullptr},
    {"fallback-name",
     "name of the fallback host",
     check_fallback_name,
     &name_findings,
     true,
     {"settings"},
     nullptr},
    {"fallback-connect",
     "way to the fallback host",
     check_fallback_connect,
     &connect_findings,
     true,
     {"fallback-name"},
     nullptr},
    {"time", "time service", check_time, &time_findings, true, {"fallback-connect"}, nullptr},
    {"clock", "clock", check_clock, &clock_findings, false, {"time"}, nullptr},
    {"trust", "trusted authorities", check_trust, &trust_findings, false, {}, nullptr},
    {"certificate",
     "certificate of the check-in host",
     check_checkin_certificate,
     &certificate_findings,
     false,
     {"checkin-connect", "trust"},
     "clock"},
    {"fallback-certificate",
     "certificate of the fallback host",
     check_fallback_certificate,
     &certificate_findings,
     true,
     {"fallback-connect", "trust"},
     "clock"},
    {"report", "report", check_report, &report_findings, false, {}, nullptr},
    {"checkin",
     "check-in",
     check_checkin,
     &checkin_findings,
     false,
     {"account", "certificate", "report"},
     "clock"},
    {"keeper-name",
     "name of the connection keeper",
     check_keeper_name,
     &name_findings,
     false,
     {"settings"},
     nullptr},
    {"keeper-connect",
     "way to the connection keeper",
     check_keeper_connect,
     &connect_findings,
     false,
     {"keeper-name"},
     nullptr},
    {"keeper",
     "connection keeper",
     check_keeper,
     &keeper_findings,
     false,
     {"identity", "keeper-connect"},
     nullptr},
    {"memory", "memory", check_memory, &memory_findings, true, {}, nullptr},
    {"space", "room for an upgrade", check_space, &space_findings, true, {}, nullptr},
    {"saved", "saved configuration", check_saved, &saved_findings, false, {}, nullptr},
};

const int steps_count = sizeof steps / sizeof steps[0];

namespace {

struct Past {
    bool went_well; // a warning of its own included
    bool was_wrong;
};

Past past[sizeof steps / sizeof steps[0]];

int index_of(const char* name) {
    for (int i = 0; name && i < steps_count; ++i)
        if (strcmp(steps[i].name, name) == 0)
            return i;
    return -1;
}

// The first step without which this one makes no sense; null when there is none.
const Step* missing_need(const Step& step) {
    for (int i = 0; i < MOST_NEEDS && step.needs[i]; ++i) {
        int needed = index_of(step.needs[i]);
        if (needed >= 0 && !past[needed].went_well)
            return &steps[needed];
    }
    int spoiler = index_of(step.spoiler);
    return spoiler >= 0 && past[spoiler].was_wrong ? &steps[spoiler] : nullptr;
}

void look(const Step& step, Line* line) {
    line->finding = &step.findings->rows[step.check(line->detail)];
    line->verdict = verdict_of(step, *line->finding);
}

} // namespace

int run_checkup(void (*show)(const Line& line)) {
    int wrong = 0;
    for (int i = 0; i < steps_count; ++i) {
        Line line = {&steps[i], nullptr, VERDICT_SKIPPED, nullptr, ""};
        if (const Step* missing = missing_need(steps[i]))
            line.missing = missing->title;
        else
            look(steps[i], &line);
        past[i].went_well = line.finding && line.finding->verdict < VERDICT_WRONG;
        past[i].was_wrong = line.finding && line.finding->verdict == VERDICT_WRONG;
        wrong += line.verdict == VERDICT_WRONG;
        show(line);
    }
    return wrong;
}
