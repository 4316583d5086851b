// Spanning tree.
#include "platform/stp.h"

#include <cstring>

#include "judge/family.h"
#include "platform/system.h"

namespace judge {

namespace {

const Parameter force_version = one_of("version", {STP_FORCE_STP, STP_FORCE_RSTP, STP_FORCE_MSTP});

Numbers priorities() {
    Numbers all;
    for (Number p = 0; p <= STP_HIGHEST_PRIORITY; p += STP_PRIORITY_STEP)
        all.push_back(p);
    return all;
}

const Parameter priority = asked("priority", "a multiple of 4096 up to 61440", priorities, [] {
    return Numbers{-STP_PRIORITY_STEP, 1, 4095, 4097, 61441, 65536, INT32_MAX};
});

std::string fault_of(const StpInfo& info) {
    std::string fault = outside("enable", info.enable, 0, 1);
    if (!fault.empty())
        return fault;
    bool known = info.force_version == STP_FORCE_STP || info.force_version == STP_FORCE_RSTP ||
                 info.force_version == STP_FORCE_MSTP;
    return known ? "" : "force_version is " + std::to_string(info.force_version);
}

std::string fault_of(const StpInstance& info) {
    if (info.priority % STP_PRIORITY_STEP)
        return "priority is " + std::to_string(info.priority);
    if (info.root_priority % STP_PRIORITY_STEP != STP_COMMON_INSTANCE)
        return "root_priority is " + std::to_string(info.root_priority);
    for (const std::string& fault :
         {outside("hello_time", info.hello_time, 1, 10),
          outside("maximum_age", info.maximum_age, 6, 40),
          outside("forward_delay", info.forward_delay, 4, 30)})
        if (!fault.empty())
            return fault;
    return "";
}

Operations reads() {
    return {
        {NAMED(sal_stp_info_get), {gives_record<StpInfo>("info", fault_of)}},
        {NAMED(sal_stp_mstInfo_get),
         {asked(
              "instance", "the common one", [] { return Numbers{STP_COMMON_INSTANCE}; }, nullptr),
          varying(gives_record<StpInstance>("info", fault_of))}},
    };
}

Settings settings() {
    return {
        {NAMED(sal_stp_enable_set),
         {},
         {flag("enable")},
         members(sal_stp_info_get, &StpInfo::enable)},
        {NAMED(sal_stp_forceVersion_set),
         {},
         {force_version},
         members(sal_stp_info_get, &StpInfo::force_version)},
        {NAMED(sal_stp_priority_set),
         {},
         {priority},
         members(sal_stp_mstInfo_get, &StpInstance::priority)},
    };
}

// A bridge that is the root itself has no way to it.
void agreement() {
    StpInstance info = {};
    uint8_t own[MAC_ADDRESS_SIZE] = {};
    if (ASK(sal_sys_macAddr_get, own) != 0 ||
        ASK(sal_stp_mstInfo_get, int{STP_COMMON_INSTANCE}, &info) != 0)
        return;
    bool is_root = std::memcmp(info.root_mac, own, sizeof own) == 0;
    bench->holds(
        !is_root || (info.root_port == 0 && info.root_path_cost == 0), reason::disagrees,
        "root_port is 0 when this bridge is the root",
        "port " + std::to_string(info.root_port) + ", path cost " +
            std::to_string(info.root_path_cost));
}

} // namespace

const Family stp_family = {"stp", reads, agreement, settings, nullptr};

} // namespace judge
