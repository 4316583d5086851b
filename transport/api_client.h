// One signed request to the cloud API.
//
// With debug_flag set the console shows every header line, and so the account's key, since it is
// what one compares with the cloud's log when a request is refused. The secret is never printed.
#pragma once

#include <stdint.h>

#include "transport/reply.h"

// Results of a request.
enum {
    API_OK = 0,          // HTTP status 200
    API_REJECTED = -1,   // an argument, or an HTTP status other than 200 and 500 to 599
    API_FAILED = -2,     // HTTP status 500 to 599, or the transfer did not succeed
    API_NO_HOST = -3,    // the host's name could not be resolved
    API_NO_CONNECT = -4, // the host could not be connected to
};

extern "C" {

// Runs the request and returns one of the results above; -3 and -4 raise checkin_retry_count, and a
// certificate that fails has set the clock from the cloud's time API before -2 is returned.
//
// `protocol` is "http" or "https", `method` "GET" or "POST", `path` begins with "/". `host` may
// carry a port. `body` holds `body_length` bytes of NUL-terminated text without an inner NUL, or is
// null with a length of 0. `reply` is not null; its file is emptied first. `extra_header` is a
// whole header line or null. A header line and the URL are cut at 255 characters, while the
// signature covers the whole path. The line buffer is shared: overlapping calls spoil each other's
// requests.
int32_t api_call(
    const char* protocol, const char* host, const char* path, const char* method,
    const char* content_type, const char* body, int32_t body_length, api_reply* reply,
    const char* extra_header, const char* key, const char* secret);
}
