// The port report, built and printed, on switches of three sizes; and beside it the platform calls
// that it makes, made without an agent around them.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>

#include "bench/counted_heap.h"
#include "json/json_document.h"
#include "json/json_print.h"
#include "platform/acl.h"
#include "platform/l2.h"
#include "platform/mib.h"
#include "platform/poe.h"
#include "platform/port.h"
#include "platform/qos.h"
#include "platform/rate.h"
#include "platform/system.h"
#include "platform/util.h"
#include "platform/vlan.h"
#include "platform/voice_vlan.h"
#include "sections/port/report.h"
#include "sim/library/board.h"

namespace {

// A switch with `addresses` learned on its copper ports, in turns, and link on every other port.
class SizedSwitch {
  public:
    SizedSwitch(int ports, int addresses) {
        std::string pattern = std::filesystem::temp_directory_path() / "vx_bench_XXXXXX";
        root_ = mkdtemp(pattern.data());
        std::filesystem::path scenario = root_ / "scenario.json";
        std::ofstream(scenario) << R"({"hardware":{"logical_ports":)" << ports << "}}";
        board_ = std::make_unique<sim::Board>(root_, scenario);
        board_->trace.keep();
        board_->device.chip.change([](sim::ChipState& chip) {
            for (std::size_t p = 0; p < chip.ports.size(); ++p)
                chip.ports[p].plugged = p % 2 == 0;
        });
        auto& learned = board_->device.macs.learned;
        learned.assign(static_cast<std::size_t>(addresses), sim::MacAddress{});
        for (int i = 0; i < addresses; ++i) {
            sim::MacAddress& address = learned[static_cast<std::size_t>(i)];
            address.mac[0] = 2;
            address.mac[4] = static_cast<std::uint8_t>(i >> 8);
            address.mac[5] = static_cast<std::uint8_t>(i);
            sim::set_bit(address.ports, i % (ports - 10), true);
        }
    }
    ~SizedSwitch() {
        board_.reset();
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }

    // How often each call was made since the last time.
    std::map<std::string, int> calls() {
        std::map<std::string, int> counts;
        for (const std::string& name : board_->trace.calls())
            ++counts[name];
        counts.erase("sys_logic_port_num_ret");
        board_->trace.clear();
        return counts;
    }
    std::size_t all_calls() {
        std::size_t count = board_->trace.calls().size();
        board_->trace.clear();
        return count;
    }
    void forget() { board_->trace.clear(); }

  private:
    std::filesystem::path root_;
    std::unique_ptr<sim::Board> board_;
};

void report() {
    cJSON* document = createJsonObject();
    vxc_port_get(document);
    char* text = printJson(document);
    benchmark::DoNotOptimize(text);
    std::free(text);
    deleteJsonObject(document);
}

// ---- The same platform calls, and nothing else

void call_for_addresses() {
    std::uint32_t count = 0, is_static = 0;
    std::uint8_t own[MAC_ADDRESS_SIZE];
    char text[18];
    sal_l2_macTbl_generate(&count);
    sal_l2_macTbl_size_get(&count);
    sal_sys_macAddr_get(own);
    for (std::uint32_t i = 0; i < count; ++i) {
        MacEntry entry;
        sal_l2_macEntry_get(i, &entry);
        sal_l2_static_macEntry_search(&entry, &is_static);
        sys_util_mac2Str(entry.mac, text);
    }
}

void call_for_poe(int p) {
    auto port = static_cast<std::uint8_t>(p);
    std::uint8_t a, b, c, d, e;
    std::uint16_t f, g, h, i;
    sal_poe_port_ext_config_query_get(port, &a, &b, &c, &d, &e);
    sal_poe_port_config_query_get(port, &a, &b, &c, &d);
    sal_poe_port_status_query_get(port, &a, &b, &c);
    sal_poe_port_measurements_query_get(port, &f, &g, &h, &i);
}

void call_for_counters(int port) {
    static const MibGetter rmon[] = {
        sal_mib_etherStatsDropEvents_get,
        sal_mib_etherStatsOctets_get,
        sal_mib_etherStatsPkts_get,
        sal_mib_etherStatsBcastPkts_get,
        sal_mib_etherStatsMcastPkts_get,
        sal_mib_etherStatsCRCAlignErrs_get,
        sal_mib_etherStatsUnderSizePkts_get,
        sal_mib_etherStatsOverSizePkts_get,
        sal_mib_etherStatsFragments_get,
        sal_mib_etherStatsJabbers_get,
        sal_mib_etherStatsCollisions_get,
        sal_mib_etherStatsPkts64Octets_get,
        sal_mib_etherStatsPkts65to127Octets_get,
        sal_mib_etherStatsPkts128to255Octets_get,
        sal_mib_etherStatsPkts256to511Octets_get,
        sal_mib_etherStatsPkts512to1023Octets_get,
        sal_mib_etherStatsPkts1024to1518Octets_get,
    };
    std::uint64_t count;
    for (int row = 0; row < MIB_ROWS; ++row)
        user_mibtbls.rows[row].get(port, &count);
    for (MibGetter get : rmon)
        get(port, &count);
}

void call_for_vlans(int port) {
    std::uint32_t vid;
    VlanMask vlans;
    static char text[VLAN_TEXT_SIZE];
    sal_vlan_portAdminPvid_get(port, &vid);
    for (int kind : {VLAN_TAGGED, VLAN_UNTAGGED}) {
        sal_vlan_portAdminVlanmask_get(port, kind, &vlans);
        sys_util_vlanmask2Str(&vlans, text);
    }
}

void call_for_port(int port) {
    std::uint32_t a, b, link = 0;
    int c;
    PortSpeed speed;
    PortDuplex duplex;
    PortLinkMode mode;
    sal_port_enable_get(port, &a);
    sal_port_linkStatus_get(port, &link);
    call_for_vlans(port);
    if (port < POE_PORTS)
        call_for_poe(port);
    if (port < sys_logic_port_num_ret() - 8) {
        sal_rate_igrBandwidthCtrlEnable_get(port, &a);
        sal_rate_egrBandwidthCtrlEnable_get(port, &a);
    }
    sal_port_speed_get(port, &speed);
    sal_port_duplex_get(port, &duplex);
    if (link == 1)
        sal_port_speedDuplex_get(port, &mode);
    sal_port_flowCtrl_get(port, &a, &b);
    sal_port_protected_get(port, &a);
    call_for_counters(port);
    sal_qos_portCos_get(port, &a);
    sal_qos_portTrustState_get(port, &a);
    sal_vlan_portVoiceVlanEnable_get(port, &c);
    sal_vlan_portVoiceVlancosMode_get(port, &c);
}

void platform_calls() {
    std::uint16_t power;
    std::uint8_t mode;
    static AclPortBinding bindings[ACL_PORTS];
    sal_poe_total_power_allocated_query_get(&power);
    sal_poe_system_power_management_query_get(&mode, &power);
    call_for_addresses();
    sal_acl_entry_portBinding_get(bindings);
    for (int port = 0; port < sys_logic_port_num_ret(); ++port)
        call_for_port(port);
}

// ---- Measuring

void measure(benchmark::State& state, void (*run)()) {
    SizedSwitch sized(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    for (auto _ : state) {
        run();
        state.PauseTiming();
        sized.forget();
        state.ResumeTiming();
    }
    bench::start_counting_heap();
    run();
    state.counters["peak_heap"] = static_cast<double>(bench::stop_counting_heap());
    state.counters["platform_calls"] = static_cast<double>(sized.all_calls());
}

void port_report(benchmark::State& state) {
    measure(state, report);
    SizedSwitch sized(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    report();
    auto reported = sized.calls();
    platform_calls();
    if (sized.calls() != reported)
        state.SkipWithError("the platform calls alone are not those of the report");
}

void platform_calls_alone(benchmark::State& state) { measure(state, platform_calls); }

// Logical ports, learned addresses.
void sizes(benchmark::internal::Benchmark* made) {
    made->Args({28, 256})->Args({52, 4096})->Args({96, 16384})->Unit(benchmark::kMillisecond);
}

BENCHMARK(port_report)->Apply(sizes);
BENCHMARK(platform_calls_alone)->Apply(sizes);

} // namespace
