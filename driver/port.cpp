// Ports: administrative state, media, negotiation, flow control, error-disable and link.
#include "driver/port.h"

#include "driver/shapes.h"

int rsd_port_enable_set(uint32_t port, uint32_t enable) {
    if (!is_logical_port(port))
        return REQUEST_BAD_PORT;
    if (enable >= 2)
        return REQUEST_BAD_VALUE;
    return request_chip(3457, port, enable);
}

// clang-format off
int rsd_port_rxEnable_set(uint32_t port, uint32_t enable)                 { return request_chip_port(3458, port, enable); }
int rsd_port_comboMediaPrefer_set(uint32_t port, uint32_t media)          { return request_chip_port(3459, port, media); }
int rsd_port_media_set(uint32_t port, uint32_t media)                     { return request_chip_port(3460, port, media); }
int rsd_port_protected_set(uint32_t port, uint32_t enable)                { return request_chip_port(3461, port, enable); }
int rsd_port_autoNegoEnable_set(uint32_t port, uint32_t enable)           { return request_chip_port(3462, port, enable); }
int rsd_port_autoNegoAbility_set(uint32_t port, uint32_t ability)         { return request_chip_port(3463, port, ability); }
int rsd_port_forceModeAbility_set(uint32_t port, uint32_t speed, uint32_t duplex) { return request_chip_port(3464, port, speed, duplex); }
int rsd_port_flowCtrl_set(uint32_t port, uint32_t enable)                 { return request_chip_port(3465, port, enable); }
int rsd_port_descp_set(uint32_t port, const char* text)                   { return request_chip_port_text_set<PORT_DESCRIPTION_SIZE>(3466, text, port); }
int rsd_port_errDisableRecovery_set(uint32_t cause, uint32_t enable)      { return request_chip(3467, cause, enable); }
int rsd_port_errDisableTime_set(uint32_t seconds)                         { return request_chip(3468, seconds); }
int rsd_port_backpressureEnable_set(uint32_t port, uint32_t enable)       { return request_chip_port(3469, port, enable); }
int rsd_port_flowCtrlAuto_set(uint32_t port, uint32_t enable)             { return request_chip_port(3470, port, enable); }
int rsd_port_10GMedia_set(uint32_t port, uint32_t media)                  { return request_chip_port(3471, port, media); }
int rsd_port_fiberNwayForceLinkEnable_set(uint32_t port, uint32_t enable) { return request_chip_port(3472, port, enable); }

int rsd_port_enable_get(uint32_t port, uint32_t* enable)                       { return request_chip_port(3521, port, enable); }
int rsd_port_linkStatus_get(uint32_t port, uint32_t* up)                       { return request_chip_port(3522, port, up); }
int rsd_port_allLinkStatus_get(PortBitmap* ports)                              { return request_chip_entry_get(3523, ports); }
int rsd_port_comboMediaPrefer_get(uint32_t port, uint32_t* media)              { return request_chip_port(3524, port, media); }
int rsd_port_linkMedia_get(uint32_t port, uint32_t* media)                     { return request_chip_port(3525, port, media); }
int rsd_port_media_get(uint32_t port, uint32_t* media)                         { return request_chip_port(3526, port, media); }
int rsd_port_speedDuplex_get(uint32_t port, uint32_t* speed, uint32_t* duplex) { return request_chip_port(3528, port, speed, duplex); }
int rsd_port_flowCtrl_get(uint32_t port, uint32_t* enable)                     { return request_chip_port(3529, port, enable); }
int rsd_port_flowCtrlStatus_get(uint32_t port, uint32_t* status)               { return request_chip_port(3530, port, status); }
int rsd_port_autoNegoAbility_get(uint32_t port, uint32_t* ability)             { return request_chip_port(3532, port, ability); }
int rsd_port_forceModeAbility_get(uint32_t port, uint32_t* speed, uint32_t* duplex) { return request_chip_port(3533, port, speed, duplex); }
int rsd_port_flowCtrlAuto_get(uint32_t port, uint32_t* enable)                 { return request_chip_port(3534, port, enable); }
int rsd_port_errDisable_get(uint32_t port, uint32_t* cause)                    { return request_chip_port(3535, port, cause); }
int rsd_port_errDisableRecovery_get(uint32_t cause, uint32_t* enable)          { return request_chip(3536, cause, enable); }
int rsd_port_errDisableTime_get(uint32_t* seconds)                             { return request_chip(3537, seconds); }
int rsd_port_errDisableCurrTime_set(uint32_t port, uint32_t seconds)           { return request_chip_port(3538, port, seconds); }
int rsd_port_errDisableCurrTime_get(uint32_t port, uint32_t* seconds)          { return request_chip_port(3539, port, seconds); }
int rsd_port_linkChangeTime_get(uint32_t port, uint32_t* hundredths)           { return request_chip_port(3540, port, hundredths); }
int rsd_port_logic2Physic_get(uint32_t port, uint32_t* physical)               { return request_chip_port(3544, port, physical); }
int rsd_port_physic2Logic_get(uint32_t physical, uint32_t* port)               { return request_chip(3545, physical, port); }
int rsd_port_10GMedia_get(uint32_t port, uint32_t* media)                      { return request_chip_port(3546, port, media); }
// clang-format on
