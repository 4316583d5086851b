// The command line of the lab cloud.
#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "lab/policy.h"
#include "lab/verify.h"

namespace lab {

struct Options {
    std::filesystem::path data;
    std::vector<int> https_ports; // 0: any free port
    int http_port = 0;
    std::vector<int> keeper_ports;
    int admin_port = 0;
    std::vector<std::pair<std::string, Account>> accounts; // by MAC
    Policy policy;
    bool quiet = false;
    bool help = false;
    bool version = false;
};

// Throws std::invalid_argument with a sentence for the user.
Options parse_options(const std::vector<std::string>& arguments);

extern const char usage[];

} // namespace lab
