// Diagnostics: cable test, traceroute and ping. The connection keeper runs them when the cloud asks
// for them; the next report delivers each result once.
#pragma once

#include <stdint.h>

#include "driver/cablediag.h"
#include "json/json_document.h"

// How far a traceroute or ping has got. From idle to running when it is asked for, to ready when
// its command returns, and back to idle when it is reported.
enum DiagnosticStatus { DIAGNOSTIC_IDLE = 0, DIAGNOSTIC_READY = 1, DIAGNOSTIC_RUNNING = 2 };

enum { OUTPUT_PATH_SIZE = 40 };

// Where the output of the two commands is kept until it is reported.
constexpr char ping_output[] = "/tmp/pingtest_tmp";
void format_traceroute_path(char path[OUTPUT_PATH_SIZE]);

extern "C" {

extern uint32_t traceroute_status;
extern uint32_t ping_status;
extern uint32_t cable_test_pending; // 1 while cable_result waits to be reported
extern CableResult cable_result;
extern uint32_t uid; // numbers the traceroute's output file; 0, for one at a time is run

// Tests the cable at `port` (zero-based logical port) and keeps the result to be reported. Returns
// 0, also for a port that has no cable to be tested: then cable_result is as it was, but for the
// port.
int vxc_cable_test(int port);

// Run a command to its end, at the "host" of `message`: a name or address, passed on as it is. Each
// does nothing, and returns 0, while an earlier one of its kind is running or was not reported.
// Otherwise they return 0, or the code that they recorded: ERROR_BAD_VALUE without a host,
// ERROR_REFUSED for a ping to 0.0.0.0, or the platform's. Whether the command succeeded is for its
// output to tell.
int vxc_traceroute(const cJSON* message);
int vxc_ping_ipv4(const cJSON* message);

// Adds "diagnostic" to the report, unless nothing waits. Returns 0, or ERROR_REFUSED where memory
// is short for that much. A result that cannot be added whole goes on waiting.
int vxc_diagnostic_get(cJSON* report);

// Its parts: each adds its own result to the "diagnostic" object, unless it has none, and goes back
// to idle. Return 0, or ERROR_REFUSED where memory is short, with the result still waiting; a
// traceroute also for an output that cannot be opened, which is given up.
int diag_cable_test_get(cJSON* diagnostic);
int vxc_traceroute_get(cJSON* diagnostic);
int vxc_ping_ipv4_get(cJSON* diagnostic);
}
