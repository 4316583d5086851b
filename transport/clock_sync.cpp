// The time is asked for, taken apart, and set.
#include "transport/clock_sync.h"

#include <curl/curl.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "base/debug.h"
#include "base/state.h"
#include "json/json_document.h"
#include "platform/util.h"
#include "transport/reply.h"
#include "transport/transfer_options.h"

bool may_set_clock = true;

namespace {

enum { TIME_ATTEMPTS = 2, TIME_TIMEOUT = 20, TIME_CONNECT_TIMEOUT = 10 }; // seconds

const time_t no_time = -1;

// The pieces of a time text in order, and the characters that end each.
enum { YEAR, MONTH, DAY, HOUR, MINUTE, SECOND, TIME_PIECES };

struct TimePiece {
    const char* delimiters;
    const char* label;
};

const TimePiece time_pieces[TIME_PIECES] = {
    {"- ", "tm_year"}, {"- ", "tm_mon"}, {"T ", "tm_mday"},
    {": ", "tm_hour"}, {": ", "tm_min"}, {"Z ", "tm_sec"},
};

// Cuts `text` up. Returns false at the first piece that is missing or not a number.
bool read_pieces(char* text, uint32_t* values) {
    char* rest = nullptr;
    for (int i = 0; i < TIME_PIECES; ++i) {
        const char* piece = strtok_r(i == 0 ? text : nullptr, time_pieces[i].delimiters, &rest);
        if (!piece || sys_util_str2ul_ret(piece, &values[i]))
            return false;
        debug_print("%s:\n%u\n", time_pieces[i].label, static_cast<unsigned>(values[i]));
    }
    return true;
}

// The offsets are taken off as unsigned numbers, where a senseless year or month only wraps.
time_t local_time(const uint32_t* values) {
    struct tm broken_down = {};
    broken_down.tm_year = static_cast<int>(values[YEAR] - 1900);
    broken_down.tm_mon = static_cast<int>(values[MONTH] - 1);
    broken_down.tm_mday = static_cast<int>(values[DAY]);
    broken_down.tm_hour = static_cast<int>(values[HOUR]);
    broken_down.tm_min = static_cast<int>(values[MINUTE]);
    broken_down.tm_sec = static_cast<int>(values[SECOND]);
    return mktime(&broken_down);
}

} // namespace

time_t parse_time_reply(const char* body) {
    cJSON* document = parseJsonString(body);
    const char* text = getJsonStringValueForKey(document, "time");
    time_t result = no_time;
    if (text) {
        debug_print("time:\n%s\n", text);
        uint32_t values[TIME_PIECES] = {};
        // The document is ours and about to be deleted, so its text may be cut up in place.
        if (read_pieces(const_cast<char*>(text), values))
            result = local_time(values);
    }
    deleteJsonObject(document);
    return result;
}

namespace {

// The cloud is asked plainly whatever the request's own scheme: certificates just failed.
CURLcode request_time(CURL* curl, api_reply* reply, char* error) {
    char url[HOST_SIZE + sizeof "http:///time"];
    snprintf(url, sizeof url, "%s://%s/time", "http", fallback_host);
    curl_easy_setopt(curl, CURLOPT_URL, url);
    curl_easy_setopt(curl, CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, error);
    set_common_options(curl, reply);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT, static_cast<long>(TIME_TIMEOUT));
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, static_cast<long>(TIME_CONNECT_TIMEOUT));
    return curl_easy_perform(curl);
}

time_t time_of_transfer(CURLcode code, const char* error, const api_reply& reply) {
    if (code != CURLE_OK) {
        debug_print("curl error (%d) %s\n", code, error);
        return no_time;
    }
    if (!reply.text) {
        debug_print("empty reply from time API ?!\n");
        return no_time;
    }
    debug_print("json (%lu bytes):\n%s\n", static_cast<unsigned long>(reply.length), reply.text);
    return parse_time_reply(reply.text);
}

time_t fetch_time() {
    CURL* curl = curl_easy_init();
    if (!curl)
        return no_time;
    char error[CURL_ERROR_SIZE] = "";
    api_reply reply = {REPLY_IN_MEMORY, {nullptr}, 0, LONGEST_NOTE};
    CURLcode code = request_time(curl, &reply, error);
    time_t result = time_of_transfer(code, error, reply);
    free(reply.text);
    curl_easy_cleanup(curl);
    return result;
}

} // namespace

void sync_clock() {
    if (!may_set_clock)
        return;
    time_t now = no_time;
    for (int attempt = 0; attempt < TIME_ATTEMPTS && now == no_time; ++attempt)
        now = fetch_time();
    if (now == no_time)
        return;
    struct timespec clock = {now, 0};
    clock_settime(CLOCK_REALTIME, &clock);
}
