// The agent on a simulated switch, as one program. The command line puts the board together before
// the agent's own main runs:
//
//     vx_cloud_sim --root DIR [--scenario FILE] [--speed N] [--trace FILE] [--fault FAULT]...
#include <getopt.h>
#include <linux/close_range.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "sim/instruments/scenario.h"
#include "sim/library/board.h"

extern "C" int __real_main(int argc, char** argv);

namespace {

constexpr const char* usage =
    "usage: vx_cloud_sim --root DIR [--scenario FILE] [--speed N] [--trace FILE] "
    "[--fault FAULT]...\n"
    "  --root DIR       the board's files: configuration, console, certificates, /tmp\n"
    "  --scenario FILE  the switch to simulate, when DIR does not hold one yet\n"
    "  --speed N        simulated seconds per second; 1 when not given\n"
    "  --trace FILE     append every platform call, sleep, command and transfer to FILE\n"
    "  --fault FAULT    EDGE[:NAME][#N[+]][=CODE], EDGE one of platform, ioctl, allocation, file,\n"
    "                   transfer: fail the N-th call, or with + every one from there on\n";

struct Settings {
    std::string root;
    std::string scenario;
    double speed = 1;
    std::string trace;
    std::vector<sim::Fault> faults;
};

Settings parse(int argc, char** argv) {
    const option options[] = {
        {"root", required_argument, nullptr, 'r'},  {"scenario", required_argument, nullptr, 's'},
        {"speed", required_argument, nullptr, 'x'}, {"trace", required_argument, nullptr, 't'},
        {"fault", required_argument, nullptr, 'f'}, {}};
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
        case 'f':
            settings.faults.push_back(sim::parse_fault(optarg));
            break;
        default:
            throw std::invalid_argument(usage);
        }
    }
    if (settings.root.empty() || optind != argc || settings.speed <= 0)
        throw std::invalid_argument(usage);
    return settings;
}

// A restart of the agent is a new process image with the same process id, as a supervisor that
// starts it again at once would have it.
void replace_process(char** argv) {
    close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execv("/proc/self/exe", argv);
    std::perror("restart");
    std::_Exit(EXIT_FAILURE);
}

} // namespace

extern "C" int __wrap_main(int argc, char** argv) {
    try {
        Settings settings = parse(argc, argv);
        sim::Board board(settings.root, settings.scenario);
        board.clock.pace(settings.speed);
        board.start_agent_again = [argv] { replace_process(argv); };
        if (!settings.trace.empty())
            board.trace.copy_to(settings.trace);
        for (const sim::Fault& fault : settings.faults)
            board.faults.plan(fault);
        return __real_main(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vx_cloud_sim: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
