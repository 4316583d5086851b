// JSON-RPC requests: without memory for one the process stops, in every build.
#include "json/json_parser.h"

#include <stdio.h>
#include <stdlib.h>

#include "json/json_document.h"

// Not assert(): a release build has to stop here too.
[[noreturn]] static void fail_assertion(const char* assertion) {
    fprintf(stderr, "json_parser: Assertion `%s' failed.\n", assertion);
    abort();
}

cJSON* initJsonRpcObject() {
    cJSON* root = createJsonObject();
    if (!root)
        fail_assertion("((void *)0) != root");
    addJsonObjectStringItem(root, "jsonrpc", "2.0");
    return root;
}
