// Platform library: the cloud agent's settings.
#include "sim/library/cloud_store.h"

#include <cstdio>
#include <utility>

#include "platform/vxcloud.h"
#include "sim/library/call.h"

namespace sim {

namespace {

constexpr std::size_t longest_host = 255;
constexpr std::size_t longest_keeper_host = 127;

// A value that the disk does not take is not stored.
template <class Value> int store(Value& place, Value value) {
    std::swap(place, value);
    if (board().save_cloud())
        return code_ok;
    std::swap(place, value);
    return code_failed;
}

int store_text(std::string& place, const char* text, std::size_t longest) {
    if (!text)
        return code_null;
    if (std::string(text).size() > longest)
        return code_too_long;
    return store(place, std::string(text));
}

int fetch_text(const std::string& place, char* text, std::size_t longest) {
    copy_text(text, longest + 1, place);
    return code_ok;
}

} // namespace

void CloudStore::fields(Fields& f) {
    f.text("checkin_host", checkin_host, longest_host);
    f.text("fallback_host", fallback_host, longest_host);
    f.text("connkeeper_host", connkeeper_host, longest_keeper_host);
    f.integer("checkin_interval", checkin_interval, 1, 86400);
    f.text("key", key, longest_credential);
    f.text("secret", secret, longest_credential);
    f.integer("seqno", seqno, INT32_MIN, INT32_MAX);
    f.boolean("debug", debug);
}

std::string mac_suffix(const std::uint8_t (&mac)[6]) {
    char digits[13];
    std::snprintf(
        digits, sizeof digits, "%02x%02x%02x%02x%02x%02x", mac[0], mac[1], mac[2], mac[3], mac[4],
        mac[5]);
    return digits;
}

} // namespace sim

using namespace sim;

int sal_vxcloud_checkin_host_set(const char* host) {
    return call(
        "sal_vxcloud_checkin_host_set",
        [&](Switch& s) { return store_text(s.cloud.checkin_host, host, longest_host); }, host);
}

int sal_vxcloud_checkin_host_get(char* host) {
    return call("sal_vxcloud_checkin_host_get", [&](Switch& s) {
        return fetch_text(s.cloud.checkin_host, host, longest_host);
    });
}

int sal_vxcloud_fallback_host_set(const char* host) {
    return call(
        "sal_vxcloud_fallback_host_set",
        [&](Switch& s) { return store_text(s.cloud.fallback_host, host, longest_host); }, host);
}

int sal_vxcloud_fallback_host_get(char* host) {
    return call("sal_vxcloud_fallback_host_get", [&](Switch& s) {
        return fetch_text(s.cloud.fallback_host, host, longest_host);
    });
}

int sal_vxcloud_connkeeper_host_set(const char* host) {
    return call(
        "sal_vxcloud_connkeeper_host_set",
        [&](Switch& s) { return store_text(s.cloud.connkeeper_host, host, longest_keeper_host); },
        host);
}

int sal_vxcloud_connkeeper_host_get(char* host) {
    return call("sal_vxcloud_connkeeper_host_get", [&](Switch& s) {
        return fetch_text(s.cloud.connkeeper_host, host, longest_keeper_host);
    });
}

int sal_vxcloud_checkin_interval_set(int32_t seconds) {
    return call(
        "sal_vxcloud_checkin_interval_set",
        [&](Switch& s) { return store(s.cloud.checkin_interval, seconds); }, seconds);
}

int sal_vxcloud_checkin_interval_get(int32_t* seconds) {
    return call("sal_vxcloud_checkin_interval_get", [&](Switch& s) {
        *seconds = s.cloud.checkin_interval;
        return code_ok;
    });
}

namespace {

// Credentials are traced by their lengths.
std::string masked(const char* text) {
    return text ? "(" + std::to_string(std::string(text).size()) + " characters)" : "null";
}

} // namespace

int sal_vxcloud_key_set(const char* text) {
    return call(
        "sal_vxcloud_key_set",
        [&](Switch& s) { return store_text(s.cloud.key, text, longest_credential); }, masked(text));
}

int sal_vxcloud_key_get(char* text) {
    return call("sal_vxcloud_key_get", [&](Switch& s) {
        return fetch_text(s.cloud.key, text, longest_credential);
    });
}

int sal_vxcloud_secret_set(const char* text) {
    return call(
        "sal_vxcloud_secret_set",
        [&](Switch& s) { return store_text(s.cloud.secret, text, longest_credential); },
        masked(text));
}

int sal_vxcloud_secret_get(char* text) {
    return call("sal_vxcloud_secret_get", [&](Switch& s) {
        return fetch_text(s.cloud.secret, text, longest_credential);
    });
}

int sal_vxcloud_seqno_set(int32_t number) {
    return call(
        "sal_vxcloud_seqno_set", [&](Switch& s) { return store(s.cloud.seqno, number); }, number);
}

int sal_vxcloud_seqno_get(int32_t* number) {
    return call("sal_vxcloud_seqno_get", [&](Switch& s) {
        *number = s.cloud.seqno;
        return code_ok;
    });
}

int sal_vxcloud_debug_flag_get(uint32_t* flag) {
    return call("sal_vxcloud_debug_flag_get", [&](Switch& s) {
        *flag = s.cloud.debug ? 1 : 0;
        return code_ok;
    });
}

int sal_vxcloud_kill(void) {
    return call("sal_vxcloud_kill", [](Switch&) -> int {
        return board().restart_agent() ? code_ok : code_failed;
    });
}
