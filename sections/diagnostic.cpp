// The report of diagnostics. What the cloud asks for is in diagnostic_requests.cpp.
#include "sections/diagnostic.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "base/command.h"
#include "base/debug.h"
#include "base/errors.h"
#include "base/numbers.h"
#include "json/json_document.h"

uint32_t traceroute_status;
uint32_t ping_status;
uint32_t cable_test_pending;
CableResult cable_result;
uint32_t uid;

void format_traceroute_path(char path[OUTPUT_PATH_SIZE]) {
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

enum { PAIRS = sizeof pairs / sizeof *pairs, CABLE_TEST_MEMBERS = 1 + 2 * PAIRS };

// False where memory is short for a part of it.
bool add_cable_test(cJSON* diagnostic) {
    cJSON* test = attachJsonObject(diagnostic, "cable_test");
    addJsonObjectIntItem(test, "port", one_based(static_cast<int>(cable_result.port)));
    for (int pair = 0; pair < PAIRS; ++pair) {
        addJsonObjectIntItem(test, pairs[pair].state, cable_result.pair_state[pair]);
        addJsonObjectIntItem(test, pairs[pair].length, cable_result.length_m[pair]);
    }
    return getJsonArraySize(test) == CABLE_TEST_MEMBERS;
}

} // namespace

int diag_cable_test_get(cJSON* diagnostic) {
    if (!cable_test_pending)
        return 0;
    if (!add_cable_test(diagnostic)) {
        removeJsonObject(diagnostic, "cable_test");
        return ERROR_REFUSED;
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

bool is_any_line(const char*) { return true; }

// A verbose traceroute dumps packets that are not for it, a word a line.
bool is_no_dump(const char* line) {
    if (!strstr(line, ": x"))
        return true;
    debug_print("api_checkin: vxc_traceroute_get x occur\n");
    return false;
}

// Joins lines until one does not fit. The last character of a line makes room for the separator,
// whether it is a newline or not.
void join_lines(FILE* output, char* text, size_t size, bool (*is_wanted)(const char* line)) {
    char line[LINE_SIZE];
    size_t length = 0;
    text[0] = '\0';
    while (fgets(line, sizeof line, output)) {
        if (!is_wanted(line))
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

// False where memory is short.
bool add_text(cJSON* diagnostic, const char* key, const char* text) {
    addJsonObjectStringItem(diagnostic, key, text);
    return getJsonObjectForKey(diagnostic, key);
}

// --- Traceroute.

void remove_output(const char* path) {
    char command[sizeof "rm " + OUTPUT_PATH_SIZE];
    snprintf(command, sizeof command, "rm %s", path);
    run_command(command);
}

} // namespace

int vxc_traceroute_get(cJSON* diagnostic) {
    if (traceroute_status != DIAGNOSTIC_READY)
        return 0;
    char path[OUTPUT_PATH_SIZE];
    format_traceroute_path(path);
    char text[TRACEROUTE_TEXT_SIZE];
    FILE* output = fopen(path, "r");
    if (output) {
        join_lines(output, text, sizeof text, is_no_dump);
        fclose(output);
        if (!add_text(diagnostic, "traceroute", text))
            return ERROR_REFUSED;
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
    FILE* output = fopen(ping_output, "r");
    if (output) {
        join_lines(output, text, sizeof text, is_any_line);
        fclose(output);
    }
    if (!add_text(diagnostic, "ping_ipv4", text))
        return ERROR_REFUSED;
    if (output)
        unlink(ping_output);
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
