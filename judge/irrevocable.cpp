// Reboot, reset, firmware and the like: one row an option.
#include "judge/irrevocable.h"

#include <cstring>

#include "judge/changes.h"
#include "judge/family.h"
#include "judge/ports.h"
#include "platform/access.h"
#include "platform/diag.h"
#include "platform/firmware.h"
#include "platform/l2.h"
#include "platform/mib.h"
#include "platform/poe.h"
#include "platform/port.h"
#include "platform/snmp.h"
#include "platform/system.h"
#include "platform/trunk.h"
#include "platform/vxcloud.h"

namespace judge {

namespace {

void set_unread() {
    for (const Family* family : families())
        if (family->settings)
            judge_unread_settings(family->settings(), true);
}

void reset_ports() {
    for (int p = 0; p < POE_PORTS && p < port_count(); ++p)
        bench->works(
            ASK(sal_poe_port_reset_set, static_cast<uint8_t>(p), uint8_t{1}),
            "takes a port's power away and brings it back");
    bench->refuses(ASK(sal_poe_port_reset_set, uint8_t{POE_PORTS}, uint8_t{1}), "ports 0 to 23");
    for (int p = 0; p < port_count() - TRUNK_GROUPS; ++p)
        if (sys_port_isLPort10G_ret(p) == 1)
            bench->works(ASK(sal_10g_port_init, p), "brings the module to its initial state");
}

// Traffic goes on, so that a counter is small rather than 0.
void clear_counters() {
    std::uint64_t counted = 0;
    for (int p = 0; p < port_count(); ++p) {
        std::uint64_t before = 0;
        std::uint64_t after = 0;
        bench->works(ASK(sal_mib_etherStatsOctets_get, p, &before), "a counter");
        counted += before;
        bench->works(ASK(sal_mib_cntr_clr, p), "clears the counters of a port");
        bench->works(ASK(sal_mib_etherStatsOctets_get, p, &after), "a counter");
        bench->holds(
            before == 0 || after < before, reason::not_stored, "clears the counters of a port",
            std::to_string(before) + ", then " + std::to_string(after));
    }
    for (int wrong : {-1, port_count()})
        bench->refuses(ASK(sal_mib_cntr_clr, wrong), port.says);
    if (counted == 0)
        bench->remark("no port has counted anything: that a clear clears was not seen");
}

void test_cables() {
    int groups = port_count() - TRUNK_GROUPS;
    for (int p = 0; p < groups; ++p) {
        if (sys_port_lPortMedia_ret(p) == PORT_MEDIA_FIBRE)
            bench->refuses(ASK(sal_cablediag_copper_set, p), "refused on a fibre port");
        else
            bench->works(ASK(sal_cablediag_copper_set, p), "tests the cable at a copper port");
    }
    for (int wrong : {groups, -1, port_count()})
        bench->refuses(ASK(sal_cablediag_copper_set, wrong), "a copper port; not a group");
}

void restart_services() {
    std::uint32_t enable = 0;
    bench->works(ASK(sal_sys_inetdConfig_set), "writes inetd's configuration");
    bench->works(ASK(sal_inetd_restart), "restarts inetd");
    bench->works(ASK(sal_snmp_enable_get, &enable), "whether SNMP is to run");
    bench->works(ASK(sal_snmp_stop), "stops it");
    bench->works(ASK(cmd_snmp_demo_restart), "starts the service");
    bench->works(ASK(sal_snmp_restart), "starts it afresh if it is to run");
    if (!enable)
        bench->works(ASK(sal_snmp_stop), "stops it");
    bench->works(
        ASK(sal_util_process_kill, "platform_judge_no_such_process"),
        "that there is none is no failure");
}

void take_static_macs_out() {
    int taken = 0;
    for (std::uint32_t index = 0; index < STATIC_MAC_ENTRIES; ++index) {
        MacEntry entry = {};
        std::uint32_t found = 1;
        if (ASK(sal_l2_static_macEntry_get, index, &entry) != 0 ||
            !(entry.flags & MAC_ENTRY_IN_USE))
            continue;
        ++taken;
        bench->works(ASK(sal_l2_static_macEntry_del, &entry), "takes the entry out");
        ASK(sal_l2_static_macEntry_search, &entry, &found);
        bench->holds(found == 0, reason::not_stored, "takes the entry out", "it is there");
    }
    bench->remark(std::to_string(taken) + " static addresses were taken out");
}

// The image goes to the partition that is not selected, whose own is kept in a file meanwhile.
void write_firmware(const std::string& url) {
    const char* image = "/tmp/platform_judge_image";
    const char* kept = "/tmp/platform_judge_kept";
    int selected = 0;
    if (!bench->works(ASK(sal_sys_dualImageCurrSel_get, &selected), "the selected partition"))
        return;
    int other = 1 - selected;
    std::uint32_t length = 0, built = 0;
    std::uint8_t digest[FW_DIGEST_SIZE];
    char version[FW_RAW_VERSION_SIZE];
    bool had_one = ASK(sal_sys_fwImageHdrInfo_get, other, &length, &built, digest, version) == 0;
    if (had_one)
        bench->works(ASK(sal_sys_fwImage_backup, other, kept), "reads a partition back");
    bench->refuses(
        ASK(sal_fwImage_download, image, "http://127.0.0.1:1/none"), "fetches an image from `url`");
    bench->works(
        ASK(sal_sys_fwImageLock_give), "the caller of a failed download gives the lock back");
    if (bench->works(ASK(sal_fwImage_download, image, url.c_str()), "fetches an image")) {
        bench->works(ASK(sal_sys_fwImage_write, image, other), "writes it to a partition");
        bench->works(
            ASK(sal_sys_fwImageHdrInfo_get, other, &length, &built, digest, version),
            "the header of what was written");
    } else {
        bench->works(ASK(sal_sys_fwImageLock_give), "gives the firmware lock back");
    }
    if (had_one)
        bench->works(ASK(sal_sys_fwImage_write, kept, other), "writes the kept image back");
    for (const char* file : {image, kept, image})
        bench->works(
            ASK(sal_sys_fwImageSaveMem_gen, file), "the file is deleted; that it is not there is "
                                                   "no failure");
}

void forget_configuration() {
    bench->works(ASK(sal_sys_restore_defaults, 0), "deletes the startup configuration");
}

void kill_agent() {
    bench->remark("what follows this is up to the switch: the agent starts afresh");
    bench->works(ASK(sal_vxcloud_kill), "ends the agent's process");
}

void reboot() {
    bench->remark("what follows this is up to the switch: it reboots");
    bench->works(ASK(sal_sys_reboot), "reboots the switch");
}

} // namespace

void add_irrevocable(std::vector<Step>& all, const Options& options) {
    const struct {
        bool wanted;
        const char* family;
        const char* probe;
        std::function<void()> judge;
    } rows[] = {
        {options.unread_settings, "port", "settings that no call reads, set", set_unread},
        {options.poe_reset, "poe", "reset", reset_ports},
        {options.clear_counters, "mib", "clear", clear_counters},
        {options.cable_test, "diag", "cable test", test_cables},
        {options.services, "access", "services", restart_services},
        {options.static_macs, "l2", "static addresses", take_static_macs_out},
        {!options.firmware.empty(), "firmware", "download and write",
         [url = options.firmware] { write_firmware(url); }},
        {options.factory_defaults, "firmware", "factory defaults", forget_configuration},
        {options.kill, "vxcloud", "kill", kill_agent},
        {options.reboot, "system", "reboot", reboot},
    };
    for (const auto& row : rows)
        if (row.wanted)
            all.push_back({row.family, row.probe, row.judge});
}

} // namespace judge
