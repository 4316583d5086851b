// "qos": QoS on and off, queue scheduling, the trust mode, and the queues of CoS and DSCP values.
#pragma once

#include "json/json_document.h"

extern "C" {

// Adds "qos" to the report. What cannot be read is missing from it and logged. Returns 0.
int vxc_qos_get(cJSON* report);

// Each adds one member to the "qos" object. They return 0 or the code that they recorded; the
// member is missing then, or, for the two tables, holds the entries up to the one at fault.
int vx_qosEnable_get(cJSON* qos);
int vx_qosSchedulMeth_get(cJSON* qos);
int vx_qosTurstMode_get(cJSON* qos);
int vx_qosCos_get(cJSON* qos);
int vx_qosDscp_get(cJSON* qos);

// Applies a "qos" object. Returns 0 or the code at which it stopped, which is in the error list.
// Bad table entries are in the error list only. QoS that is off is on during the update; it stays
// on when the scheduling method or the trust mode is refused.
int vxc_qos_set(const cJSON* qos);
}
