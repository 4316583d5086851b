// The report of diagnostics; see diagnostic.h. What the cloud asks for is in
// diagnostic_requests.cpp.
#include "sections/diagnostic.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "base/debug.h"
#include "base/errors.h"
#include "json/json_document.h"

uint32_t traceroute_status;
uint32_t ping_status;
uint32_t cable_test_pending;
CableResult cable_result;
uint32_t uid;

void traceroute_output(char path[OUTPUT_PATH_SIZE]) {
    snprintf(path, OUTPUT_PATH_SIZE, "%s%d", "/tmp/traceroute_tmp", static_cast<int>(uid));
}

// --- The cable test.

namespace {

struct PairKeys {
    const char* state;
    const char* length;
};

const PairKeys pairs[] = {
    {"pair_a", "cable_a_length_m"},
    {"pair_b", "cable_b_length_m"},
    {"pair_c", "cable_c_length_m"},
    {"pair_d", "cable_d_length_m"},
};

} // namespace

int diag_cable_test_get(cJSON* diagnostic) {
    if (!cable_test_pending)
        return 0;
    cJSON* test = attachJsonObject(diagnostic, "cable_test");
    addJsonObjectIntItem(test, "port", static_cast<int32_t>(cable_result.port + 1));
    for (int pair = 0; pair < 4; ++pair) {
        addJsonObjectIntItem(test, pairs[pair].state, cable_result.pair_state[pair]);
        addJsonObjectIntItem(test, pairs[pair].length, cable_result.length_m[pair]);
    }
    cable_result = {};
    cable_test_pending = 0;
    return 0;
}

// --- Commands: their output, line by line.

namespace {

enum {
    LINE_SIZE = 200 + 1, // what is longer is taken for several lines
    TRACEROUTE_TEXT_SIZE = 32766 + 1,
    PING_TEXT_SIZE = 2046 + 1,
};

const char separator[] = "\\r\\n"; // backslash, r, backslash, n

bool any_line(const char*) { return true; }

// A verbose traceroute dumps packets that are not for it, a word a line.
bool not_of_a_dump(const char* line) {
    if (!strstr(line, ": x"))
        return true;
    debug_print("api_checkin: vxc_traceroute_get x occur\n");
    return false;
}

// Joins lines until one does not fit. The last character of a line makes room for the separator,
// whether it is a newline or not.
void join_lines(FILE* output, char* text, size_t size, bool (*wanted)(const char* line)) {
    char line[LINE_SIZE];
    size_t length = 0;
    text[0] = '\0';
    while (fgets(line, sizeof line, output)) {
        if (!wanted(line))
            continue;
        size_t kept = strlen(line);
        kept -= kept > 0; // a line may begin with a NUL
        if (length + kept + sizeof separator > size)
            break;
        memcpy(text + length, line, kept);
        memcpy(text + length + kept, separator, sizeof separator);
        length += kept + sizeof separator - 1;
    }
}

// --- Traceroute.

void remove_output(const char* path) {
    char command[sizeof "rm " + OUTPUT_PATH_SIZE];
    snprintf(command, sizeof command, "rm %s", path);
    system(command);
}

} // namespace

int vxc_traceroute_get(cJSON* diagnostic) {
    if (traceroute_status != DIAGNOSTIC_READY)
        return 0;
    char path[OUTPUT_PATH_SIZE];
    traceroute_output(path);
    FILE* output = fopen(path, "r");
    if (output) {
        char text[TRACEROUTE_TEXT_SIZE];
        join_lines(output, text, sizeof text, not_of_a_dump);
        fclose(output);
        addJsonObjectStringItem(diagnostic, "traceroute", text);
        remove_output(path);
    }
    traceroute_status = DIAGNOSTIC_IDLE;
    return output ? 0 : ERROR_REFUSED;
}

// --- Ping.

// Also what a ping that is under way has written so far.
int vxc_ping_ipv4_get(cJSON* diagnostic) {
    if (ping_status == DIAGNOSTIC_IDLE)
        return 0;
    char text[PING_TEXT_SIZE] = "unreachable!";
    if (FILE* output = fopen(ping_output, "r")) {
        join_lines(output, text, sizeof text, any_line);
        fclose(output);
        unlink(ping_output);
    }
    addJsonObjectStringItem(diagnostic, "ping_ipv4", text);
    ping_status = DIAGNOSTIC_IDLE;
    return 0;
}

// --- The whole.

namespace {

bool nothing_waits() {
    return ping_status != DIAGNOSTIC_READY && traceroute_status != DIAGNOSTIC_READY &&
           !cable_test_pending;
}

} // namespace

int vxc_diagnostic_get(cJSON* report) {
    if (nothing_waits())
        return 0;
    cJSON* diagnostic = attachJsonObject(report, "diagnostic");
    if (!diagnostic)
        return ERROR_REFUSED;
    diag_cable_test_get(diagnostic);
    debug_print("api_checkin: before vxc_traceroute_get pid %d\n", getpid());
    if (vxc_traceroute_get(diagnostic))
        log_failure("traceroute result get fail");
    debug_print("api_checkin: before vxc_ping_ipv4_get pid %d\n", getpid());
    if (vxc_ping_ipv4_get(diagnostic))
        log_failure("ping ipv4 result get fail");
    return 0;
}
