// What the platform hands over: numbers of any size that the contract allows and texts of any
// bytes, for neighbours write them, and so do those who configured the switch by other ways. Each
// section of the report is valid JSON in UTF-8.
#include <functional>
#include <map>
#include <string>

#include "base/credentials.h"
#include "base/debug.h"
#include "base/state.h"
#include "platform/vxcloud.h"
#include "sections/access.h"
#include "sections/acl/lists.h"
#include "sections/cloud.h"
#include "sections/dark_mode.h"
#include "sections/diagnostic.h"
#include "sections/firmware.h"
#include "sections/igmp.h"
#include "sections/jumbo_frames.h"
#include "sections/lldp.h"
#include "sections/management_vlan.h"
#include "sections/mirror.h"
#include "sections/port/report.h"
#include "sections/qos.h"
#include "sections/reboot.h"
#include "sections/snmp.h"
#include "sections/stp.h"
#include "sections/summary.h"
#include "sections/trunk.h"
#include "sections/uplink_port.h"
#include "sections/voice_vlan.h"
#include "tests/fuzz/support/account.h"
#include "tests/fuzz/support/fresh_board.h"
#include "tests/fuzz/support/fuzzed_fields.h"
#include "tests/fuzz/support/judgement.h"

namespace {

int report_cloud(cJSON* system) {
    vxc_cloud_get(system);
    return 0;
}

constexpr int (*sections[])(cJSON* object) = {
    vxc_summary_get,     vxc_firmware_get,   vxc_management_vlan_get,
    vxc_uplink_port_get, vxc_reboot_get,     vxc_dark_mode_get,
    vxc_snmp_get,        vxc_stp_get,        vxc_igmp_get,
    vxc_mirror_get,      vxc_trunk_get,      vxc_access_get,
    vxc_acl_get,         vxc_qos_get,        vxc_voice_vlan_get,
    vxc_lldp_get,        vxc_diagnostic_get, vxc_jumbo_frmGet,
    report_cloud,        vxc_port_get};
constexpr std::size_t quick_sections = std::size(sections) - 1; // the ports take long

// What commands have printed, and what a cable test found.
void leave_results(const sim::Board& board, FuzzedDataProvider& bytes) {
    for (const char* file : {"/tmp/pingtest_tmp", "/tmp/traceroute_tmp0"}) {
        const std::string output = bytes.ConsumeRandomLengthString(1000);
        put_file(board, file, reinterpret_cast<const std::uint8_t*>(output.data()), output.size());
    }
    ping_status = traceroute_status = DIAGNOSTIC_READY;
    cable_test_pending = bytes.ConsumeBool();
}

// As at the start, for hosts and account are reported and used as they were read then.
void load_settings() {
    start_agent();
    gCattr = {};
    sal_vxcloud_checkin_host_get(CheckinHost);
    sal_vxcloud_fallback_host_get(fallback_host);
    sal_vxcloud_connkeeper_host_get(ConnectionKeeperHost);
    api_key_get(gCattr.key);
    api_secret_get(gCattr.secret);
}

// What a section tells comes first, for the bytes do not go far.
void fill_part(sim::Switch& device, int (*section)(cJSON*), FuzzedDataProvider& bytes) {
    const std::map<int (*)(cJSON*), std::function<void(sim::Fields&)>> parts = {
        {vxc_lldp_get, [&](sim::Fields& f) { device.lldp.hardware(f); }},
        {vxc_snmp_get, [&](sim::Fields& f) { device.snmp.config(f); }},
        {vxc_voice_vlan_get, [&](sim::Fields& f) { device.voice_vlan.fields(f); }},
        {vxc_acl_get, [&](sim::Fields& f) { device.acl.config(f, device.chip); }},
        {vxc_mirror_get, [&](sim::Fields& f) { device.mirrors.config(f); }},
        {vxc_trunk_get, [&](sim::Fields& f) { device.trunks.config(f); }}};
    if (const auto part = parts.find(section); part != parts.end())
        fill_record(bytes, part->second);
}

void fill_switch(sim::Switch& device, FuzzedDataProvider& bytes) {
    fill_record(bytes, [&](sim::Fields& f) { device.hardware(f); });
    fill_record(bytes, [&](sim::Fields& f) { device.config(f); });
    fill_record(bytes, [&](sim::Fields& f) { device.cloud.fields(f); });
}

} // namespace

// The first byte chooses the section.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    Run run;
    FuzzedDataProvider bytes(data + 1, size - 1);
    const std::size_t chosen = one_in(100, data, size) ? quick_sections : data[0] % quick_sections;
    debug_flag = one_in(16, data, size);
    if (sections[chosen] == vxc_diagnostic_get)
        leave_results(run.board, bytes);
    if (sections[chosen] == vxc_uplink_port_get)
        run.board.device.network.arp_text = bytes.ConsumeRandomLengthString(1000);
    fill_part(run.board.device, sections[chosen], bytes);
    fill_switch(run.board.device, bytes);
    if (sections[chosen] == report_cloud)
        load_settings();
    judge_section(sections[chosen]);
    return 0;
}
