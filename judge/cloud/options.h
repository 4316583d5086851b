// The command line of cloud_judge.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "judge/cloud/checkin.h"
#include "judge/cloud/host.h"

namespace judge::cloud {

struct Options {
    Host checkin, fallback, time, keeper; // no name: there is none
    Account account;
    std::string ca;     // file or folder; empty: the machine's own
    std::string report; // file with a report to send; empty: the judge's own
    std::int64_t number = 1;
    std::int64_t window = 0; // seconds a timestamp may lie off; 0: the cloud has not said
    std::string queue_settings, push_action; // commands
    bool ask = false;                        // a person queues and pushes
    double wait = 10;                        // seconds until what was queued comes
    double redeliver = 30;                   // seconds until it comes again
    double hold = 5;                         // seconds that a long-poll must be held
    double timeout = 30;                     // seconds for an answer
    double patience = 0;                     // seconds until a silent sender is ended; 0: not asked

    std::vector<std::string> families; // none: all
    std::string json, junit, summary;  // files to write
    bool strict = false;               // shoulds convict, too
    bool verbose = false;
    std::string command; // as it was given, without the secret

    bool wants(const std::string& family) const;
};

struct WrongCommandLine : std::runtime_error {
    using std::runtime_error::runtime_error;
};

extern const char usage[];

// Throws WrongCommandLine. `families` are those that there are. False: --help or --version was
// asked for and answered.
bool parse_options(
    int count, char** arguments, const std::vector<std::string>& families, Options& options);

} // namespace judge::cloud
