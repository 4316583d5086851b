// The cloud agent's settings as the switch stores them: at once and atomically, outside the startup
// configuration.
#pragma once

#include <cstdint>
#include <string>

#include "sim/instruments/fields.h"

namespace sim {

constexpr std::size_t longest_credential = 127; // as stored

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

// The twelve hexadecimal digits behind a stored credential, by which it belongs to this device.
std::string mac_suffix(const std::uint8_t (&mac)[6]);

} // namespace sim
