// Requests whose body is a text or a file, and whose reply is a text, a file or nothing.
#include "transport/send.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include <memory>

#include "base/debug.h"
#include "base/text.h"
#include "transport/api_client.h"
#include "transport/reply.h"

namespace {

const char json_type[] = "application/json";

int32_t text_length(const char* text) { return static_cast<int32_t>(strlen(text)); }

int32_t send_json(
    const char* protocol, const char* host, const char* path, const char* method, char** reply_text,
    const char* body, const char* key, const char* secret) {
    api_reply reply = {};
    reply.type = reply_text ? REPLY_IN_MEMORY : REPLY_DISCARD;
    int32_t result = api_call(
        protocol, host, path, method, json_type, body, body ? text_length(body) : 0, &reply,
        nullptr, key, secret);
    if (reply_text)
        *reply_text = reply.text;
    return result;
}

} // namespace

int32_t api_send_buff1(
    const char* protocol, const char* host, const char* path, char** reply_text, const char* body,
    const char* key, const char* secret) {
    return send_json(protocol, host, path, "POST", reply_text, body, key, secret);
}

int32_t api_send_buff(
    const char* protocol, const char* host, const char* path, const char* body, const char* key,
    const char* secret) {
    return send_json(protocol, host, path, "POST", nullptr, body, key, secret);
}

int32_t api_get_buff(
    const char* protocol, const char* host, const char* path, char** reply_text, const char* key,
    const char* secret) {
    return send_json(protocol, host, path, "GET", reply_text, nullptr, key, secret);
}

namespace {

struct CloseFile {
    void operator()(FILE* file) const { fclose(file); }
};
using OpenFile = std::unique_ptr<FILE, CloseFile>;

// A request file's contents. The file stays open while its request is under way.
struct RequestBody {
    OwnedText text;
    OpenFile file;
    int32_t length;
};

// The size of a file, or -1.
intmax_t size_of(const char* path) {
    struct stat status;
    if (stat(path, &status) == 0)
        return status.st_size;
    debug_print("cannot run stat() on file '%s': %s\n", path, strerror(errno));
    return -1;
}

// A length that a request cannot state counts as one there is no memory for. The buffer is cleared,
// for a file that shrinks meanwhile leaves a part of it unread.
char* buffer_for(intmax_t size) {
    debug_print("allocate buffer for %jd bytes\n", size + 1);
    void* buffer = size < INT32_MAX ? calloc(static_cast<size_t>(size) + 1, 1) : nullptr;
    if (!buffer)
        debug_print("cannot allocate buffer to read API request file\n");
    return static_cast<char*>(buffer);
}

bool read_body(const char* path, RequestBody* body) {
    intmax_t size = size_of(path);
    if (size < 0)
        return false;
    body->text.reset(buffer_for(size));
    if (!body->text)
        return false;
    body->file.reset(fopen(path, "r"));
    if (!body->file) {
        debug_print("cannot open API request file\n");
        return false;
    }
    size_t wanted = static_cast<size_t>(size);
    size_t count = fread(body->text.get(), 1, wanted, body->file.get());
    if (count < wanted && !feof(body->file.get())) {
        debug_print("error while reading API request file\n");
        return false;
    }
    body->length = static_cast<int32_t>(count);
    return true;
}

} // namespace

int32_t api_send_file(
    const char* protocol, const char* host, const char* path, const char* content_type,
    const char* request_file, const char* reply_file, const char* extra_header, const char* key,
    const char* secret) {
    debug_print(
        "sending %s via API, path: %s, content-type: %s reply: %s\n", request_file, path,
        content_type, reply_file ? reply_file : "(null)");
    RequestBody body = {};
    if (!read_body(request_file, &body))
        return API_REJECTED;
    api_reply reply = {};
    if (reply_file) {
        reply.type = REPLY_TO_FILE;
        reply.path = reply_file;
    }
    return api_call(
        protocol, host, path, "POST", content_type, body.text.get(), body.length, &reply,
        extra_header, key, secret);
}
