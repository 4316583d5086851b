// Ports: administrative state, media, negotiation, flow control, error-disable and link.
// Commands from 3456 on.
//
// `port` is a zero-based logical port; a port that the switch does not have is answered with 30.
#pragma once

#include <stdint.h>

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { PORT_DESCRIPTION_SIZE = 256 };

// Administrative state: 0 down, 1 up. _set answers 19 for anything else.
int rsd_port_enable_set(uint32_t port, uint32_t enable);
int rsd_port_enable_get(uint32_t port, uint32_t* enable);

// Reception alone: 0 off, 1 on.
int rsd_port_rxEnable_set(uint32_t port, uint32_t enable);

// Medium that a combo port prefers: 0 copper, 1 fibre.
int rsd_port_comboMediaPrefer_set(uint32_t port, uint32_t media);
int rsd_port_comboMediaPrefer_get(uint32_t port, uint32_t* media);

// Medium of a port: 0 copper, 1 fibre.
int rsd_port_media_set(uint32_t port, uint32_t media);
int rsd_port_media_get(uint32_t port, uint32_t* media);

// Medium of a 10-gigabit port, the driver's cable code.
int rsd_port_10GMedia_set(uint32_t port, uint32_t media);
int rsd_port_10GMedia_get(uint32_t port, uint32_t* media);

// Medium over which the present link runs: 0 copper, 1 fibre.
int rsd_port_linkMedia_get(uint32_t port, uint32_t* media);

// Isolation from the other protected ports: 0 off, 1 on.
int rsd_port_protected_set(uint32_t port, uint32_t enable);

// Auto-negotiation: 0 off, 1 on.
int rsd_port_autoNegoEnable_set(uint32_t port, uint32_t enable);

// Advertised abilities, one bit an ability.
int rsd_port_autoNegoAbility_set(uint32_t port, uint32_t ability);
int rsd_port_autoNegoAbility_get(uint32_t port, uint32_t* ability);

// Forced speed (0 10M, 1 100M, 2 1000M, the driver's codes above) and duplex (0 half, 1 full).
int rsd_port_forceModeAbility_set(uint32_t port, uint32_t speed, uint32_t duplex);
int rsd_port_forceModeAbility_get(uint32_t port, uint32_t* speed, uint32_t* duplex);

// Speed and duplex of the present link, in the same codes.
int rsd_port_speedDuplex_get(uint32_t port, uint32_t* speed, uint32_t* duplex);

// Link of a fibre port forced up while it negotiates: 0 off, 1 on.
int rsd_port_fiberNwayForceLinkEnable_set(uint32_t port, uint32_t enable);

// Flow control asked for (0 off, 1 on), and what the link partners agreed on.
int rsd_port_flowCtrl_set(uint32_t port, uint32_t enable);
int rsd_port_flowCtrl_get(uint32_t port, uint32_t* enable);
int rsd_port_flowCtrlStatus_get(uint32_t port, uint32_t* status);

// Flow control left to negotiation: 0 no, 1 yes.
int rsd_port_flowCtrlAuto_set(uint32_t port, uint32_t enable);
int rsd_port_flowCtrlAuto_get(uint32_t port, uint32_t* enable);

// Back pressure on half-duplex links: 0 off, 1 on.
int rsd_port_backpressureEnable_set(uint32_t port, uint32_t enable);

// Description, NUL-terminated; what exceeds PORT_DESCRIPTION_SIZE with its terminator is cut.
int rsd_port_descp_set(uint32_t port, const char* text);

// Cause for which a port was shut by the switch itself; 0 when it was not.
int rsd_port_errDisable_get(uint32_t port, uint32_t* cause);

// Ports shut for `cause` come back by themselves: 0 no, 1 yes.
int rsd_port_errDisableRecovery_set(uint32_t cause, uint32_t enable);
int rsd_port_errDisableRecovery_get(uint32_t cause, uint32_t* enable);

// Time until a shut port comes back, in seconds, and what is left of it on a port.
int rsd_port_errDisableTime_set(uint32_t seconds);
int rsd_port_errDisableTime_get(uint32_t* seconds);
int rsd_port_errDisableCurrTime_set(uint32_t port, uint32_t seconds);
int rsd_port_errDisableCurrTime_get(uint32_t port, uint32_t* seconds);

// Link of a port: 0 down, 1 up; and the set of all ports with link.
int rsd_port_linkStatus_get(uint32_t port, uint32_t* up);
int rsd_port_allLinkStatus_get(PortBitmap* ports);

// Uptime at the last change of the link, in hundredths of a second.
int rsd_port_linkChangeTime_get(uint32_t port, uint32_t* hundredths);

// Numbering: the chip's own (physical) port behind a logical one, and back.
int rsd_port_logic2Physic_get(uint32_t port, uint32_t* physical);
int rsd_port_physic2Logic_get(uint32_t physical, uint32_t* port);

#ifdef __cplusplus
}
#endif
