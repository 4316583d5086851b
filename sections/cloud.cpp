// "cloud": what is stored is read back, so that the agent runs with what the store holds.
#include "sections/cloud.h"

#include <stdint.h>
#include <stdio.h>

#include "base/credentials.h"
#include "base/errors.h"
#include "base/state.h"
#include "platform/vxcloud.h"
#include "sections/section.h"

namespace {

enum { SHORTEST_INTERVAL = 60, LONGEST_INTERVAL = 3600 }; // seconds

} // namespace

void vxc_cloud_get(cJSON* system) {
    cJSON* cloud = attachJsonObject(system, "cloud");
    int32_t seqno = 1;
    api_vxcloud_seqno_get(&seqno);
    addJsonObjectStringItem(cloud, "checkin_host", CheckinHost);
    addJsonObjectStringItem(cloud, "fallback_host", fallback_host);
    addJsonObjectIntItem(cloud, "config_seqno", seqno);
    addJsonObjectStringItem(cloud, "connkeeper_host", ConnectionKeeperHost);
    addJsonObjectIntItem(cloud, "checkin_interval", CheckinInterval);
}

namespace {

// The main loop is to try the new settings at once instead of sleeping out its interval.
void ask_for_checkin() {
    checkin_connect_retry = 1;
    checkin_connect_establish = 0;
}

void ask_for_keeper_restart() { connection_url_change = 1; }

// A host that the store keeps; the agent's copy is always read back from there.
struct HostSetting {
    const char* key;
    int (*store)(const char* host);
    int (*fetch)(char* host);
    char* copy;
    void (*changed)();
};

// In the order of application: where both are given, "checkin_host" outlives "checkin_url".
const HostSetting hosts[] = {
    {"fallback_host", sal_vxcloud_fallback_host_set, sal_vxcloud_fallback_host_get, fallback_host,
     ask_for_checkin},
    {"checkin_url", sal_vxcloud_checkin_host_set, sal_vxcloud_checkin_host_get, CheckinHost,
     ask_for_checkin},
    {"checkin_host", sal_vxcloud_checkin_host_set, sal_vxcloud_checkin_host_get, CheckinHost,
     ask_for_checkin},
    {"connkeeper_host", sal_vxcloud_connkeeper_host_set, sal_vxcloud_connkeeper_host_get,
     ConnectionKeeperHost, ask_for_keeper_restart},
};

// Words of the transport, neither limited nor stored.
struct TransportSetting {
    const char* key;
    int32_t* word;
};

const TransportSetting transport_settings[] = {
    {"timeout", &checkin_timeout},
    {"connect_timeout", &checkin_connect_timeout},
    {"checkin_type", &checkin_type},
};

// One without the other is not an account.
void set_account(const cJSON* cloud) {
    const char* key = getJsonStringValueForKey(cloud, "key");
    const char* secret = getJsonStringValueForKey(cloud, "secret");
    if (!key || !secret)
        return;
    snprintf(gCattr.key, sizeof gCattr.key, "%s", key);
    snprintf(gCattr.secret, sizeof gCattr.secret, "%s", secret);
    api_key_set(gCattr.key);
    api_secret_set(gCattr.secret);
}

int set_host(const cJSON* cloud, const HostSetting& setting) {
    const char* host = getJsonStringValueForKey(cloud, setting.key);
    if (!host)
        return 0;
    if (int code = setting.store(host))
        return record_error(code);
    setting.fetch(setting.copy);
    setting.changed();
    return 0;
}

int set_hosts(const cJSON* cloud) {
    for (const HostSetting& setting : hosts) {
        if (int code = set_host(cloud, setting))
            return code;
    }
    return 0;
}

int set_interval(const cJSON* cloud) {
    int seconds = 0;
    if (!read_int(cloud, "checkin_interval", &seconds))
        return 0;
    if (seconds < SHORTEST_INTERVAL || seconds > LONGEST_INTERVAL)
        return record_error(ERROR_OUT_OF_RANGE);
    if (int code = sal_vxcloud_checkin_interval_set(seconds))
        return record_error(code);
    sal_vxcloud_checkin_interval_get(&CheckinInterval);
    return 0;
}

void set_transport(const cJSON* cloud) {
    for (const TransportSetting& setting : transport_settings) {
        int value = 0;
        if (!read_int(cloud, setting.key, &value))
            continue;
        *setting.word = value;
        ask_for_checkin();
    }
}

} // namespace

void vxc_cloud_set(const cJSON* system) {
    const cJSON* cloud = getJsonObjectForKey(system, "cloud");
    if (!cloud)
        return;
    set_account(cloud);
    if (!set_hosts(cloud) && !set_interval(cloud))
        set_transport(cloud);
}
