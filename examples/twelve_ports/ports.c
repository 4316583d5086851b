// Ports, their limits, counters, power and LEDs.
#include <stdio.h>
#include <string.h>

#include "board.h"
#include "platform/led.h"
#include "platform/mib.h"
#include "platform/port.h"
#include "platform/rate.h"
#include "platform/switch.h"
#include "platform/system.h"

#define OF(member) offsetof(struct Port, member)

enum { FASTEST = 5, SPEED_10G = 4, LINK_1000M = 2 };

// --- Ports. The first one has a partner, with a gigabit.

int sys_logic_port_num_ret(void) { return LOGICAL_PORTS; }

static int is_fibre(int port) { return port >= COPPER_PORTS && port < PHYSICAL_PORTS; }

int sal_port_enable_get(int port, uint32_t* enable) {
    return get_of_port(port, OF(enable), enable);
}
int sal_port_enable_set(int port, int enable) {
    return set_of_port(port, OF(enable), enable, 0, 1);
}

int sal_port_linkStatus_get(int port, uint32_t* status) {
    uint32_t enable = 0;
    if (get_of_port(port, OF(enable), &enable))
        return BAD_VALUE;
    *status = port == 0 && enable;
    return OK;
}

int sys_port_linkStatus_ret(int port) {
    uint32_t status = 0;
    sal_port_linkStatus_get(port, &status);
    return (int)status;
}

int sal_port_speed_get(int port, PortSpeed* speed) {
    if (!is_port(port))
        return BAD_VALUE;
    lock_board();
    *speed = (PortSpeed){board_ports[port].automatic_speed, board_ports[port].speed};
    return unlock_board(OK);
}

int sal_port_duplex_get(int port, PortDuplex* duplex) {
    if (!is_port(port))
        return BAD_VALUE;
    lock_board();
    *duplex = (PortDuplex){board_ports[port].automatic_duplex, board_ports[port].duplex};
    return unlock_board(OK);
}

int sal_port_speed_set(int port, int automatic, int speed) {
    int slow = !is_fibre(port) && speed == SPEED_10G && !automatic;
    if (!is_port(port) || !is_within(automatic, 0, 1) || !is_within(speed, 0, FASTEST) || slow)
        return BAD_VALUE;
    lock_board();
    board_ports[port].automatic_speed = (uint32_t)automatic;
    board_ports[port].speed = (uint32_t)speed;
    return unlock_board(OK);
}

int sal_port_duplex_set(int port, int automatic, int duplex) {
    if (!is_port(port) || !is_within(automatic, 0, 1) || !is_within(duplex, 0, 1))
        return BAD_VALUE;
    lock_board();
    board_ports[port].automatic_duplex = (uint32_t)automatic;
    board_ports[port].duplex = (uint32_t)duplex;
    return unlock_board(OK);
}

int sal_port_speedDuplex_get(int port, PortLinkMode* mode) {
    if (!is_port(port))
        return BAD_VALUE;
    *mode = (PortLinkMode){LINK_1000M, 1};
    return OK;
}

int sal_port_flowCtrl_get(int port, uint32_t* configured, uint32_t* running) {
    if (get_of_port(port, OF(flow_control), configured))
        return BAD_VALUE;
    *running = *configured && sys_port_linkStatus_ret(port);
    return OK;
}

int sal_port_flowCtrl_set(int port, int enable) {
    return set_of_port(port, OF(flow_control), enable, 0, 1);
}
int sal_port_protected_get(int port, uint32_t* enable) {
    return get_of_port(port, OF(isolated), enable);
}
int sal_port_protected_set(int port, int enable) {
    return set_of_port(port, OF(isolated), enable, 0, 1);
}

int sal_port_securityEnable_get(int port, uint32_t* enable) {
    if (!is_port(port))
        return BAD_VALUE;
    *enable = 0;
    return OK;
}

int sys_port_lPortMedia_ret(int port) {
    return is_fibre(port) ? PORT_MEDIA_FIBRE : PORT_MEDIA_COPPER;
}
int sys_port_isLPort10G_ret(int port) { return is_fibre(port); }

int sal_10g_port_init(int port) { return sal_port_10g_media_set(port, PORT_10G_MEDIA_10G); }

int sal_port_10g_media_set(int port, int media) {
    return is_fibre(port)
               ? set_of_port(port, OF(media_10g), media, PORT_10G_MEDIA_10G, PORT_10G_MEDIA_1000M)
               : BAD_VALUE;
}

int sal_port_port_fiberNwayForceLinkEnable_set(int port, int enable) {
    return is_fibre(port) && is_within(enable, 0, 1) ? OK : BAD_VALUE;
}

int sys_port_lPort2uStr(int port, int style, char* text) {
    if (!is_port(port))
        return BAD_VALUE;
    const char* kind = port < COPPER_PORTS ? "" : port < PHYSICAL_PORTS ? "F" : "LAG";
    int first = port < COPPER_PORTS ? 0 : port < PHYSICAL_PORTS ? COPPER_PORTS : PHYSICAL_PORTS;
    snprintf(text, 32, "%s%s%d", style == 2 ? "" : "Port ", kind, port - first + 1);
    return OK;
}

// --- Frame size, and limits.

static uint32_t frame_size = 1522;
int sal_switch_maxFrameSize_get(uint32_t* bytes) { return get_word(&frame_size, bytes); }
int sal_switch_maxFrameSize_set(uint32_t bytes) { return set_word(&frame_size, bytes, 64, 12288); }

int sal_rate_igrBandwidthCtrlEnable_get(int port, uint32_t* enable) {
    return get_of_port(port, OF(rx_limited), enable);
}
int sal_rate_igrBandwidthCtrlEnable_set(int port, int enable) {
    return set_of_port(port, OF(rx_limited), enable, 0, 1);
}
int sal_rate_egrBandwidthCtrlEnable_get(int port, uint32_t* enable) {
    return get_of_port(port, OF(tx_limited), enable);
}
int sal_rate_egrBandwidthCtrlEnable_set(int port, int enable) {
    return set_of_port(port, OF(tx_limited), enable, 0, 1);
}
int sal_rate_igrBandwidthCtrlRate_get(int port, uint32_t* kbps) {
    return get_of_port(port, OF(rx_kbps), kbps);
}
int sal_rate_igrBandwidthCtrlRate_set(int port, int kbps) {
    return set_of_port(port, OF(rx_kbps), kbps, RATE_LOWEST, RATE_UNLIMITED);
}
int sal_rate_egrBandwidthCtrlRate_get(int port, uint32_t* kbps) {
    return get_of_port(port, OF(tx_kbps), kbps);
}
int sal_rate_egrBandwidthCtrlRate_set(int port, int kbps) {
    return set_of_port(port, OF(tx_kbps), kbps, RATE_LOWEST, RATE_UNLIMITED);
}

// --- Counters: nothing is ever received.

static int no_traffic(int port, uint64_t* count) {
    if (!is_port(port))
        return BAD_VALUE;
    *count = 0;
    return OK;
}

static const MibRow mib_rows[MIB_ROWS] = {
    {"ifInOctets", no_traffic},         {"ifInUcastPkts", no_traffic},
    {"ifInNUcastPkts", no_traffic},     {"ifInDiscards", no_traffic},
    {"ifOutOctets", no_traffic},        {"ifOutUcastPkts", no_traffic},
    {"ifOutNUcastPkts", no_traffic},    {"ifOutDiscards", no_traffic},
    {"ifInMulticastPkts", no_traffic},  {"ifInBroadcastPkts", no_traffic},
    {"ifOutMulticastPkts", no_traffic}, {"ifOutBroadcastPkts", no_traffic},
};
const MibTable user_mibtbls = {MIB_ROWS, mib_rows};

int sal_mib_cntr_clr(int port) { return is_port(port) ? OK : BAD_VALUE; }
int sal_mib_etherStatsDropEvents_get(int port, uint64_t* count) { return no_traffic(port, count); }
int sal_mib_etherStatsOctets_get(int port, uint64_t* count) { return no_traffic(port, count); }
int sal_mib_etherStatsPkts_get(int port, uint64_t* count) { return no_traffic(port, count); }
int sal_mib_etherStatsBcastPkts_get(int port, uint64_t* count) { return no_traffic(port, count); }
int sal_mib_etherStatsMcastPkts_get(int port, uint64_t* count) { return no_traffic(port, count); }
int sal_mib_etherStatsCRCAlignErrs_get(int port, uint64_t* count) {
    return no_traffic(port, count);
}
int sal_mib_etherStatsUnderSizePkts_get(int port, uint64_t* count) {
    return no_traffic(port, count);
}
int sal_mib_etherStatsOverSizePkts_get(int port, uint64_t* count) {
    return no_traffic(port, count);
}
int sal_mib_etherStatsFragments_get(int port, uint64_t* count) { return no_traffic(port, count); }
int sal_mib_etherStatsJabbers_get(int port, uint64_t* count) { return no_traffic(port, count); }
int sal_mib_etherStatsCollisions_get(int port, uint64_t* count) { return no_traffic(port, count); }
int sal_mib_etherStatsPkts64Octets_get(int port, uint64_t* count) {
    return no_traffic(port, count);
}
int sal_mib_etherStatsPkts65to127Octets_get(int port, uint64_t* count) {
    return no_traffic(port, count);
}
int sal_mib_etherStatsPkts128to255Octets_get(int port, uint64_t* count) {
    return no_traffic(port, count);
}
int sal_mib_etherStatsPkts256to511Octets_get(int port, uint64_t* count) {
    return no_traffic(port, count);
}
int sal_mib_etherStatsPkts512to1023Octets_get(int port, uint64_t* count) {
    return no_traffic(port, count);
}
int sal_mib_etherStatsPkts1024to1518Octets_get(int port, uint64_t* count) {
    return no_traffic(port, count);
}

// --- Power: nobody draws any.

enum { BUDGET = 1300 }; // tenths of a watt

int sal_poe_total_power_allocated_query_get(uint16_t* allocated) {
    *allocated = 0;
    return OK;
}

int sal_poe_system_power_management_query_get(uint8_t* mode, uint16_t* budget) {
    *mode = 1;
    *budget = BUDGET;
    return OK;
}

// A copy of what a port has; 0 for a port without PoE.
static int poe_of(uint8_t port, struct PoePort* copy) {
    if (port >= POE_PORTS)
        return 0;
    lock_board();
    *copy = board_poe[port];
    unlock_board(OK);
    return 1;
}

int sal_poe_port_ext_config_query_get(
    uint8_t port, uint8_t* disconnect, uint8_t* limit_type, uint8_t* user_limit, uint8_t* priority,
    uint8_t* pairs) {
    struct PoePort poe;
    if (!poe_of(port, &poe))
        return BAD_VALUE;
    *disconnect = *pairs = 0;
    *limit_type = (uint8_t)poe.limit_type;
    *user_limit = (uint8_t)poe.user_limit;
    *priority = (uint8_t)poe.priority;
    return OK;
}

int sal_poe_port_config_query_get(
    uint8_t port, uint8_t* enable, uint8_t* mode, uint8_t* detection, uint8_t* classification) {
    struct PoePort poe;
    if (!poe_of(port, &poe))
        return BAD_VALUE;
    *enable = (uint8_t)poe.enable;
    *mode = *detection = 0;
    *classification = (uint8_t)poe.classification;
    return OK;
}

int sal_poe_port_status_query_get(
    uint8_t port, uint8_t* status, uint8_t* error, uint8_t* power_class) {
    struct PoePort poe;
    if (!poe_of(port, &poe))
        return BAD_VALUE;
    *status = poe.enable ? POE_STATUS_SEARCHING : POE_STATUS_OFF;
    *error = *power_class = 0;
    return OK;
}

int sal_poe_port_measurements_query_get(
    uint8_t port, uint16_t* voltage, uint16_t* current, uint16_t* temperature, uint16_t* power) {
    if (port >= POE_PORTS)
        return BAD_VALUE;
    *voltage = *current = *power = 0;
    *temperature = 40;
    return OK;
}

static int poe_set(uint8_t port, size_t member, long long value, long long low, long long high) {
    if (port >= POE_PORTS)
        return BAD_VALUE;
    return set_word((uint32_t*)((char*)&board_poe[port] + member), value, low, high);
}

#define OF_POE(member) offsetof(struct PoePort, member)

int sal_poe_port_priority_config_set(uint8_t port, int priority) {
    return poe_set(port, OF_POE(priority), priority, 0, 3);
}
int sal_poe_power_th_type_config_set(uint8_t port, uint8_t limit_type) {
    return poe_set(port, OF_POE(limit_type), limit_type, POE_LIMIT_BY_CLASS, POE_LIMIT_BY_USER);
}
int sal_poe_port_classification_type_config_set(uint8_t port, uint8_t classification) {
    return poe_set(port, OF_POE(classification), classification, 0, 1);
}
int sal_poe_port_maxpower_config_set(uint8_t port, uint8_t user_limit) {
    return poe_set(port, OF_POE(user_limit), user_limit, 0, 150);
}
int sal_poe_port_pse_enable_set(uint8_t port, int enable) {
    return poe_set(port, OF_POE(enable), enable, 0, 1);
}
int sal_poe_port_reset_set(uint8_t port, uint8_t reset) {
    return port < POE_PORTS && reset == 1 ? OK : BAD_VALUE;
}

// --- LEDs.

static uint32_t led_mode = LED_MODE_LAN;
int sal_swctrl_poe_led_mode_get(uint32_t* mode) { return get_word(&led_mode, mode); }
int sal_swctrl_poe_led_mode_set(uint32_t mode) {
    int known = mode == LED_MODE_LAN || mode == LED_MODE_POE || mode == LED_MODE_DARK;
    return known ? set_word(&led_mode, mode, LED_MODE_LAN, LED_MODE_DARK) : BAD_VALUE;
}
