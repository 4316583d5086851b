// The hosts that a switch talks to, and how a question to one of them ends.
#pragma once

#include <curl/curl.h>

#include "base/state.h"

struct Peer {
    const char* host; // as it is stored, perhaps with a port
    int port;         // where the host names none
};

// "NAME" or "NAME:PORT" or "[ADDRESS]:PORT", taken apart. The name is cut at HOST_SIZE.
struct PeerAddress {
    char name[HOST_SIZE];
    int port;
};

PeerAddress address_of(const Peer& peer);

enum { PROBE_BODY_SIZE = 2048 };

// One question, and everything that is known of its end.
struct Probe {
    CURLcode code;
    char error[CURL_ERROR_SIZE];
    char address[64];           // who was connected to; empty if nobody
    int system_error;           // errno of a connection that failed
    double seconds;             // until connected
    long status;                // HTTP; 0 without one
    bool is_page;               // the answer says that it is a page for people
    char redirect[256];         // where the answer sends the asker
    char body[PROBE_BODY_SIZE]; // how the answer begins
};

// Connects without a word. The way is IPv4 or IPv6, whichever works.
void probe_connection(const Peer& peer, Probe* probe);

// GETs "http://host" + `path` within `timeout` seconds.
void probe_page(const char* host, const char* path, int timeout, Probe* probe);

// Whether what answered is a portal or a proxy in the way, rather than a service of the cloud's.
bool is_portal(const Probe& probe);
