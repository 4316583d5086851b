// LEDs.
#include "driver/led.h"

#include "driver/request.h"

// clang-format off
int rsd_led_portEnable_set(uint32_t port, uint32_t enable) { return chip_port_request(2305, port, enable); }
int rsd_led_switchEnable_set(uint32_t enable)              { return chip_request(2306, enable); }
int rsd_led_swctrl_set(uint32_t enable)                    { return chip_request(2307, enable); }
int rsd_led_systemCtrl_set(uint32_t mode)                  { return chip_request(2308, mode); }

int rsd_led_portEnable_get(uint32_t port, uint32_t* enable) { return chip_port_request(2369, port, enable); }
// clang-format on
