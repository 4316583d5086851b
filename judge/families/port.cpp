// Ports.
#include "platform/port.h"

#include <map>

#include "judge/family.h"
#include "platform/system.h"
#include "platform/trunk.h"

namespace judge {

namespace {

enum { CONFIGURED_SPEEDS = 6, LINK_SPEEDS = 6, NAME_SIZE = 32, SHORT_STYLE = 2 };

bool is_10g(int p) { return sys_port_isLPort10G_ret(p) == 1; }
bool is_fibre(int p) { return sys_port_lPortMedia_ret(p) == PORT_MEDIA_FIBRE; }

std::string fault_of(const PortSpeed& speed) {
    std::string fault = outside("automatic", speed.automatic, 0, 1);
    return fault.empty() ? outside("speed", speed.speed, 0, CONFIGURED_SPEEDS - 1) : fault;
}

std::string fault_of(const PortDuplex& duplex) {
    std::string fault = outside("automatic", duplex.automatic, 0, 1);
    return fault.empty() ? outside("duplex", duplex.duplex, 0, 1) : fault;
}

std::string fault_of(const PortLinkMode& mode) {
    std::string fault = outside("speed", mode.speed, 0, LINK_SPEEDS - 1);
    return fault.empty() ? outside("duplex", mode.duplex, 0, 1) : fault;
}

Operations reads() {
    const Parameter media = within("medium", PORT_MEDIA_COPPER, PORT_MEDIA_FIBRE);
    return {
        {NAMED(sal_port_enable_get), {port, gives_flag("enable")}},
        {NAMED(sal_port_linkStatus_get), {port, varying(gives_flag("status"))}},
        {NAMED(sal_port_speed_get), {port, gives_record<PortSpeed>("speed", fault_of)}},
        {NAMED(sal_port_duplex_get), {port, gives_record<PortDuplex>("duplex", fault_of)}},
        {NAMED(sal_port_speedDuplex_get),
         {port, varying(gives_record<PortLinkMode>("mode", fault_of))}},
        {NAMED(sal_port_flowCtrl_get),
         {port, gives_flag("configured"), varying(gives_flag("running"))}},
        {NAMED(sal_port_protected_get), {port, gives_flag("enable")}},
        {NAMED(sal_port_securityEnable_get), {port, gives_flag("enable")}},
        {NAMED(sys_port_lPortMedia_ret), {port}, media},
        {NAMED(sys_port_isLPort10G_ret), {port}, flag("10 gigabit")},
        {NAMED(sys_port_lPort2uStr),
         {port,
          asked(
              "style", "2, the short form", [] { return Numbers{SHORT_STYLE}; }, nullptr),
          gives_text("text", NAME_SIZE)}},
    };
}

Settings settings() {
    const Parameter speed = within("speed", 0, CONFIGURED_SPEEDS - 1);
    const Parameter media = within("media", PORT_10G_MEDIA_10G, PORT_10G_MEDIA_1000M);
    return {
        {NAMED(sal_port_enable_set), {port}, {flag("enable")}, outputs(sal_port_enable_get)},
        Setting(
            NAMED(sal_port_speed_set), {port}, {flag("automatic"), speed},
            members(sal_port_speed_get, &PortSpeed::automatic, &PortSpeed::speed))
            .unless_refused(),
        Setting(
            NAMED(sal_port_duplex_set), {port}, {flag("automatic"), flag("duplex")},
            members(sal_port_duplex_get, &PortDuplex::automatic, &PortDuplex::duplex))
            .unless_refused(),
        {NAMED(sal_port_flowCtrl_set), {port}, {flag("enable")}, outputs(sal_port_flowCtrl_get)},
        {NAMED(sal_port_protected_set), {port}, {flag("enable")}, outputs(sal_port_protected_get)},
        {NAMED(sal_port_10g_media_set), {port_that("a 10-gigabit port", is_10g)}, {media}, nullptr},
        {NAMED(sal_port_port_fiberNwayForceLinkEnable_set),
         {port_that("a fibre port", is_fibre)},
         {flag("enable")},
         nullptr},
    };
}

void judge_link(int p) {
    uint32_t status = 0;
    bool agrees = false;
    for (int attempt = 0; attempt < 3 && !agrees; ++attempt) // a link may come and go
        agrees = ASK(sal_port_linkStatus_get, p, &status) == 0 &&
                 (ASK(sys_port_linkStatus_ret, p) != 0) == (status == 1);
    bench->holds(
        agrees, reason::disagrees, "non-zero while the port has link",
        "sal_port_linkStatus_get gives " + std::to_string(status));
}

// Copper ports, then two fibre ports, then eight groups, which are copper.
void judge_medium(int p) {
    int groups = port_count() - TRUNK_GROUPS;
    bool fibre = p >= groups - 2 && p < groups;
    int medium = ASK(sys_port_lPortMedia_ret, p);
    bench->holds(
        medium == (fibre ? PORT_MEDIA_FIBRE : PORT_MEDIA_COPPER), reason::disagrees,
        "copper ports, then two fibre ports, then eight groups, which are copper",
        "medium " + std::to_string(medium) + " of port " + std::to_string(p) + " of " +
            std::to_string(port_count()));
}

void judge_names() {
    std::map<std::string, int> names;
    for (int p = 0; p < port_count(); ++p) {
        Guarded text(NAME_SIZE);
        if (ASK(sys_port_lPort2uStr, p, SHORT_STYLE, text.text()) != 0 || !text.terminated())
            continue;
        std::string name = text.text();
        auto added = names.emplace(name, p);
        bench->holds(
            !name.empty() && added.second, reason::disagrees, "a port's name names that port",
            name.empty() ? "no name" : name + " is port " + std::to_string(added.first->second));
    }
}

void agreement() {
    for (int p = 0; p < port_count(); ++p) {
        judge_link(p);
        judge_medium(p);
    }
    judge_names();
}

} // namespace

const Family port_family = {"port", reads, agreement, settings, nullptr};

} // namespace judge
