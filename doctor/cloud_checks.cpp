// The cloud's services, asked as the agent asks them.
#include "doctor/cloud_checks.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

#include "base/errors.h"
#include "base/identity.h"
#include "base/state.h"
#include "core/dispatch.h"
#include "doctor/agent_checks.h"
#include "doctor/clock.h"
#include "doctor/peer.h"
#include "json/json_document.h"
#include "json/json_print.h"
#include "transport/api_client.h"
#include "transport/clock_sync.h"
#include "transport/send.h"

// --- Time and clock.

namespace {

enum { TELLS_TIME, TIME_PORTAL, TIME_STATUS, NO_TIME, NO_TIME_ANSWER };

const Finding time_table[] = {
    {"tells", VERDICT_OK, "the time service answers", ""},
    {"portal", VERDICT_WRONG,
     "something other than the cloud answers: a captive portal or a proxy in the way",
     "let the switch out without logging in; the agent uses no proxy"},
    {"status", VERDICT_WRONG, "the time service answers with an error",
     "have whoever runs the cloud look at GET /time on the fallback host"},
    {"no-time", VERDICT_WRONG, "the answer of the time service holds no time",
     "have whoever runs the cloud look at GET /time on the fallback host"},
    {"no-answer", VERDICT_WRONG, "the time service takes the connection and does not answer",
     "have whoever runs the cloud look at GET /time on the fallback host, over plain HTTP"},
};

enum { TIME_TIMEOUT = 20, HTTP_OK = 200, SHOWN_WORDS = 120 };

// The beginning of an answer on one line.
void describe_words(char* detail, const char* words) {
    size_t length = strcspn(words, "\r\n");
    int shown = static_cast<int>(length < SHOWN_WORDS ? length : size_t{SHOWN_WORDS});
    describe_more(detail, "\"%.*s\"", shown, words);
}

void describe_answer(char* detail, const Probe& probe) {
    describe(detail, "status %ld, ", probe.status);
    if (probe.redirect[0])
        describe_more(detail, "to %s, ", probe.redirect);
    describe_words(detail, probe.body);
}

int judge_time(const char* body, char* detail) {
    time_t now = parse_time_reply(body);
    if (now == static_cast<time_t>(-1))
        return NO_TIME;
    cloud_time = {true, static_cast<long long>(now) - static_cast<long long>(time(nullptr))};
    char date[DATE_SIZE];
    format_date(date, now);
    describe(detail, "it is %s", date);
    return TELLS_TIME;
}

} // namespace

const Findings time_findings(time_table);

int check_time(char* detail) {
    Probe probe;
    probe_page(fallback_host, "/time", TIME_TIMEOUT, &probe);
    if (probe.code != CURLE_OK) {
        describe(detail, "%s: %s", fallback_host, probe.error);
        return NO_TIME_ANSWER;
    }
    describe_answer(detail, probe);
    if (is_portal(probe))
        return TIME_PORTAL;
    return probe.status == HTTP_OK ? judge_time(probe.body, detail) : TIME_STATUS;
}

namespace {

enum { CLOCK_AGREES, CLOCK_DRIFTS, CLOCK_WRONG };

// Clouds take requests within five minutes or so.
enum { MUCH_DRIFT = 60, TOO_MUCH_DRIFT = 300 }; // seconds

const Finding clock_table[] = {
    {"agrees", VERDICT_OK, "the switch's clock agrees with the cloud's", ""},
    {"drifts", VERDICT_WARNING, "the switch's clock is more than a minute off",
     "give the switch a time server"},
    {"wrong", VERDICT_WRONG,
     "the switch's clock is more than five minutes off: signed requests are refused",
     "give the switch a time server, or set its clock"},
};

} // namespace

const Findings clock_findings(clock_table);

int check_clock(char* detail) {
    long long off = cloud_time.ahead < 0 ? -cloud_time.ahead : cloud_time.ahead;
    describe(detail, "%lld s %s", off, cloud_time.ahead < 0 ? "ahead" : "behind");
    if (off > TOO_MUCH_DRIFT)
        return CLOCK_WRONG;
    return off > MUCH_DRIFT ? CLOCK_DRIFTS : CLOCK_AGREES;
}

// --- Report.

namespace {

enum { IS_WHOLE, SECTIONS_FAIL, NO_MEMORY };

const Finding report_table[] = {
    {"whole", VERDICT_OK, "the report of the switch is whole", ""},
    {"sections-fail", VERDICT_WARNING,
     "parts of the switch cannot be read: the report goes out without them",
     "the system log names the sections; the codes are the platform library's"},
    {"no-memory", VERDICT_WRONG, "there is not enough memory for a report",
     "look at what else runs on the switch"},
};

enum { SHOWN_CODES = 8, BYTES_A_KB = 1024 };

char* report_text;

void describe_codes(char* detail) {
    describe_more(detail, ", %u codes:", static_cast<unsigned>(error_count));
    for (uint32_t i = 0; i < error_count && i < SHOWN_CODES; ++i)
        describe_more(detail, " %d", static_cast<int>(error_flags[i]));
}

char* build_report() {
    cJSON* report = createJsonObject();
    if (!report)
        return nullptr;
    clear_errors();
    vxc_get(report);
    char* text = printJson(report);
    deleteJsonObject(report);
    return text;
}

} // namespace

const Findings report_findings(report_table);

int check_report(char* detail) {
    free(report_text);
    report_text = build_report();
    if (!report_text)
        return NO_MEMORY;
    describe(detail, "%u KB", static_cast<unsigned>(strlen(report_text) / BYTES_A_KB));
    if (error_count == 0)
        return IS_WHOLE;
    describe_codes(detail);
    return SECTIONS_FAIL;
}

// --- Check-in.

namespace {

enum { IS_ACCEPTED, IS_REFUSED, CHECKIN_PORTAL, NO_DOCUMENT, SERVER_FAILS, IS_CUT_OFF };

enum { CHECKIN_TIMEOUT = 30 }; // seconds

const Finding checkin_table[] = {
    {"accepted", VERDICT_OK, "the cloud accepts a signed check-in; its reply is not applied here",
     ""},
    {"refused", VERDICT_WRONG, "the cloud refuses the check-in",
     "its words tell why: an account or a MAC that it does not know, a clock that is off"},
    {"portal", VERDICT_WRONG, "something other than the cloud answers over TLS",
     "look who runs the check-in host"},
    {"no-document", VERDICT_WRONG,
     "the cloud's reply is no settings document: it was damaged or cut",
     "have whoever runs the cloud look at the body of its replies"},
    {"server-fails", VERDICT_WRONG, "the cloud takes the check-in and fails over it",
     "have whoever runs the cloud look at its log"},
    {"cut-off", VERDICT_WRONG,
     "the exchange breaks off; the evidence ends here: the cloud or something between ends it",
     "try again; have whoever runs the cloud look for this switch in its log"},
};

int judge_document(const char* reply, char* detail) {
    if (!reply || !reply[0])
        return IS_ACCEPTED;
    cJSON* settings = parseJsonString(reply);
    if (!settings) {
        describe_words(detail, reply);
        return NO_DOCUMENT;
    }
    if (getJsonChild(settings))
        describe(detail, "the reply holds settings, which the cloud will send the agent again");
    deleteJsonObject(settings);
    return IS_ACCEPTED;
}

bool is_markup(const char* text) { return text[0] == '<'; }

// The beginning of a document, which the words of a server that fails are not.
bool is_cut(const char* text) {
    cJSON* document = parseJsonString(text);
    bool whole = document != nullptr;
    deleteJsonObject(document);
    return text[0] == '{' && !whole;
}

int judge_checkin(int32_t result, const char* reply, char* detail) {
    if (result == API_OK)
        return judge_document(reply, detail);
    if (!reply)
        return result == API_REJECTED ? IS_REFUSED : IS_CUT_OFF;
    describe_words(detail, reply);
    if (result == API_FAILED)
        return is_cut(reply) ? IS_CUT_OFF : SERVER_FAILS;
    return is_markup(reply) ? CHECKIN_PORTAL : IS_REFUSED;
}

// The agent's generator is never seeded: within one second this program's first request would look
// like a copy of the agent's.
void use_nonces_of_its_own() {
    srandom(static_cast<unsigned>(getpid()) * 65537U ^ static_cast<unsigned>(time(nullptr)));
}

} // namespace

const Findings checkin_findings(checkin_table);

// The certificate was good a moment ago. Should it fail now, the clock stays as it is: this program
// only looks.
int check_checkin(char* detail) {
    format_checkin_path();
    may_set_clock = false;
    use_nonces_of_its_own();
    checkin_timeout = checkin_connect_timeout = CHECKIN_TIMEOUT;
    char* reply = nullptr;
    int32_t result = api_send_buff1(
        proto, CheckinHost, Checkinstr, &reply, report_text, gCattr.key, gCattr.secret);
    int finding = judge_checkin(result, reply, detail);
    free(reply);
    return finding;
}

// --- Keeper.

namespace {

enum { HOLDS_POLL, GAVE_WAY, TOOK_ACTION, ANSWERS_AT_ONCE, KEEPER_PORTAL, KEEPER_STATUS, HANGS_UP };

const Finding keeper_table[] = {
    {"holds", VERDICT_OK, "the connection keeper holds a poll", ""},
    {"gave-way", VERDICT_OK,
     "the connection keeper answers; the poll ended for the agent's own, so whether polls are held "
     "is "
     "not seen",
     ""},
    {"took-action", VERDICT_WARNING,
     "the poll was answered with an action, which was not performed and is lost to the agent",
     "push the action again"},
    {"at-once", VERDICT_WARNING,
     "the connection keeper answers at once instead of holding the poll",
     "have whoever runs the cloud hold polls: a switch that is answered asks again at once"},
    {"portal", VERDICT_WRONG,
     "something other than the cloud answers: a captive portal or a proxy in the way",
     "let the switch out without logging in; the agent uses no proxy"},
    {"status", VERDICT_WRONG, "the connection keeper refuses the poll",
     "have whoever runs the cloud look whether it knows this switch"},
    {"hangs-up", VERDICT_WRONG, "the connection keeper takes the connection and drops the poll",
     "have whoever runs the cloud look at it; a firewall may end idle connections, too"},
};

enum { POLL_TIMEOUT = 3, URL_SIZE = 256 }; // seconds, bytes

bool is_action(const char* body) {
    cJSON* message = parseJsonString(body);
    bool action = getJsonObjectForKey(message, "action") != nullptr;
    deleteJsonObject(message);
    return action;
}

int judge_poll(const Probe& probe, char* detail) {
    if (probe.code == CURLE_OPERATION_TIMEDOUT && probe.status == 0)
        return HOLDS_POLL;
    if (probe.code != CURLE_OK) {
        describe(detail, "%s: %s", ConnectionKeeperHost, probe.error);
        return HANGS_UP;
    }
    describe_answer(detail, probe);
    if (is_portal(probe))
        return KEEPER_PORTAL;
    if (probe.status != HTTP_OK)
        return KEEPER_STATUS;
    if (is_action(probe.body))
        return TOOK_ACTION;
    return agent_runs ? GAVE_WAY : ANSWERS_AT_ONCE;
}

} // namespace

const Findings keeper_findings(keeper_table);

int check_keeper(char* detail) {
    char path[URL_SIZE];
    snprintf(path, sizeof path, "/router/listen/%s", macaddrstr);
    Probe probe;
    probe_page(ConnectionKeeperHost, path, POLL_TIMEOUT, &probe);
    return judge_poll(probe, detail);
}
