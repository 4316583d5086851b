// Platform library: ports - administrative state, link, media, speed and duplex, flow control,
// isolation, port security.
//
// `port` is a zero-based logical port: copper ports, two fibre ports, eight aggregation groups.
// Flags are 0 or 1. Calls return 0 or a platform code; a failing one changes neither the switch nor
// its outputs. Calls whose name ends in _ret return the value itself and cannot fail.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Speed and duplex as they are configured. Speed values: 0 10M, 1 100M, 2 1000M, 3 100M and 5 1000M
// as a fibre module names them, 4 10G. Duplex values: 0 full, 1 half.
typedef struct PortSpeed {
    uint32_t automatic; // 1: negotiated
    uint32_t speed;
} PortSpeed;

typedef struct PortDuplex {
    uint32_t automatic; // 1: negotiated
    uint32_t duplex;
} PortDuplex;

// What a running link runs at, in another encoding than the configured one. Speed values: 0 10M,
// 1 100M, 2 1000M, 3 100M and 4 1000M of a fibre module, 5 10G. Duplex values: 0 half, 1 full.
typedef struct PortLinkMode {
    uint32_t speed;
    uint32_t duplex;
} PortLinkMode;

enum { PORT_MEDIA_COPPER = 0, PORT_MEDIA_FIBRE = 1 };

// What a 10-gigabit port's module is driven as.
enum { PORT_10G_MEDIA_10G = 1, PORT_10G_MEDIA_1000M = 2 };

// Administrative state.
int sal_port_enable_get(int port, uint32_t* enable);
int sal_port_enable_set(int port, int enable);

// 1 while the port has link.
int sal_port_linkStatus_get(int port, uint32_t* status);

int sal_port_speed_get(int port, PortSpeed* speed);
int sal_port_duplex_get(int port, PortDuplex* duplex);

// Refused where the port's medium does not have that speed. The value beside a set automatic flag
// is kept, and not used.
int sal_port_speed_set(int port, int automatic, int speed);
int sal_port_duplex_set(int port, int automatic, int duplex);

// Of the running link; what it was last while there is none.
int sal_port_speedDuplex_get(int port, PortLinkMode* mode);

// Flow control as configured, and as the link partners agreed.
int sal_port_flowCtrl_get(int port, uint32_t* configured, uint32_t* running);
int sal_port_flowCtrl_set(int port, int enable);

// Isolation: protected ports do not reach each other.
int sal_port_protected_get(int port, uint32_t* enable);
int sal_port_protected_set(int port, int enable);

// Port security: 1 while the addresses of a port are limited.
int sal_port_securityEnable_get(int port, uint32_t* enable);

// PORT_MEDIA_COPPER or PORT_MEDIA_FIBRE; an aggregation group is copper.
int sys_port_lPortMedia_ret(int port);

// 1 for a port that can run at 10 gigabit.
int sys_port_isLPort10G_ret(int port);

// Brings the module of a 10-gigabit port to its initial state.
int sal_10g_port_init(int port);

// Drives a 10-gigabit port's module as PORT_10G_MEDIA_...; refused on other ports.
int sal_port_10g_media_set(int port, int media);

// Link of a fibre port forced up while it negotiates. Refused on copper ports.
int sal_port_port_fiberNwayForceLinkEnable_set(int port, int enable);

// A port's name as the switch shows it. `style` 2 is the short form. The buffer holds 32 bytes.
int sys_port_lPort2uStr(int port, int style, char* text);

#ifdef __cplusplus
}
#endif
