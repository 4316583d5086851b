// lab_cloud: a cloud to which a switch can check in on a workstation.
#include <sys/resource.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>

#include "lab/cloud.h"
#include "version/version.h"

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

void run(const lab::Options& options) {
    raise_descriptor_limit();
    const sigset_t signals = stop_signals();
    lab::Cloud cloud(options);
    cloud.start();
    std::printf("%s\n", cloud.ready_line().c_str());
    std::fflush(stdout);
    int signal = 0;
    sigwait(&signals, &signal);
    cloud.stop();
}

} // namespace

int main(int count, char** arguments) {
    try {
        const auto options = lab::parse_options({arguments + 1, arguments + count});
        if (options.help)
            std::printf("%s", lab::usage);
        else if (options.version)
            std::puts("lab_cloud " VX_VERSION);
        else
            run(options);
        return 0;
    } catch (const std::invalid_argument& wrong) {
        std::fprintf(stderr, "lab_cloud: %s\n%s", wrong.what(), lab::usage);
        return 2;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "lab_cloud: %s\n", failure.what());
        return 1;
    }
}
