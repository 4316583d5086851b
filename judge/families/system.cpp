// The switch as a whole.
#include "platform/system.h"

#include <cstring>

#include "judge/changes.h"
#include "judge/family.h"

namespace judge {

namespace {

constexpr std::size_t name_size = 256;

std::string mac_fault(const Byte* mac, std::size_t) {
    static const Byte none[MAC_ADDRESS_SIZE] = {};
    if (std::memcmp(mac, none, sizeof none) == 0)
        return "all zeros";
    return mac[0] & 1 ? "a group address" : "";
}

std::string mask_fault(const Byte* bytes, std::size_t) {
    std::uint32_t mask;
    std::memcpy(&mask, bytes, sizeof mask);
    std::uint32_t hosts = ~mask;
    return hosts & (hosts + 1) ? "a mask with gaps: " + std::to_string(mask) : "";
}

Parameter judged(Parameter parameter, std::string (*fault)(const Byte*, std::size_t)) {
    parameter.fault = fault;
    return parameter;
}

Operations reads() {
    return {
        {NAMED(sys_logic_port_num_ret), {}, within("number of logical ports", 11, 96)},
        {NAMED(sys_port_linkStatus_ret), {port}, varying(gives_any("link"))},
        {NAMED(sal_sys_macAddr_get), {judged(gives_bytes("MAC address", 6), mac_fault)}},
        {NAMED(sal_sys_systemName_get), {gives_text("name", name_size)}},
        {NAMED(sal_sys_systemUptime_get), {varying(gives_any("hundredths"))}},
        {NAMED(sal_sys_ip_get), {gives_any("address"), judged(gives_any("mask"), mask_fault)}},
        {NAMED(sal_sys_gateway_get), {gives_any("address")}},
    };
}

void judge_version() {
    const char* version = ASK(fds_sys_version_ret);
    if (!bench->holds(
            version, reason::out_of_range, "a text that the library owns", "a null pointer"))
        return;
    std::size_t length = strnlen(version, name_size);
    bench->holds(
        length > 0 && length < name_size, reason::out_of_range, "the running firmware's version",
        std::to_string(length) + " characters");
    std::string first(version, length);
    bench->holds(
        first == ASK(fds_sys_version_ret), reason::not_repeated, "the running firmware's version",
        "another text");
}

void judge_uptime() {
    std::uint32_t before = 0;
    std::uint32_t after = 0;
    if (ASK(sal_sys_systemUptime_get, &before) == 0 && ASK(sal_sys_systemUptime_get, &after) == 0)
        bench->holds(
            after >= before, reason::disagrees, "time since the switch started",
            std::to_string(before) + ", then " + std::to_string(after));
}

void agreement() {
    judge_version();
    judge_uptime();
}

void changes() {
    judge_text({NAMED(sal_sys_systemName_set), NAMED(sal_sys_systemName_get), name_size, 0});
}

} // namespace

const Family system_family = {"system", reads, agreement, nullptr, changes};

} // namespace judge
