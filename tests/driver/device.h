// A stand-in for the driver's device node: "/dev/ski" opens the null device, and its requests are
// answered by the test. Every thread has a device of its own; descriptors are real.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct Device {
    bool missing = false;
    bool quiet = false; // nothing is noted
    std::function<int(std::uint32_t command, void* record)> answer;

    std::vector<std::string> events; // "open", "ioctl", "close", as they came
    int open_flags = 0;
    std::uint32_t command = 0; // of the last request

    void forget() { events.clear(); }
};

Device& device();
int open_descriptors(); // of the process
