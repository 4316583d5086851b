// The small languages within documents: port lists, port ids, IPv4 addresses, device names and VLAN
// lists, each by its first reader; and what is shown or executed with a text of somebody's in it.
#include <cstring>
#include <memory>
#include <string>

#include "base/errors.h"
#include "base/port_id.h"
#include "base/port_list.h"
#include "base/validators.h"
#include "core/redact.h"
#include "platform/system.h"
#include "platform/vlan.h"
#include "sections/port/vlan_upkeep.h"
#include "tests/fuzz/support/fresh_board.h"
#include "tests/fuzz/support/judgement.h"

namespace {

constexpr int words = 3; // of a port bitmap

// Numbers that a bitmap has no place for are kept out by the reader's caller.
bool fits_bitmap(const char* text) {
    for (const char* at = text; *at; ++at)
        if (std::strchr("0123456789", *at) && (at == text || !std::strchr("0123456789", at[-1])) &&
            (std::strspn(at, "0123456789") > 2 || std::atoi(at) > words * 32))
            return false;
    return true;
}

// What was read is written so that it reads the same.
void check_port_list(const char* text) {
    if (!fits_bitmap(text))
        return;
    std::uint32_t ports[words] = {}, again[words] = {};
    if (Numstr2bitmap(text, ports) != 0)
        return;
    char list[PORT_LIST_SIZE] = "";
    require(Bitmap2numstr(ports, list) == 0 && std::strlen(list) < sizeof list);
    for (int port = sys_logic_port_num_ret(); port < words * 32; ++port)
        ports[port / 32] &= ~(1u << port % 32); // not written
    require(!*list || Numstr2bitmap(list, again) == 0);
    require(std::memcmp(ports, again, sizeof ports) == 0);
}

void check_port_id(const char* text) {
    int port = 0, copper = 0;
    parse_copper_port_id(text, &copper);
    if (!parse_port_id(text, &port) || port < 0 || port >= sys_logic_port_num_ret())
        return;
    char id[PORT_ID_SIZE];
    format_port_id(port, id);
    int again = -1;
    require(parse_port_id(id, &again) && again == port);
}

void check_address(const char* text) {
    ipv4_addr_validate(text);
    int name = systemName_validate(text);
    require(name == 0 || name == ERROR_BAD_VALUE);
}

void check_vlan_list(const char* text) {
    VlanMask vlans = {}, again = {};
    if (sys_util_str2Vlanmask(text, &vlans) != 0)
        return;
    char list[VLAN_TEXT_SIZE];
    require(sys_util_vlanmask2Str(&vlans, list) == 0);
    require(sys_util_str2Vlanmask(list, &again) == 0);
    require(std::memcmp(&vlans, &again, sizeof vlans) == 0);
}

void join_vlans(const char* text) {
    if (std::strlen(text) > 12) // a list of all VLANs creates them all
        return;
    Auto_edit_vlan(0, VLAN_TAGGED, text);
    Auto_edit_vlan(0, VLAN_UNTAGGED, text);
}

void check_redaction(const char* text) {
    std::unique_ptr<char, decltype(&std::free)> shown(redact_account(text), &std::free);
    require(shown && std::strlen(shown.get()) == std::strlen(text));
}

constexpr void (*checks[])(const char* text) = {check_port_list, check_port_id, check_address,
                                                check_vlan_list, join_vlans,    check_redaction};

} // namespace

// The first byte chooses the reader.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    Run run;
    const std::string input(reinterpret_cast<const char*>(data + 1), size - 1);
    checks[data[0] % std::size(checks)](input.c_str());
    judge_setters(run.board.trace.lines());
    return 0;
}
