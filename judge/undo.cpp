// The calls that put back what the judge changed, by their names in the journal.
#include <cstdio>
#include <cstdlib>
#include <map>

#include "judge/changes.h"
#include "judge/setting.h"
#include "platform/acl.h"
#include "platform/diag.h"
#include "platform/mirror.h"
#include "platform/snmp.h"
#include "platform/system.h"
#include "platform/trunk.h"
#include "platform/vlan.h"
#include "platform/voice_vlan.h"
#include "platform/vxcloud.h"

namespace judge {

namespace {

using Arguments = std::vector<std::string>;

int number(const std::string& text) { return std::atoi(text.c_str()); }
std::uint32_t word(const std::string& text) {
    return static_cast<std::uint32_t>(std::strtoul(text.c_str(), nullptr, 10));
}

PortBitmap ports_from(const std::string& text) {
    PortBitmap ports = {};
    std::sscanf(text.c_str(), "%x-%x-%x", &ports.words[0], &ports.words[1], &ports.words[2]);
    return ports;
}

int free_oui(const Arguments& a) {
    const VoiceVlanOui unused = {};
    return ASK(sal_vlan_voiceVlanOui_set, number(a[0]), &unused, "");
}

// The entries first, for those libraries that want a list empty.
int delete_list(const Arguments& a) { return ASK(sal_acl_entry_del, a[0].c_str(), word(a[1])); }

struct Call {
    std::size_t arguments;
    int (*make)(const Arguments&);
};

// Not shown: it may be the secret.
template <int (*set)(const char*)> int set_text(const Arguments& a) {
    return bench->call_as<int, const char*>("putting a text back", set, a[0].c_str());
}

const std::map<std::string, Call>& calls() {
    static const std::map<std::string, Call> all = {
        {"sal_vlan_adminEntry_destroy",
         {1, [](const Arguments& a) { return ASK(sal_vlan_adminEntry_destroy, number(a[0])); }}},
        {"sal_vlan_voiceVlanOui_set", {1, free_oui}},
        {"sal_trunk_group_del",
         {1, [](const Arguments& a) { return ASK(sal_trunk_group_del, number(a[0])); }}},
        {"sal_mirror_group_del",
         {1, [](const Arguments& a) { return ASK(sal_mirror_group_del, number(a[0])); }}},
        {"sal_mirror_group_sourcePort_set",
         {3,
          [](const Arguments& a) {
              return ASK(
                  sal_mirror_group_sourcePort_set, number(a[0]), ports_from(a[1]),
                  ports_from(a[2]));
          }}},
        {"sal_acl_entry_del", {2, delete_list}},
        {"sal_acl_entry_unbind",
         {2,
          [](const Arguments& a) {
              return ASK(sal_acl_entry_unbind, word(a[0]), ports_from(a[1]));
          }}},
        {"sal_snmp_com2sec_del",
         {1, [](const Arguments& a) { return ASK(sal_snmp_com2sec_del, a[0].c_str()); }}},
        {"sal_snmp_group_del",
         {2,
          [](const Arguments& a) { return ASK(sal_snmp_group_del, a[0].c_str(), number(a[1])); }}},
        {"sal_snmp_access_del",
         {2,
          [](const Arguments& a) { return ASK(sal_snmp_access_del, a[0].c_str(), number(a[1])); }}},
        {"sal_snmp_target_del",
         {3,
          [](const Arguments& a) {
              return ASK(sal_snmp_target_del, a[0].c_str(), number(a[1]), number(a[2]));
          }}},
        {"sal_sys_tracerouteLock_give",
         {0, [](const Arguments&) { return ASK(sal_sys_tracerouteLock_give); }}},
        {"sal_sys_systemName_set", {1, set_text<sal_sys_systemName_set>}},
        {"sal_vxcloud_checkin_host_set", {1, set_text<sal_vxcloud_checkin_host_set>}},
        {"sal_vxcloud_fallback_host_set", {1, set_text<sal_vxcloud_fallback_host_set>}},
        {"sal_vxcloud_connkeeper_host_set", {1, set_text<sal_vxcloud_connkeeper_host_set>}},
        {"sal_vxcloud_key_set", {1, set_text<sal_vxcloud_key_set>}},
        {"sal_vxcloud_secret_set", {1, set_text<sal_vxcloud_secret_set>}},
    };
    return all;
}

} // namespace

std::string words_text(const PortBitmap& ports) {
    char text[32];
    std::snprintf(text, sizeof text, "%x-%x-%x", ports.words[0], ports.words[1], ports.words[2]);
    return text;
}

int undo(const std::vector<std::string>& words) {
    if (words.empty())
        return -1;
    Arguments arguments(words.begin() + 1, words.end());
    auto call = calls().find(words[0]);
    if (call != calls().end())
        return call->second.arguments == arguments.size() ? call->second.make(arguments) : -1;
    Numbers numbers;
    for (const std::string& argument : arguments)
        numbers.push_back(std::strtoll(argument.c_str(), nullptr, 10));
    return write_setting(words[0], numbers);
}

} // namespace judge
