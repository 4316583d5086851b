// The agent on a simulated switch, as one program. The command line puts the board together before
// the agent's own main runs:
//
//     vx_cloud_sim --root DIR [--scenario FILE] [--speed N] [--trace FILE]
//                  [--transfers FILE] [--fault FAULT]...
#include <getopt.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "sim/edges/supervisor.h"
#include "sim/instruments/scenario.h"
#include "sim/library/board.h"
#include "version/version.h"

extern "C" int __real_main(int argc, char** argv);

namespace {

constexpr const char* usage =
    "usage: vx_cloud_sim --root DIR [--scenario FILE] [--speed N] [--trace FILE] "
    "[--transfers FILE] [--fault FAULT]...\n"
    "  --root DIR       the board's files: configuration, console, certificates, /tmp\n"
    "  --scenario FILE  the switch to simulate, when DIR does not hold one yet\n"
    "  --speed N        simulated seconds per second; 1 when not given\n"
    "  --trace FILE     append every platform call, sleep, command and transfer to FILE\n"
    "  --transfers FILE append a line of JSON for every transfer that ended to FILE\n"
    "  --fault FAULT    EDGE[:NAME][#N[+]][=CODE], EDGE one of platform, ioctl, allocation, file,\n"
    "                   transfer: fail the N-th call, or with + every one from there on;\n"
    "                   =off: the power goes there\n"
    "  --version\n"
    "  --help\n";

struct Settings {
    std::string root;
    std::string scenario;
    double speed = 1;
    std::string trace;
    std::string transfers;
    std::vector<sim::Fault> faults;
    const char* print = nullptr; // a text that is asked for instead of a switch
};

Settings parse(int argc, char** argv) {
    const option options[] = {
        {"root", required_argument, nullptr, 'r'},
        {"scenario", required_argument, nullptr, 's'},
        {"speed", required_argument, nullptr, 'x'},
        {"trace", required_argument, nullptr, 't'},
        {"fault", required_argument, nullptr, 'f'},
        {"transfers", required_argument, nullptr, 'c'},
        {"version", no_argument, nullptr, 'v'},
        {"help", no_argument, nullptr, 'h'},
        {}};
    Settings settings;
    for (int choice; (choice = getopt_long(argc, argv, "", options, nullptr)) != -1;) {
        switch (choice) {
        case 'r':
            settings.root = optarg;
            break;
        case 's':
            settings.scenario = optarg;
            break;
        case 'x':
            settings.speed = std::atof(optarg);
            break;
        case 't':
            settings.trace = optarg;
            break;
        case 'c':
            settings.transfers = optarg;
            break;
        case 'f':
            settings.faults.push_back(sim::parse_fault(optarg));
            break;
        case 'v':
            settings.print = "vx_cloud_sim " VX_VERSION "\n";
            return settings;
        case 'h':
            settings.print = usage;
            return settings;
        default:
            throw std::invalid_argument(usage);
        }
    }
    if (settings.root.empty() || optind != argc || settings.speed <= 0)
        throw std::invalid_argument(usage);
    return settings;
}

void tell(const std::string& line) { std::fprintf(stderr, "vx_cloud_sim: %s\n", line.c_str()); }

int fail(const std::exception& error) {
    tell(error.what());
    return EXIT_FAILURE;
}

// The agent's threads make transfers at the same time.
std::function<void(const std::string&)> append_to(const std::string& file) {
    struct Log {
        std::mutex mutex;
        std::ofstream file;
    };
    auto log = std::make_shared<Log>();
    log->file.open(file, std::ios::app);
    return [log](const std::string& line) {
        const std::lock_guard lock(log->mutex);
        log->file << line << std::endl;
    };
}

// The agent's process: the board, and the agent on it.
int run_on_board(const Settings& settings, int argc, char** argv) try {
    sim::Board board(settings.root, settings.scenario);
    for (const std::string& remark : board.remarks)
        tell(remark);
    board.clock.pace(settings.speed);
    board.start_agent_again = sim::end_for_restart;
    board.tell = tell;
    if (!settings.trace.empty())
        board.trace.write_to(settings.trace);
    if (!settings.transfers.empty())
        board.tell_transfer = append_to(settings.transfers);
    for (const sim::Fault& fault : settings.faults)
        board.faults.plan(fault);
    return __real_main(argc, argv);
} catch (const std::exception& error) {
    return fail(error);
}

} // namespace

extern "C" int __wrap_main(int argc, char** argv) try {
    Settings settings = parse(argc, argv);
    if (settings.print) {
        std::fputs(settings.print, stdout);
        return EXIT_SUCCESS;
    }
    return sim::run_agent([&] { return run_on_board(settings, argc, argv); });
} catch (const std::exception& error) {
    return fail(error);
}
