// The agent's process and its supervisor. A new agent begins as a copy of the supervisor, which has
// done nothing yet, with local requests blocked: one that comes before the agent is ready waits.
#include "sim/edges/supervisor.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace sim {

namespace {

constexpr int restart_status = 86; // the agent itself never ends
constexpr int passed_on[] = {SIGUSR1, SIGTERM, SIGINT, SIGHUP};

sigset_t set_of(std::initializer_list<int> signals) {
    sigset_t set;
    sigemptyset(&set);
    for (int number : signals)
        sigaddset(&set, number);
    return set;
}

sigset_t watched_signals() {
    sigset_t set = set_of({SIGCHLD});
    for (int number : passed_on)
        sigaddset(&set, number);
    return set;
}

[[noreturn]] void become_agent(pid_t supervisor, const std::function<int()>& agent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != supervisor)
        std::_Exit(EXIT_FAILURE);
    const sigset_t requests = set_of({SIGUSR1});
    pthread_sigmask(SIG_SETMASK, &requests, nullptr);
    std::exit(agent());
}

pid_t start_agent(const std::function<int()>& agent) {
    const pid_t supervisor = getpid();
    const pid_t child = fork();
    if (child == 0)
        become_agent(supervisor, agent);
    if (child < 0)
        std::perror("agent");
    return child;
}

// Passes signals on until the agent has ended; returns how it did.
int watch(pid_t agent, const sigset_t& watched) {
    for (;;) {
        int status = 0;
        const int number = sigwaitinfo(&watched, nullptr);
        if (number == SIGCHLD && waitpid(agent, &status, WNOHANG) == agent)
            return status;
        if (number > 0 && number != SIGCHLD)
            kill(agent, number);
    }
}

[[noreturn]] void end_by(int number) {
    const sigset_t none = set_of({});
    signal(number, SIG_DFL);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
    raise(number);
    std::_Exit(128 + number);
}

} // namespace

int run_agent(const std::function<int()>& agent) {
    const sigset_t watched = watched_signals();
    sigset_t before;
    pthread_sigmask(SIG_BLOCK, &watched, &before);
    int status = 0;
    do {
        const pid_t child = start_agent(agent);
        if (child < 0)
            return EXIT_FAILURE;
        status = watch(child, watched);
    } while (WIFEXITED(status) && WEXITSTATUS(status) == restart_status);
    if (WIFSIGNALED(status))
        end_by(WTERMSIG(status));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return WEXITSTATUS(status);
}

void end_for_restart() { std::_Exit(restart_status); }

} // namespace sim
