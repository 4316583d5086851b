// LEDs.
#include "driver/led.h"

#include "driver/shapes.h"

// clang-format off
int rsd_led_portEnable_set(uint32_t port, uint32_t enable) { return request_chip_port(2305, port, enable); }
int rsd_led_switchEnable_set(uint32_t enable)              { return request_chip(2306, enable); }
int rsd_led_swctrl_set(uint32_t enable)                    { return request_chip(2307, enable); }
int rsd_led_systemCtrl_set(uint32_t mode)                  { return request_chip(2308, mode); }

int rsd_led_portEnable_get(uint32_t port, uint32_t* enable) { return request_chip_port(2369, port, enable); }
// clang-format on
