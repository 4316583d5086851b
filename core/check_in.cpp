// A check-in's way: report, attempts, fallback, settings, acknowledgement.
#include "core/check_in.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "base/credentials.h"
#include "base/debug.h"
#include "base/errors.h"
#include "base/state.h"
#include "core/dispatch.h"
#include "core/local_request.h"
#include "core/redact.h"
#include "json/json_document.h"
#include "json/json_print.h"
#include "transport/api_client.h"
#include "transport/send.h"

namespace {

enum {
    RETRY_PAUSE = 10, // seconds
    HIGHEST_RETRY_WEIGHT = 10,
    NO_HOST_WEIGHT = 1,
    NO_CONNECT_WEIGHT = 2,
    FALLBACK_ATTEMPTS = 2,
};

void show_report(const char* body) {
    debug_print("api_checkin: pid %d send data %s\n \n", getpid(), body);
    debug_print("api_checkin: pid %d json send data finish\n", getpid());
}

// The report as text, or null where memory is short.
char* write_report() {
    cJSON* report = createJsonObject();
    if (!report)
        return nullptr;
    debug_print("api_checkin: before vxc_get pid %d\n", getpid());
    vxc_get(report);
    debug_print("api_checkin: after vxc_get pid %d\n", getpid());
    char* body = printJson(report);
    deleteJsonObject(report);
    if (body)
        show_report(body);
    return body;
}

// An earlier attempt may have left a reply, such as a server's error page.
int32_t send_report(const char* host, const char* body, char** reply) {
    free(*reply);
    *reply = nullptr;
    return api_send_buff1(proto, host, Checkinstr, reply, body, gCattr.key, gCattr.secret);
}

bool is_unreachable(int32_t result) { return result == API_NO_HOST || result == API_NO_CONNECT; }

// A refused connection costs as much patience as two names that cannot be resolved.
int weigh_failure(int32_t result, int weight) {
    if (result == API_NO_HOST) {
        weight += NO_HOST_WEIGHT;
        debug_print(
            "api_checkin: reset the DNS server setting for resolve host retry %d after %d (s)\n",
            weight, RETRY_PAUSE);
    } else {
        weight += NO_CONNECT_WEIGHT;
        debug_print(
            "api_checkin: connect retry %d after %d (s)\n", weight / NO_CONNECT_WEIGHT,
            RETRY_PAUSE);
    }
    return weight;
}

// The attempts alternate between IPv4 and any family, for a network may offer either one alone.
int32_t retry_after(int32_t result, const char* body, char** reply) {
    for (int weight = 0; weight < HIGHEST_RETRY_WEIGHT;) {
        if (weight > 0)
            debug_print("api_checkin: CheckinRetry pid %d\n", getpid());
        weight = weigh_failure(result, weight);
        checkin_type = checkin_type == CHECKIN_IPV4_ONLY ? CHECKIN_ANY_ADDRESS : CHECKIN_IPV4_ONLY;
        sleep_out(RETRY_PAUSE); // a local request may mend the host meanwhile
        debug_print("api_checkin: start re-connect pid %d\n", getpid());
        result = send_report(CheckinHost, body, reply);
        if (!is_unreachable(result))
            return result;
    }
    debug_print("api_checkin: still no connect pid %d\n", getpid());
    return API_FAILED;
}

int32_t send_to_fallback(const char* body, char** reply) {
    debug_print("retry by fallback host: %s\n", fallback_host);
    checkin_type = CHECKIN_IPV4_ONLY;
    int32_t result = API_FAILED;
    for (int attempt = 0; attempt < FALLBACK_ATTEMPTS && result != API_OK; ++attempt)
        result = send_report(fallback_host, body, reply);
    debug_print("api_checkin: api_send_buff1 finish %d\n", result);
    if (result >= API_NO_CONNECT && result <= API_REJECTED)
        log_failure("api_checkin: Network unreacherable");
    else
        checkin_connect_establish = 1;
    return result;
}

int32_t exchange(const char* body, char** reply) {
    checkin_type = CHECKIN_IPV4_ONLY;
    int32_t result = send_report(CheckinHost, body, reply);
    debug_print("api_checkin: api_send_buff1 finish pid %d\n", getpid());
    if (is_unreachable(result))
        result = retry_after(result, body, reply);
    if (result == API_FAILED)
        return send_to_fallback(body, reply);
    if (result == API_OK) {
        checkin_connect_establish = 1;
        debug_print("checkin_retry_count set to default\n");
        checkin_retry_count = 0;
    }
    return result;
}

// A configuration is acknowledged only if all of it was taken: the cloud then sends it again.
void acknowledge(const cJSON* settings) {
    const cJSON* cloud = getJsonObjectForKey(getJsonObjectForKey(settings, "system"), "cloud");
    const cJSON* seqno = getJsonObjectForKey(cloud, "config_seqno");
    if (error_count == 0 && getJsonBoolValue(seqno) == JSON_NUMBER)
        api_vxcloud_seqno_set(getJsonIntValue(seqno));
}

void show_reply(const char* reply) {
    char* shown = debug_flag ? redact_account(reply) : nullptr;
    if (shown)
        debug_print("\n%s\n\n", shown);
    free(shown);
}

void apply_reply(const char* reply) {
    debug_print("---------------------------------------------\n");
    show_reply(reply);
    cJSON* settings = parseJsonString(reply);
    if (!settings)
        return;
    int result = 0;
    debug_print("vxc_set: %d pid %d\n", result, getpid());
    result = vxc_set(settings);
    debug_print("vxc_set: %d pid %d\n", result, getpid());
    acknowledge(settings);
    deleteJsonObject(settings);
}

} // namespace

void api_checkin() {
    setting_from_cloud = 0;
    debug_print("api_checkin: prepare json send data pid %d\n", getpid());
    char* body = write_report();
    char* reply = nullptr;
    int32_t result = body ? exchange(body, &reply) : API_REJECTED;
    debug_print("api_checkin: %d\n", result);
    if (body)
        memset(gCattr.port_reset_flags, 0, sizeof gCattr.port_reset_flags);
    free(body);
    clear_errors();
    if (!reply)
        return;
    apply_reply(reply);
    free(reply);
    debug_print("api_checkin: %d pid %d\n", result, getpid());
}
