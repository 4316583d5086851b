// Signals are waited for by the main thread alone; everything else runs in those of the listeners.
#include "lab/program.h"

#include <sys/resource.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <utility>

#include "version/version.h"

namespace lab {

namespace {

// Blocked before any thread starts, so that only the wait below takes them.
sigset_t stop_signals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

// A connection is a descriptor, and a listener takes hundreds.
void raise_descriptor_limit() {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

void run(const Options& options, Between between) {
    raise_descriptor_limit();
    const sigset_t signals = stop_signals();
    Cloud cloud(options, std::move(between));
    cloud.start();
    std::printf("%s\n", cloud.ready_line().c_str());
    std::fflush(stdout);
    int signal = 0;
    sigwait(&signals, &signal);
    cloud.stop();
}

} // namespace

int run_program(const std::vector<std::string>& arguments, Between between) {
    try {
        const auto options = parse_options(arguments);
        if (options.help)
            std::printf("%s", usage);
        else if (options.version)
            std::puts("lab_cloud " VX_VERSION);
        else
            run(options, std::move(between));
        return 0;
    } catch (const std::invalid_argument& wrong) {
        std::fprintf(stderr, "lab_cloud: %s\n%s", wrong.what(), usage);
        return 2;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "lab_cloud: %s\n", failure.what());
        return 1;
    }
}

} // namespace lab
