// What an exchange comes to on each bad network: measured with the agent in this process, a lab
// cloud over the loopback interface, and a clock that only sleeps and time-outs move.
#pragma once

#include "tests/hostile/network/markdown.h"

Table measure_checkins();
Table measure_time();
Table measure_keeper();
Table measure_firmware();
