// A settings document applied without a check-in, for who tests a switch by its keeper channel.
#pragma once

#include "json/json_document.h"

extern "C" {

// Applies "summary_info", "snmp" and "device_access" of the document, in this order and whatever
// the ones before return. Returns the last one's result.
int api_test(const cJSON* document);
}
