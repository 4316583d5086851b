// Ports of a simulated switch as a scenario describes them, and as a save keeps them.
#include <nlohmann/json.hpp>

#include "platform/port.h"
#include "platform/system.h"
#include "platform/vlan.h"
#include "sections/port/report.h"
#include "sim/instruments/codes.h"
#include "tests/support/on_board.h"
#include "tests/support/sized_board.h"

namespace {

const char* const scenario = R"({
  "hardware": {
    "logical_ports": 12,
    "ports": [
      {"plugged": true, "partner_speed": 1, "partner_duplex": 0, "rx_packets_per_second": 10,
       "tx_packets_per_second": 5, "packet_bytes": 100},
      {"plugged": false},
      {"plugged": true, "fibre": true, "ten_gigabit": false}
    ],
    "poe": {"budget": 100, "ports": [{"demand": 60, "class": 3}, {"demand": 50, "class": 3}]},
    "mac_table": {"learned": [{"mac": "02:00:00:00:00:07", "vlan": 3, "ports": "0,2"}]},
    "vlans": {"capacity": 2}
  },
  "config": {
    "poe": {"ports": [{"priority": 1}, {"priority": 2}]},
    "trunks": {"groups": [{"lacp": true, "members": "1"}]}
  }
})";

} // namespace

TEST(PortScenario, hardware_and_configuration_show_in_the_report) {
    SizedBoard sized((std::string(scenario)));
    auto report = nlohmann::json::parse(report_of(vxc_port_get).text);
    auto& ports = report["ports"];
    ASSERT_EQ(ports.size(), 12u);
    EXPECT_EQ(ports[0]["link_speed_neg"], 3);
    EXPECT_EQ(ports[1]["status"], 0);
    EXPECT_EQ(ports[2]["connected_device_mac_list"][0], "02:00:00:00:00:07");
    // The budget does for one of the two devices: for that with the higher priority.
    EXPECT_EQ(ports[0]["poe"]["status"], 3);
    EXPECT_EQ(ports[0]["poe"]["power_draw"], 0);
    EXPECT_EQ(ports[1]["poe"]["status"], 2);
    EXPECT_EQ(ports[1]["poe"]["power_draw"], 5);
    EXPECT_EQ(sys_port_isLPort10G_ret(2), 0);
    EXPECT_EQ(sal_vlan_adminEntry_create(2, "two"), 0);
    EXPECT_EQ(sal_vlan_adminEntry_create(3, "three"), sim::code_table_full);
    sized.board.clock.sleep(3);
    auto later = nlohmann::json::parse(report_of(vxc_port_get).text);
    EXPECT_EQ(later["ports"][0]["statistics"]["rx_bytes"]["all"], 3000);
    EXPECT_EQ(later["ports"][0]["statistics"]["tx_bytes"]["all"], 1500);
}

TEST(PortScenario, a_saved_configuration_of_ports_comes_back) {
    TempFolder folder;
    {
        sim::Board board(folder.path());
        sal_port_enable_set(0, 0);
        sal_port_speed_set(5, 0, 1);
        sal_vlan_adminEntry_create(7, "seven");
        VlanMask seven{};
        seven.words[0] = 1u << 7;
        sal_vlan_portAdminVlanmask_add(5, VLAN_TAGGED, &seven);
        sal_vlan_portAdminPvid_set(5, 7);
        cmd_conf_startupConfig_save();
    }
    sim::Board board(folder.path());
    std::uint32_t up = 1, pvid = 0;
    PortSpeed speed{};
    VlanMask vlans{};
    sal_port_linkStatus_get(0, &up);
    sal_port_speed_get(5, &speed);
    sal_vlan_portAdminPvid_get(5, &pvid);
    sal_vlan_portAdminVlanmask_get(5, VLAN_TAGGED, &vlans);
    EXPECT_EQ(up, 0u); // disabled, so there is no link although something is plugged in
    EXPECT_EQ(speed.automatic, 0u);
    EXPECT_EQ(speed.speed, 1u);
    EXPECT_EQ(pvid, 7u);
    EXPECT_EQ(vlans.words[0], 1u << 7);
}
