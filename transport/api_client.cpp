// A request's way: arguments, header lines, transfer, result.
#include "transport/api_client.h"

#include <curl/curl.h>
#include <resolv.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

#include "base/debug.h"
#include "base/state.h"
#include "transport/clock_sync.h"
#include "transport/signature.h"
#include "transport/transfer_info.h"
#include "transport/transfer_options.h"

namespace {

struct ApiRequest {
    const char* protocol;
    const char* host;
    const char* path;
    const char* method;
    const char* content_type;
    const char* body;
    int32_t body_length;
    api_reply* reply;
    const char* extra_header;
    const char* key;
    const char* secret;
    time_t timestamp;
};

// The header lines made so far. Once one was lost, for want of memory or because it would have been
// several, the request is not worth sending: the cloud would refuse it.
struct HeaderList {
    curl_slist* lines;
    bool lost;
};

// Each header line in turn, and at last the URL.
char header_line[256];

// What the line buffer holds, for libcurl to copy. libcurl measures a text before it copies it, and
// an overlapping request may write a longer one between the two: a snapshot keeps its end.
struct HeaderLine {
    char text[sizeof header_line];
};

HeaderLine present_line() {
    HeaderLine line;
    memcpy(line.text, header_line, sizeof line.text);
    return line;
}

void print_request(const ApiRequest& request) {
    const api_reply& reply = *request.reply;
    debug_print(
        "sending body (len=%d) via API method: %s proto: %s host: %s path: %s content-type: %s "
        "reply_type: %u (%s)\n",
        static_cast<int>(request.body_length), request.method, request.protocol, request.host,
        request.path, request.content_type, static_cast<unsigned>(reply.type),
        reply.type == REPLY_TO_FILE ? reply.path : "");
}

bool is_either(const char* text, const char* one, const char* other) {
    return strcmp(text, one) == 0 || strcmp(text, other) == 0;
}

bool is_acceptable(const ApiRequest& request) {
    if (request.path[0] != '/') {
        debug_print("path must start with '/' (%s)\n", request.path);
        return false;
    }
    if (!is_either(request.protocol, "http", "https")) {
        debug_print("invalid proto: %s\n", request.protocol);
        return false;
    }
    if (!is_either(request.method, "GET", "POST")) {
        debug_print("invalid method: %s\n", request.method);
        return false;
    }
    return true;
}

void empty_reply_file(const api_reply& reply) {
    if (reply.type == REPLY_TO_FILE && file_exists(reply.path))
        file_trunc_to_zero(reply.path);
}

// A line end in a stored key would make a header line of what follows it.
bool is_one_line(const char* text) {
    for (; *text; ++text) {
        unsigned char character = static_cast<unsigned char>(*text);
        if (character < ' ' || character == 0x7F)
            return false;
    }
    return true;
}

void add_header(HeaderList* headers, const char* format, ...) __attribute__((format(printf, 2, 3)));

void add_header(HeaderList* headers, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(header_line, sizeof header_line, format, arguments);
    va_end(arguments);
    debug_print("curl_slist_append(): %s\n", header_line);
    HeaderLine line = present_line();
    curl_slist* grown =
        is_one_line(line.text) ? curl_slist_append(headers->lines, line.text) : nullptr;
    if (grown)
        headers->lines = grown;
    else
        headers->lost = true;
}

// `digits` holds two characters a byte and a terminator.
const char* to_hex(const uint8_t* bytes, size_t count, char* digits) {
    for (size_t i = 0; i < count; ++i)
        snprintf(digits + 2 * i, 3, "%02x", bytes[i]);
    return digits;
}

// The signature covers the authorization value as the line buffer holds it.
int32_t add_authentication(const ApiRequest& request, HeaderList* headers) {
    uint8_t nonce[NONCE_SIZE];
    uint8_t signature[SIGNATURE_SIZE];
    char digits[2 * SIGNATURE_SIZE + 1] = "";
    if (api_nonce_gen(request.timestamp, nonce) < 0)
        return API_REJECTED;
    add_header(
        headers, "Authorization: key=%s,timestamp=%lu,nonce=%s", request.key,
        static_cast<unsigned long>(request.timestamp), to_hex(nonce, NONCE_SIZE, digits));
    api_sign_gen(
        request.secret, header_line + strlen("Authorization: "), request.path, request.body,
        request.body_length, signature);
    add_header(headers, "Signature: %s", to_hex(signature, SIGNATURE_SIZE, digits));
    return API_OK;
}

int32_t add_headers(const ApiRequest& request, HeaderList* headers) {
    add_header(headers, "Content-Length: %d", static_cast<int>(request.body_length));
    add_header(headers, "Content-Type: %s", request.content_type);
    if (int32_t code = add_authentication(request, headers))
        return code;
    if (request.extra_header)
        add_header(headers, "%s", request.extra_header);
    return headers->lost ? API_FAILED : API_OK;
}

// libcurl takes a null body for "read it from standard input", so a request without one gets an
// empty text.
void set_request(CURL* curl, const ApiRequest& request, char* error) {
    snprintf(
        header_line, sizeof header_line, "%s://%s%s", request.protocol, request.host, request.path);
    debug_print("url: %s\n", header_line);
    curl_easy_setopt(curl, CURLOPT_URL, present_line().text);
    curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, request.method);
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, request.body ? request.body : "");
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, error);
}

void set_tls(CURL* curl) {
    curl_easy_setopt(curl, CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_ALL));
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, 2L);
    set_authorities(curl);
}

void set_address_family(CURL* curl) {
    if (checkin_type == CHECKIN_ANY_ADDRESS)
        return;
    curl_easy_setopt(curl, CURLOPT_IPRESOLVE, static_cast<long>(checkin_type));
    if (checkin_type == CHECKIN_IPV4_ONLY)
        debug_print("CURLOPT_IPRESOLVE set to CURL_IPRESOLVE_V4\n");
    else if (checkin_type == CHECKIN_IPV6_ONLY)
        debug_print("CURLOPT_IPRESOLVE set to CURL_IPRESOLVE_V6\n");
}

// A time that libcurl refuses, such as a negative one, would mean that a transfer never ends.
void set_time_out(CURL* curl, CURLoption option, int32_t seconds) {
    if (curl_easy_setopt(curl, option, static_cast<long>(seconds)) != CURLE_OK)
        curl_easy_setopt(curl, option, static_cast<long>(TRANSFER_TIMEOUT));
}

void set_time_outs(CURL* curl) {
    set_time_out(curl, CURLOPT_TIMEOUT, checkin_timeout);
    debug_print("CURLOPT_TIMEOUT: %d\n", static_cast<int>(checkin_timeout));
    set_time_out(curl, CURLOPT_CONNECTTIMEOUT, checkin_connect_timeout);
    debug_print("CURLOPT_CONNECTTIMEOUT: %d\n", static_cast<int>(checkin_connect_timeout));
}

void set_options(CURL* curl, const ApiRequest& request, const HeaderList& headers, char* error) {
    set_request(curl, request, error);
    if (strcmp(request.protocol, "https") == 0)
        set_tls(curl);
    set_common_options(curl, request.reply);
    set_address_family(curl);
    set_time_outs(curl);
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers.lines);
    if (debug_flag) {
        curl_easy_setopt(curl, CURLOPT_VERBOSE, 1L);
        debug_print("sending HTTP request..\n");
    }
}

int32_t result_of_failure(CURLcode code, const char* error) {
    debug_print("curl error (%d): %s\n", code, error);
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
        res_init();
        debug_print("CURLE_COULDNT_RESOLVE_HOST checkin_retry_count + 1\n");
        ++checkin_retry_count;
        return API_NO_HOST;
    case CURLE_COULDNT_CONNECT:
        debug_print("CURLE_COULDNT_CONNECT checkin_retry_count + 1\n");
        ++checkin_retry_count;
        return API_NO_CONNECT;
    case CURLE_PEER_FAILED_VERIFICATION:
        sync_clock();
        return API_FAILED;
    default:
        return API_FAILED;
    }
}

int32_t result_of_status(long status) {
    debug_print("curl returned HTTP status: %lu\n", static_cast<unsigned long>(status));
    if (status == 200)
        return API_OK;
    debug_print("curl call error\n");
    return status >= 500 && status <= 599 ? API_FAILED : API_REJECTED;
}

int32_t transfer(const ApiRequest& request, const HeaderList& headers) {
    CURL* curl = curl_easy_init();
    if (!curl)
        return API_FAILED;
    char error[CURL_ERROR_SIZE] = "";
    long status = 0;
    set_options(curl, request, headers, error);
    CURLcode code = curl_easy_perform(curl);
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    get_infos(curl);
    curl_easy_cleanup(curl);
    return code == CURLE_OK ? result_of_status(status) : result_of_failure(code, error);
}

int32_t run(ApiRequest& request) {
    print_request(request);
    if (!is_acceptable(request))
        return API_REJECTED;
    request.timestamp = time(nullptr);
    empty_reply_file(*request.reply);
    debug_print("connection attempt %d\n", 0);
    HeaderList headers = {nullptr, false};
    int32_t result = add_headers(request, &headers);
    if (result == API_OK)
        result = transfer(request, headers);
    curl_slist_free_all(headers.lines);
    return result;
}

} // namespace

int32_t api_call(
    const char* protocol, const char* host, const char* path, const char* method,
    const char* content_type, const char* body, int32_t body_length, api_reply* reply,
    const char* extra_header, const char* key, const char* secret) {
    ApiRequest request = {protocol,    host,  path,         method, content_type, body,
                          body_length, reply, extra_header, key,    secret,       0};
    return run(request);
}
