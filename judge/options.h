// The command line of platform_judge.
#pragma once

#include <string>
#include <vector>

namespace judge {

struct Options {
    bool change = false;       // setters, too
    bool restart_test = false; // what is kept over a restart of the switch
    bool restore = false;      // only put back what an interrupted run has left
    // Each what cannot be put back, and is done only when asked for.
    bool unread_settings = false;
    bool poe_reset = false;
    bool clear_counters = false;
    bool cable_test = false;
    bool services = false;
    bool static_macs = false;
    bool factory_defaults = false;
    bool kill = false;
    bool reboot = false;
    std::string firmware; // a URL

    std::vector<std::string> families; // none: all
    std::string journal = "platform_judge.journal";
    std::string json, junit, summary; // files to write
    int timeout = 30;                 // seconds that a call may take
    bool verbose = false;

    // Set by the judge itself, for the process that makes the calls.
    int worker = -1; // where its events go
    int shared = -1; // the memory that it shares
    int from = 0;    // the step to begin with

    bool wants(const std::string& family) const;
};

// Reads the command line. False, with a message for the user in `message`, for one that is wrong or
// asks for help; `status` is then what to exit with.
bool parse(int argc, char** argv, Options& options, std::string& message, int& status);

} // namespace judge
