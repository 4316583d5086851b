// Names and connections of the three hosts.
#include "doctor/network_checks.h"

#include <errno.h>
#include <netdb.h>
#include <string.h>
#include <sys/socket.h>

#include "doctor/peer.h"

namespace {

enum { HTTPS_PORT = 443, HTTP_PORT = 80 };

// The fallback host is asked over both; the time comes over HTTP, check-ins over HTTPS.
const Peer checkin_peer = {CheckinHost, HTTPS_PORT};
const Peer fallback_peer = {fallback_host, HTTPS_PORT};
const Peer keeper_peer = {ConnectionKeeperHost, HTTP_PORT};

// --- Names.

enum { RESOLVES, ONLY_IPV6, NOT_STORED, NO_SUCH_NAME, NO_NAME_SERVER };

const Finding name_table[] = {
    {"resolves", VERDICT_OK, "the name resolves", ""},
    {"only-ipv6", VERDICT_WARNING,
     "the name has no IPv4 address: the first attempt of each check-in fails, and the fallback "
     "host, "
     "which is asked by IPv4 alone, cannot stand in",
     "give the host an IPv4 address"},
    {"not-stored", VERDICT_SKIPPED, "no host is stored", ""},
    {"no-such-name", VERDICT_WRONG, "the name does not resolve",
     "look whether the host is spelled right, and whether the switch's name server knows it"},
    {"no-name-server", VERDICT_WRONG,
     "no name server answers; the evidence ends here: the way to it or the server itself may be "
     "down",
     "look at the switch's address, gateway and name servers"},
};

struct Families {
    int ipv4;
    int ipv6;
};

Families count_families(const addrinfo* found) {
    Families families = {};
    for (; found; found = found->ai_next) {
        families.ipv4 += found->ai_family == AF_INET;
        families.ipv6 += found->ai_family == AF_INET6;
    }
    return families;
}

int check_name(const Peer& peer, char* detail) {
    if (!peer.host[0])
        return NOT_STORED;
    PeerAddress address = address_of(peer);
    addrinfo wanted = {};
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (int code = getaddrinfo(address.name, nullptr, &wanted, &found)) {
        describe(detail, "%s: %s", address.name, gai_strerror(code));
        return code == EAI_AGAIN ? NO_NAME_SERVER : NO_SUCH_NAME;
    }
    Families families = count_families(found);
    freeaddrinfo(found);
    describe(detail, "%s: %d IPv4, %d IPv6 addresses", address.name, families.ipv4, families.ipv6);
    return families.ipv4 ? RESOLVES : ONLY_IPV6;
}

// --- Connections.

enum { CONNECTS, IS_REFUSED, IS_SILENT, NO_WAY };

const Finding connect_table[] = {
    {"connects", VERDICT_OK, "the host takes a connection", ""},
    {"refused", VERDICT_WRONG,
     "the host refuses the connection: nobody listens on that port, or a firewall says so",
     "look at the port, and at the service on the host"},
    {"silent", VERDICT_WRONG,
     "the host does not answer; the evidence ends here: it may be down, or a firewall drops what "
     "the "
     "switch sends",
     "try the host from another machine of the switch's network"},
    {"no-way", VERDICT_WRONG, "there is no way to the host",
     "look at the switch's address and gateway"},
};

int judge_connection(const Probe& probe) {
    if (probe.code == CURLE_OK)
        return CONNECTS;
    if (probe.code == CURLE_OPERATION_TIMEDOUT || probe.system_error == ETIMEDOUT)
        return IS_SILENT;
    return probe.system_error == ECONNREFUSED ? IS_REFUSED : NO_WAY;
}

int check_connection(const Peer& peer, char* detail) {
    Probe probe;
    probe_connection(peer, &probe);
    PeerAddress address = address_of(peer);
    if (probe.code == CURLE_OK)
        describe(
            detail, "%s port %d in %d ms", probe.address, address.port,
            static_cast<int>(probe.seconds * 1000));
    else
        describe(detail, "%s port %d: %s", address.name, address.port, probe.error);
    return judge_connection(probe);
}

} // namespace

const Findings name_findings(name_table);
const Findings connect_findings(connect_table);

int check_checkin_name(char* detail) { return check_name(checkin_peer, detail); }
int check_fallback_name(char* detail) { return check_name(fallback_peer, detail); }
int check_keeper_name(char* detail) { return check_name(keeper_peer, detail); }

int check_checkin_connect(char* detail) { return check_connection(checkin_peer, detail); }
int check_fallback_connect(char* detail) { return check_connection(fallback_peer, detail); }
int check_keeper_connect(char* detail) { return check_connection(keeper_peer, detail); }
