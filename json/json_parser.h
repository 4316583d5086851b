// JSON-RPC requests.
#pragma once

#include <cjson/cJSON.h>

extern "C" {

// A new object with the single member "jsonrpc": "2.0"; the caller deletes it. Never null: without
// memory for the object the process ends with an assertion message.
cJSON* initJsonRpcObject();
}
