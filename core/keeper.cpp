// The keeper's thread: one request after another, and what the answers ask for.
//
// The main thread may cancel it at any time, so cancellation is enabled only while the thread
// waits for the network or sleeps: it then holds no lock and has no allocation in progress. That is
// why the transfer is driven step by step instead of by one call that waits inside libcurl.
#include "core/keeper.h"

#include <curl/curl.h>
#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/select.h>
#include <unistd.h>

#include "base/debug.h"
#include "base/state.h"
#include "core/check_in.h"
#include "core/keeper_actions.h"
#include "json/json_document.h"
#include "platform/vxcloud.h"
#include "transport/reply.h"
#include "transport/transfer_options.h"

namespace {

enum {
    URL_SIZE = 256,
    LISTEN_TIMEOUT = 1800,    // seconds
    KEEPALIVE_INTERVAL = 60,  // seconds
    PAUSE_AFTER_FAILURE = 10, // seconds
    FAILURES_TO_REPORT = 10,
    WAIT_WITHOUT_SOCKET = 100, // milliseconds
    LONGEST_JOIN = 2000,       // milliseconds
    JOIN_STEP = 10,
    WAITED_SOCKETS = 16, // a transfer has one, or two while it chooses between address families
};

// Both outlive a thread that is cancelled, so that nothing is lost with it.
api_reply capture;
CURLM* transfers;

void allow_cancellation(bool allowed) {
    int before;
    pthread_setcancelstate(allowed ? PTHREAD_CANCEL_ENABLE : PTHREAD_CANCEL_DISABLE, &before);
}

void release_capture() {
    free(capture.text);
    capture.text = nullptr;
    capture.length = 0;
    capture.head_length = 0;
}

short poll_events(int socket, const fd_set* readable, const fd_set* writable) {
    int events = FD_ISSET(socket, readable) ? POLLIN : 0;
    events |= FD_ISSET(socket, writable) ? POLLOUT : 0;
    return static_cast<short>(events);
}

// The sockets for which the transfer waits; their number.
nfds_t list_sockets(pollfd* sockets) {
    fd_set readable;
    fd_set writable;
    fd_set exceptional;
    FD_ZERO(&readable);
    FD_ZERO(&writable);
    FD_ZERO(&exceptional);
    int highest = -1;
    curl_multi_fdset(transfers, &readable, &writable, &exceptional, &highest);
    nfds_t count = 0;
    for (int socket = 0; socket <= highest && count < WAITED_SOCKETS; ++socket) {
        if (short events = poll_events(socket, &readable, &writable))
            sockets[count++] = {socket, events, 0};
    }
    return count;
}

// The kernel keeps the connection alive by itself: the thread is woken by an answer, or when the
// next of libcurl's timers is due, of which the last is the end of the transfer.
int longest_wait(bool has_sockets) {
    long wanted = -1;
    curl_multi_timeout(transfers, &wanted);
    int limit = has_sockets ? LISTEN_TIMEOUT * 1000 : WAIT_WITHOUT_SOCKET;
    return wanted < 0 || wanted > limit ? limit : static_cast<int>(wanted);
}

void wait_for_network() {
    pollfd sockets[WAITED_SOCKETS];
    nfds_t count = list_sockets(sockets);
    int milliseconds = longest_wait(count > 0);
    allow_cancellation(true);
    poll(sockets, count, milliseconds);
    allow_cancellation(false);
}

CURLcode outcome_of(const CURL* transfer) {
    int left;
    while (const CURLMsg* message = curl_multi_info_read(transfers, &left)) {
        if (message->msg == CURLMSG_DONE && message->easy_handle == transfer)
            return message->data.result;
    }
    return CURLE_OUT_OF_MEMORY;
}

// The set of transfers refuses one only for want of memory.
CURLcode run_transfer(CURL* transfer) {
    if (!transfers)
        transfers = curl_multi_init();
    if (curl_multi_add_handle(transfers, transfer) != CURLM_OK)
        return CURLE_OUT_OF_MEMORY;
    int running = 1;
    while (curl_multi_perform(transfers, &running) == CURLM_OK && running)
        wait_for_network();
    return outcome_of(transfer);
}

void set_options(CURL* transfer, const char* url) {
    curl_easy_setopt(transfer, CURLOPT_URL, url);
    set_common_options(transfer, &capture);
    curl_easy_setopt(transfer, CURLOPT_TIMEOUT, static_cast<long>(LISTEN_TIMEOUT));
    curl_easy_setopt(transfer, CURLOPT_VERBOSE, 0L);
    curl_easy_setopt(transfer, CURLOPT_TCP_KEEPINTVL, static_cast<long>(KEEPALIVE_INTERVAL));
    // The set of transfers outlives the transfer. It would keep its connection, and for a minute
    // the address of a host that has moved.
    curl_easy_setopt(transfer, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(transfer, CURLOPT_DNS_CACHE_TIMEOUT, 0L);
}

// The transfer leaves the set before it is released: otherwise its connection, on which an answer
// is still due, stays in the set and the next request takes that answer for its own.
void release_transfer() {
    if (!thread_curl)
        return;
    curl_multi_remove_handle(transfers, thread_curl);
    curl_easy_cleanup(thread_curl);
    thread_curl = nullptr;
}

CURLcode listen_once(const char* url) {
    release_capture();
    capture.type = REPLY_IN_MEMORY;
    capture.limit = LONGEST_NOTE;
    CURL* transfer = curl_easy_init();
    thread_curl = transfer;
    if (transfer)
        set_options(transfer, url);
    debug_print("connect to connection-keeper\n");
    CURLcode result = transfer ? run_transfer(transfer) : CURLE_FAILED_INIT;
    if (result != CURLE_OK)
        debug_print("curl_easy_perform() failed: %s\n", curl_easy_strerror(result));
    release_transfer();
    return result;
}

void obey(const char* text) {
    cJSON* message = parseJsonString(text);
    if (getJsonObjectForKey(message, "action")) {
        perform_keeper_action(message);
        if (setting_from_cloud) {
            debug_print("connect to connection-keeper : setting_from_cloud\n");
            api_checkin();
        }
    }
    deleteJsonObject(message);
}

// Nothing is done about the resolver: the message tells an engineer where to look.
void count_failure(int* failures) {
    allow_cancellation(true);
    sleep(PAUSE_AFTER_FAILURE);
    allow_cancellation(false);
    ++*failures;
    debug_print("connection-keeper: feiled %d\n", *failures);
    if (*failures < FAILURES_TO_REPORT)
        return;
    debug_print("connection-keeper: reset the DNS server setting\n");
    *failures = 0;
}

} // namespace

void keeper_turn(const char* url, int* failures) {
    debug_print("%s\n\n", url);
    sal_vxcloud_debug_flag_get(&debug_flag);
    CURLcode result = listen_once(url);
    debug_print(
        "connection-keeper (%lu bytes):\n%s\n", static_cast<unsigned long>(capture.length),
        capture.text ? capture.text : "");
    if (capture.text)
        obey(capture.text);
    release_capture();
    if (result == CURLE_OK)
        *failures = 0;
    else
        count_failure(failures);
}

void format_listen_url(char* url, int size) {
    snprintf(
        url, static_cast<size_t>(size), "http://%s/router/listen/%s", ConnectionKeeperHost,
        macaddrstr);
}

void* threadFunc(void*) {
    allow_cancellation(false);
    char url[URL_SIZE] = "";
    format_listen_url(url, sizeof url);
    debug_print("\npthread_create\n\n");
    int type;
    // Let in only while it waits. NOLINTNEXTLINE(cert-pos47-c,concurrency-thread-canceltype-*)
    pthread_setcanceltype(PTHREAD_CANCEL_ASYNCHRONOUS, &type);
    for (int failures = 0;;)
        keeper_turn(url, &failures);
}

void start_keeper(KeeperThread* keeper) {
    keeper->running = pthread_create(&keeper->handle, nullptr, threadFunc, nullptr) == 0;
    if (!keeper->running)
        connection_url_change = 1;
}

namespace {

bool join_soon(pthread_t thread) {
    for (int waited = 0; pthread_tryjoin_np(thread, nullptr) != 0; waited += JOIN_STEP) {
        if (waited >= LONGEST_JOIN)
            return false;
        poll(nullptr, 0, JOIN_STEP);
    }
    return true;
}

} // namespace

// The host may change once more while the thread ends, so the flag is cleared before that.
bool stop_keeper(KeeperThread* keeper) {
    if (keeper->running && !keeper->ending)
        pthread_cancel(keeper->handle);
    keeper->ending = keeper->running;
    connection_url_change = 0;
    if (keeper->running && !join_soon(keeper->handle))
        return false;
    keeper->running = false;
    keeper->ending = false;
    release_transfer();
    return true;
}
