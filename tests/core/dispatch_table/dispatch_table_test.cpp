// The dispatch with sections that do nothing but fail, or succeed, where it is wanted: most of the
// real ones fail only for want of a platform, and three never do.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/dispatch.h"
#include "json/json_document.h"
#include "platform/log.h"
#include "platform/system.h"
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
#include "sections/port/configuration.h"
#include "sections/port/report.h"
#include "sections/qos.h"
#include "sections/reboot.h"
#include "sections/snmp.h"
#include "sections/stp.h"
#include "sections/summary.h"
#include "sections/trunk.h"
#include "sections/uplink_port.h"
#include "sections/voice_vlan.h"

namespace {

using Lines = std::vector<std::string>;

Lines seen;
int outcome; // of every section

// Notes a call as "name(what it was given)"; a whole document has no name.
int section(const char* name, const cJSON* given) {
    seen.push_back(std::string(name) + "(" + (given->string ? given->string : "") + ")");
    return outcome;
}

class DispatchTable : public testing::Test {
  protected:
    ~DispatchTable() override { deleteJsonObject(document); }

    Lines report_with(int result) {
        start(result);
        document = createJsonObject();
        vxc_get(document);
        return seen;
    }
    Lines apply_with(int result, const std::string& text) {
        start(result);
        document = parseJsonString(text.c_str());
        vxc_set(document);
        return seen;
    }

  private:
    void start(int result) {
        deleteJsonObject(document);
        seen.clear();
        outcome = result;
    }

    cJSON* document = nullptr;
};

// A section of the settings: where it stands, who applies it, and what is logged when that fails.
struct Setting {
    std::string document;
    Lines fails;
    bool is_saved_after_failure = false;
    bool is_saved = true;
};

const std::string saved = "cmd_conf_startupConfig_save";

const Setting settings[] = {
    {R"({"acl": {}})", {"vxc_acl_set(acl)", "7 21 Acl set fail"}},
    {R"({"qos": {}})", {"vxc_qos_set(qos)", "7 21 Qos set fail"}},
    {R"({"vlan": {}})", {"vxc_voice_vlan_set(vlan)", "7 21 Voice Vlan set fail"}},
    {R"({"lldp": {}})", {"vxc_lldp_set(lldp)", "7 21 LLDP set fail"}},
    {R"({"system": {"jumbo_frames": {}}})", {"vxc_jumbo_frmSet(system)"}, true},
    {R"({"system": {"cloud": {}}})", {"vxc_cloud_set(system)"}, true},
    {R"({"system": {"summary_info": {}}})",
     {"vxc_summary_set(system)", "7 21 summary info set fail"}},
    {R"({"system": {"dark_mode": {}}})", {"vxc_dark_mode_set(system)", "7 21 dark mode set fail"}},
    {R"({"system": {"ports": {}}})", {"vxc_port_set(system)", "7 21 port set fail"}},
    {R"({"system": {"snmp": {}}})", {"vxc_snmp_set(system)", "7 21 snmp set fail"}},
    {R"({"system": {"stp": {}}})", {"vxc_stp_set(system)", "7 21 stp set fail"}},
    {R"({"system": {"igmp": {}}})", {"vxc_igmp_set(system)", "7 21 igmp set fail"}},
    {R"({"system": {"port_mirror": {}}})", {"vxc_mirror_set(system)", "7 21 mirror set fail"}},
    {R"({"system": {"link_aggregation": {}}})", {"vxc_trunk_set(system)", "7 21 trunk set fail"}},
    {R"({"system": {"device_access": {}}})", {"vxc_access_set(system)", "7 21 access set fail"}},
    {R"({"system": {"firmware": {}}})",
     {"vxc_firmware_set(system)", "7 21 firmware set fail"},
     false,
     false},
    {R"({"system": {"reboot": {}}})",
     {"vxc_reboot_set(system)", "7 21 reboot set fail"},
     false,
     false},
};

// All of them, in an order that is nowhere theirs.
const std::string everything = R"({
    "system": {
        "reboot": {}, "firmware": {}, "device_access": {}, "link_aggregation": {},
        "port_mirror": {}, "igmp": {}, "stp": {}, "snmp": {}, "ports": {}, "dark_mode": {},
        "summary_info": {}, "cloud": {}, "jumbo_frames": {}},
    "lldp": {}, "vlan": {}, "qos": {}, "acl": {}})";

} // namespace

// --- What is under the dispatch.

extern "C" {

int sys_log(int facility, int level, const char* text) {
    seen.push_back(std::to_string(facility) + " " + std::to_string(level) + " " + text);
    return 0;
}

int cmd_conf_startupConfig_save() {
    seen.push_back(saved);
    return outcome;
}

int vxc_jumbo_frmGet(cJSON* given) { return section(__func__, given); }
void vxc_cloud_get(cJSON* given) { section(__func__, given); }
int vxc_firmware_get(cJSON* given) { return section(__func__, given); }
int vxc_summary_get(cJSON* given) { return section(__func__, given); }
int vxc_management_vlan_get(cJSON* given) { return section(__func__, given); }
int vxc_uplink_port_get(cJSON* given) { return section(__func__, given); }
int vxc_reboot_get(cJSON* given) { return section(__func__, given); }
int vxc_dark_mode_get(cJSON* given) { return section(__func__, given); }
int vxc_port_get(cJSON* given) { return section(__func__, given); }
int vxc_snmp_get(cJSON* given) { return section(__func__, given); }
int vxc_stp_get(cJSON* given) { return section(__func__, given); }
int vxc_igmp_get(cJSON* given) { return section(__func__, given); }
int vxc_mirror_get(cJSON* given) { return section(__func__, given); }
int vxc_trunk_get(cJSON* given) { return section(__func__, given); }
int vxc_access_get(cJSON* given) { return section(__func__, given); }
int vxc_acl_get(cJSON* given) { return section(__func__, given); }
int vxc_qos_get(cJSON* given) { return section(__func__, given); }
int vxc_voice_vlan_get(cJSON* given) { return section(__func__, given); }
int vxc_lldp_get(cJSON* given) { return section(__func__, given); }
int vxc_diagnostic_get(cJSON* given) { return section(__func__, given); }

int vxc_acl_set(const cJSON* given) { return section(__func__, given); }
int vxc_qos_set(const cJSON* given) { return section(__func__, given); }
int vxc_voice_vlan_set(const cJSON* given) { return section(__func__, given); }
int vxc_lldp_set(const cJSON* given) { return section(__func__, given); }
int vxc_jumbo_frmSet(const cJSON* given) { return section(__func__, given); }
void vxc_cloud_set(const cJSON* given) { section(__func__, given); }
int vxc_summary_set(const cJSON* given) { return section(__func__, given); }
int vxc_dark_mode_set(const cJSON* given) { return section(__func__, given); }
int vxc_port_set(const cJSON* given) { return section(__func__, given); }
int vxc_snmp_set(const cJSON* given) { return section(__func__, given); }
int vxc_stp_set(const cJSON* given) { return section(__func__, given); }
int vxc_igmp_set(const cJSON* given) { return section(__func__, given); }
int vxc_mirror_set(const cJSON* given) { return section(__func__, given); }
int vxc_trunk_set(const cJSON* given) { return section(__func__, given); }
int vxc_access_set(const cJSON* given) { return section(__func__, given); }
int vxc_firmware_set(const cJSON* given) { return section(__func__, given); }
int vxc_reboot_set(const cJSON* given) { return section(__func__, given); }
}

// --- The tables.

TEST_F(DispatchTable, sections_that_fail_are_logged_and_the_report_goes_on) {
    EXPECT_EQ(
        report_with(77), (Lines{
                             "vxc_jumbo_frmGet(system)",
                             "vxc_cloud_get(system)",
                             "vxc_firmware_get(system)",
                             "7 21 firmware get fail",
                             "vxc_summary_get(system)",
                             "7 21 summary info get fail",
                             "vxc_management_vlan_get(system)",
                             "7 21 management vlan get fail",
                             "vxc_uplink_port_get(system)",
                             "7 21 uplink port get fail",
                             "vxc_reboot_get(system)",
                             "7 21 reboot get fail",
                             "vxc_dark_mode_get(system)",
                             "7 21 dark_mode get fail",
                             "vxc_port_get(system)",
                             "7 21 port get fail",
                             "vxc_snmp_get(system)",
                             "7 21 snmp get fail",
                             "vxc_stp_get(system)",
                             "7 21 stp get fail",
                             "vxc_igmp_get(system)",
                             "7 21 igmp get fail",
                             "vxc_mirror_get(system)",
                             "7 21 mirror get fail",
                             "vxc_trunk_get(system)",
                             "7 21 trunk get fail",
                             "vxc_access_get(system)",
                             "7 21 access get fail",
                             "vxc_acl_get()",
                             "vxc_qos_get()",
                             "vxc_voice_vlan_get()",
                             "7 21 voice vlan get fail",
                             "vxc_lldp_get()",
                             "vxc_diagnostic_get()",
                             "7 21 diagnostic get fail",
                         }));
}

TEST_F(DispatchTable, sections_that_succeed_are_reported_without_a_line_in_the_log) {
    Lines all = report_with(0);
    EXPECT_EQ(all.size(), 20u);
    EXPECT_EQ(std::erase_if(all, [](const auto& line) { return line.ends_with(" fail"); }), 0u);
}

TEST_F(DispatchTable, settings_that_fail_are_logged_and_the_next_ones_are_applied) {
    EXPECT_EQ(
        apply_with(77, everything), (Lines{
                                        "vxc_acl_set(acl)",
                                        "7 21 Acl set fail",
                                        "vxc_qos_set(qos)",
                                        "7 21 Qos set fail",
                                        "vxc_voice_vlan_set(vlan)",
                                        "7 21 Voice Vlan set fail",
                                        "vxc_lldp_set(lldp)",
                                        "7 21 LLDP set fail",
                                        "vxc_jumbo_frmSet(system)",
                                        "vxc_cloud_set(system)",
                                        "vxc_summary_set(system)",
                                        "7 21 summary info set fail",
                                        "vxc_dark_mode_set(system)",
                                        "7 21 dark mode set fail",
                                        "vxc_port_set(system)",
                                        "7 21 port set fail",
                                        "vxc_snmp_set(system)",
                                        "7 21 snmp set fail",
                                        "vxc_stp_set(system)",
                                        "7 21 stp set fail",
                                        "vxc_igmp_set(system)",
                                        "7 21 igmp set fail",
                                        "vxc_mirror_set(system)",
                                        "7 21 mirror set fail",
                                        "vxc_trunk_set(system)",
                                        "7 21 trunk set fail",
                                        "vxc_access_set(system)",
                                        "7 21 access set fail",
                                        "cmd_conf_startupConfig_save",
                                        "vxc_firmware_set(system)",
                                        "7 21 firmware set fail",
                                        "vxc_reboot_set(system)",
                                        "7 21 reboot set fail",
                                    }));
}

TEST_F(DispatchTable, setting_that_fails_alone_is_saved_only_if_it_counts_as_applied) {
    for (const Setting& setting : settings) {
        Lines expected = setting.fails;
        if (setting.is_saved_after_failure)
            expected.push_back(saved);
        EXPECT_EQ(apply_with(77, setting.document), expected) << setting.document;
    }
}

TEST_F(DispatchTable, setting_that_succeeds_alone_is_saved_unless_it_is_an_order) {
    for (const Setting& setting : settings) {
        Lines expected = {setting.fails.front()};
        if (setting.is_saved)
            expected.push_back(saved);
        EXPECT_EQ(apply_with(0, setting.document), expected) << setting.document;
    }
}
