// The agent's process, stored settings and account. Everything is read; nothing is stored.
#include "doctor/agent_checks.h"

#include <ctype.h>
#include <errno.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>

#include "base/credentials.h"
#include "base/identity.h"
#include "base/state.h"
#include "platform/system.h"
#include "platform/types.h"
#include "platform/vxcloud.h"

namespace {

// --- The process.

enum { RUNS, NO_PID_FILE, NO_NUMBER, IS_GONE, IS_ANOTHER };

const Finding agent_table[] = {
    {"running", VERDICT_OK, "the agent runs", ""},
    {"no-pid-file", VERDICT_WRONG, "the agent has not run since the switch was started",
     "start vx_cloud; if it ends at once, look at what it prints"},
    {"no-number", VERDICT_WRONG,
     "the pid file holds no process number: it was cut, or another wrote it", "restart vx_cloud"},
    {"gone", VERDICT_WRONG, "the agent was started and has ended",
     "start vx_cloud; the system log tells what happened before"},
    {"another", VERDICT_WRONG, "the agent has ended, and another program has its number now",
     "start vx_cloud"},
};

const char pid_path[] = "/var/run/vx_cloud.pid";

int read_pid() {
    FILE* file = fopen(pid_path, "r");
    if (!file)
        return -1;
    int pid = 0;
    int read = fscanf(file, "%d", &pid);
    fclose(file);
    return read == 1 && pid > 0 ? pid : 0;
}

// Where the system does not tell the program's name, nothing is held against it.
bool is_agent(int pid) {
    char path[64];
    char name[64] = "";
    snprintf(path, sizeof path, "/proc/%d/comm", pid);
    FILE* file = fopen(path, "r");
    if (!file)
        return true;
    bool told = fgets(name, sizeof name, file) != nullptr;
    fclose(file);
    return !told || strncmp(name, "vx_cloud", strlen("vx_cloud")) == 0;
}

// The pid file is written once, at the start.
void describe_since(char* detail, int pid) {
    struct stat status = {};
    struct tm broken_down = {};
    char since[32] = "?";
    if (stat(pid_path, &status) == 0 && gmtime_r(&status.st_mtime, &broken_down))
        strftime(since, sizeof since, "%Y-%m-%d %H:%M:%S UTC", &broken_down);
    describe(detail, "process %d, since %s", pid, since);
}

} // namespace

const Findings agent_findings(agent_table);
bool agent_runs;

int check_agent(char* detail) {
    int pid = read_pid();
    if (pid < 0) {
        describe(detail, "%s cannot be opened", pid_path);
        return NO_PID_FILE;
    }
    if (pid == 0)
        return NO_NUMBER;
    describe_since(detail, pid);
    if (kill(pid, 0) != 0 && errno == ESRCH)
        return IS_GONE;
    agent_runs = is_agent(pid);
    return agent_runs ? RUNS : IS_ANOTHER;
}

// --- Identity.

namespace {

enum { HAS_MAC, NO_MAC };

const Finding identity_table[] = {
    {"known", VERDICT_OK, "the switch knows its MAC", ""},
    {"no-mac", VERDICT_WRONG,
     "the platform library does not tell the switch's MAC, by which cloud and account know it",
     "have the switch's maker look at that call"},
};

} // namespace

const Findings identity_findings(identity_table);

int check_identity(char* detail) {
    uint8_t mac[MAC_ADDRESS_SIZE] = {};
    if (int code = sal_sys_macAddr_get(mac)) {
        describe(detail, "sal_sys_macAddr_get = %d", code);
        return NO_MAC;
    }
    name_switch();
    describe(detail, "%s", macaddrstr);
    return HAS_MAC;
}

// --- Hosts and interval.

namespace {

enum { ARE_STORED, STORE_FAILS, NO_CHECKIN_HOST, BAD_HOST, BAD_INTERVAL, NO_FALLBACK, NO_KEEPER };

enum { SHORTEST_INTERVAL = 60, LONGEST_INTERVAL = 3600 }; // seconds

const Finding settings_table[] = {
    {"stored", VERDICT_OK, "the hosts and the interval are stored", ""},
    {"store-fails", VERDICT_WRONG, "the platform library does not tell a stored setting",
     "have the switch's maker look at that call; the agent goes on with an empty value"},
    {"no-checkin-host", VERDICT_WRONG, "no check-in host is stored",
     "provision the switch, or send \"checkin_host\" in a local request"},
    {"bad-host", VERDICT_WRONG,
     "a stored host is no host: a name or an address, and perhaps a port",
     "store the host without scheme, path and blanks"},
    {"bad-interval", VERDICT_WARNING, "the stored interval is not between 60 and 3600 seconds",
     "send \"checkin_interval\" in a local request"},
    {"no-fallback-host", VERDICT_WARNING,
     "no fallback host is stored: the clock cannot be corrected, and nobody stands in for the "
     "check-in host",
     "send \"fallback_host\" in a local request"},
    {"no-keeper-host", VERDICT_WARNING,
     "no host of a connection keeper is stored: what the cloud pushes does not arrive",
     "send \"connkeeper_host\" in a local request"},
};

struct StoredHost {
    const char* call;
    int (*get)(char* host);
    char* text;
};

const StoredHost hosts[] = {
    {"sal_vxcloud_checkin_host_get", sal_vxcloud_checkin_host_get, CheckinHost},
    {"sal_vxcloud_fallback_host_get", sal_vxcloud_fallback_host_get, fallback_host},
    {"sal_vxcloud_connkeeper_host_get", sal_vxcloud_connkeeper_host_get, ConnectionKeeperHost},
};

bool load_settings(char* detail) {
    for (const StoredHost& host : hosts) {
        if (int code = host.get(host.text)) {
            describe(detail, "%s = %d", host.call, code);
            return false;
        }
    }
    if (int code = sal_vxcloud_checkin_interval_get(&CheckinInterval)) {
        describe(detail, "sal_vxcloud_checkin_interval_get = %d", code);
        return false;
    }
    return true;
}

// Letters of any alphabet may stand in a name; what parts a URL may not.
bool is_host(const char* text) {
    for (const char* next = text; *next; ++next)
        if (iscntrl(static_cast<unsigned char>(*next)) || strchr(" /?#@\\\"<>", *next))
            return false;
    return true;
}

bool are_hosts(char* detail) {
    for (const StoredHost& host : hosts) {
        if (!is_host(host.text)) {
            describe(detail, "%s gives \"%s\"", host.call, host.text);
            return false;
        }
    }
    return true;
}

} // namespace

const Findings settings_findings(settings_table);

int check_settings(char* detail) {
    if (!load_settings(detail))
        return STORE_FAILS;
    if (!CheckinHost[0])
        return NO_CHECKIN_HOST;
    if (!are_hosts(detail))
        return BAD_HOST;
    describe(
        detail, "check-in at %s, fallback %s, keeper %s, every %d s", CheckinHost, fallback_host,
        ConnectionKeeperHost, static_cast<int>(CheckinInterval));
    if (CheckinInterval < SHORTEST_INTERVAL || CheckinInterval > LONGEST_INTERVAL)
        return BAD_INTERVAL;
    if (!fallback_host[0])
        return NO_FALLBACK;
    return ConnectionKeeperHost[0] ? ARE_STORED : NO_KEEPER;
}

// --- Account.

namespace {

enum { IS_READABLE, ACCOUNT_FAILS, NO_ACCOUNT, IS_PLAIN, IS_FOREIGN, IS_UNPRINTABLE };

const Finding account_table[] = {
    {"readable", VERDICT_OK, "key and secret are this switch's", ""},
    {"store-fails", VERDICT_WRONG, "the platform library does not tell key or secret",
     "have the switch's maker look at that call"},
    {"none", VERDICT_WRONG, "no account is stored", "provision the switch with key and secret"},
    {"plain", VERDICT_WRONG,
     "the stored text does not end in this switch's MAC: the agent takes it for no account",
     "store it with the twelve lower-case hex digits of the MAC behind it"},
    {"foreign", VERDICT_WRONG,
     "the account was stored on another switch, or under another MAC: the agent takes it for none",
     "provision this switch with key and secret of its own"},
    {"unprintable", VERDICT_WRONG, "the key holds characters that no header line may hold",
     "provision the switch anew"},
};

struct StoredCredential {
    const char* call;
    int (*stored)(char* text);
    int (*bound)(char* text);
    char* text;
};

const StoredCredential credentials[] = {
    {"sal_vxcloud_key_get", sal_vxcloud_key_get, api_key_get, gCattr.key},
    {"sal_vxcloud_secret_get", sal_vxcloud_secret_get, api_secret_get, gCattr.secret},
};

bool ends_in_a_mac(const char* text) {
    const size_t digits = 12;
    size_t length = strlen(text);
    return length >= digits && strspn(text + length - digits, "0123456789abcdef") == digits;
}

int judge_credential(const StoredCredential& credential, char* detail) {
    char stored[CREDENTIAL_SIZE] = "";
    if (int code = credential.stored(stored)) {
        describe(detail, "%s = %d", credential.call, code);
        return ACCOUNT_FAILS;
    }
    describe(detail, "%s", credential.call);
    int finding = IS_READABLE;
    if (!stored[0])
        finding = NO_ACCOUNT;
    else if (credential.bound(credential.text) != 0)
        finding = ends_in_a_mac(stored) ? IS_FOREIGN : IS_PLAIN;
    memset(stored, 0, sizeof stored);
    return finding;
}

bool is_printable(const char* text) {
    for (; *text; ++text)
        if (!isprint(static_cast<unsigned char>(*text)))
            return false;
    return true;
}

} // namespace

const Findings account_findings(account_table);

int check_account(char* detail) {
    gCattr = {};
    for (const StoredCredential& credential : credentials)
        if (int finding = judge_credential(credential, detail))
            return finding;
    const char* key = gCattr.key;
    if (!is_printable(key)) {
        describe(detail, "sal_vxcloud_key_get");
        return IS_UNPRINTABLE;
    }
    if (!key[0] || !gCattr.secret[0])
        return NO_ACCOUNT;
    describe(
        detail, "key %c...%c, %u characters", key[0], key[strlen(key) - 1],
        static_cast<unsigned>(strlen(key)));
    return IS_READABLE;
}
