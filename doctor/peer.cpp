// Questions to hosts. They go the agent's own way: no proxy, no variable of the environment.
#include "doctor/peer.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

#include "transport/transfer_options.h"

namespace {

enum { CONNECT_TIMEOUT = 10 }; // seconds

// Keeps how the answer begins and takes the rest unread.
size_t keep_beginning(char* data, size_t size, size_t count, void* argument) {
    Probe* probe = static_cast<Probe*>(argument);
    size_t used = strlen(probe->body);
    size_t room = sizeof probe->body - 1 - used;
    size_t kept = size * count < room ? size * count : room;
    memcpy(probe->body + used, data, kept);
    return used + kept < sizeof probe->body - 1 ? size * count : 0;
}

void copy_text(char* to, size_t size, const char* from) {
    snprintf(to, size, "%s", from ? from : "");
}

void note_end(CURL* curl, Probe* probe) {
    char* text = nullptr;
    long number = 0;
    curl_easy_getinfo(curl, CURLINFO_PRIMARY_IP, &text);
    copy_text(probe->address, sizeof probe->address, text);
    curl_easy_getinfo(curl, CURLINFO_OS_ERRNO, &number);
    probe->system_error = static_cast<int>(number);
    curl_easy_getinfo(curl, CURLINFO_CONNECT_TIME, &probe->seconds);
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &probe->status);
    text = nullptr;
    curl_easy_getinfo(curl, CURLINFO_CONTENT_TYPE, &text);
    probe->is_page = text && strncasecmp(text, "text/html", strlen("text/html")) == 0;
    text = nullptr;
    curl_easy_getinfo(curl, CURLINFO_REDIRECT_URL, &text);
    copy_text(probe->redirect, sizeof probe->redirect, text);
}

void ask(CURL* curl, const char* url, int timeout, Probe* probe) {
    set_common_options(curl, nullptr);
    curl_easy_setopt(curl, CURLOPT_URL, url);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, keep_beginning);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, probe);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, probe->error);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, static_cast<long>(CONNECT_TIMEOUT));
    curl_easy_setopt(curl, CURLOPT_TIMEOUT, static_cast<long>(timeout));
    probe->code = curl_easy_perform(curl);
    note_end(curl, probe);
}

} // namespace

PeerAddress address_of(const Peer& peer) {
    PeerAddress address = {"", peer.port};
    const char* start = peer.host[0] == '[' ? peer.host + 1 : peer.host;
    size_t length = strcspn(start, peer.host[0] == '[' ? "]" : ":");
    snprintf(address.name, sizeof address.name, "%.*s", static_cast<int>(length), start);
    const char* colon = strchr(start + length, ':');
    if (colon)
        address.port = static_cast<int>(strtol(colon + 1, nullptr, 10));
    return address;
}

void probe_connection(const Peer& peer, Probe* probe) {
    *probe = {};
    CURL* curl = curl_easy_init();
    if (!curl) {
        probe->code = CURLE_OUT_OF_MEMORY;
        return;
    }
    char url[HOST_SIZE + 32];
    PeerAddress address = address_of(peer);
    bool literal = strchr(address.name, ':') != nullptr;
    snprintf(
        url, sizeof url, literal ? "http://[%s]:%d" : "http://%s:%d", address.name, address.port);
    curl_easy_setopt(curl, CURLOPT_CONNECT_ONLY, 1L);
    ask(curl, url, CONNECT_TIMEOUT, probe);
    curl_easy_cleanup(curl);
}

void probe_page(const char* host, const char* path, int timeout, Probe* probe) {
    *probe = {};
    CURL* curl = curl_easy_init();
    if (!curl) {
        probe->code = CURLE_OUT_OF_MEMORY;
        return;
    }
    char url[HOST_SIZE + 128];
    snprintf(url, sizeof url, "http://%s%s", host, path);
    ask(curl, url, timeout, probe);
    curl_easy_cleanup(curl);
}

bool is_portal(const Probe& probe) {
    const long must_log_in = 511;
    return probe.redirect[0] || probe.is_page || probe.status == must_log_in ||
           strncasecmp(probe.body, "<html", strlen("<html")) == 0 ||
           strncasecmp(probe.body, "<!doctype", strlen("<!doctype")) == 0;
}
