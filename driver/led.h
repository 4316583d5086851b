// LEDs.
// Commands from 2304 on.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// LEDs of a port: 0 dark, 1 showing.
int rsd_led_portEnable_set(uint32_t port, uint32_t enable);
int rsd_led_portEnable_get(uint32_t port, uint32_t* enable);

// All LEDs of the front: 0 dark, 1 showing.
int rsd_led_switchEnable_set(uint32_t enable);

// LEDs under control of software rather than of the chip: 0 no, 1 yes.
int rsd_led_swctrl_set(uint32_t enable);

// The system LED: 0 off, 1 on, 2 blinking.
int rsd_led_systemCtrl_set(uint32_t mode);

#ifdef __cplusplus
}
#endif
