// Requests to the cloud API as the rest of the agent makes them: method and content type fixed.
// All return api_call's results.
#pragma once

#include <stdint.h>

extern "C" {

// POSTs a NUL-terminated JSON text. With `reply_text` the reply is collected and handed over
// through it, null if nothing arrived; the caller frees it with free(). Without, it is discarded.
int32_t api_send_buff1(
    const char* protocol, const char* host, const char* path, char** reply_text, const char* body,
    const char* key, const char* secret);

// The same with the reply discarded.
int32_t api_send_buff(
    const char* protocol, const char* host, const char* path, const char* body, const char* key,
    const char* secret);

// A GET without a body; `reply_text` as above.
int32_t api_get_buff(
    const char* protocol, const char* host, const char* path, char** reply_text, const char* key,
    const char* secret);

// POSTs a file of text. The reply replaces the contents of `reply_file`, or is discarded where that
// is null. `extra_header` is a whole header line or null. A request file that cannot be read whole
// gives -1 and nothing is sent.
int32_t api_send_file(
    const char* protocol, const char* host, const char* path, const char* content_type,
    const char* request_file, const char* reply_file, const char* extra_header, const char* key,
    const char* secret);
}
