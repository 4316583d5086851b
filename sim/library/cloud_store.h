// The cloud agent's settings as the switch stores them: at once and atomically, outside the startup
// configuration.
#pragma once

#include <cstdint>
#include <string>

#include "sim/instruments/fields.h"

namespace sim {

struct CloudStore {
    std::string checkin_host = "localhost:8443";
    std::string fallback_host = "localhost:8443";
    std::string connkeeper_host = "localhost:8090";
    std::int32_t checkin_interval = 300; // seconds
    std::string key;                     // as stored: with the device's MAC behind it
    std::string secret;
    std::int32_t seqno = 1;
    bool debug = false;

    void fields(Fields& f);
};

} // namespace sim
