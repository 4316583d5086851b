// The signal mask around system(), which itself passes the caller's on to the child.
#include "base/command.h"

#include <signal.h>
#include <stdlib.h>

namespace {

struct RunningCommand {
    volatile sig_atomic_t is_running;
    volatile sig_atomic_t is_put_off;
    pthread_t receiver; // of the signal that was put off
};

// A signal's handler uses it, so it has its place in each thread from the thread's start.
__thread RunningCommand command __attribute__((tls_model("initial-exec")));

void let_signal_in(sigset_t* before) {
    sigset_t requests;
    sigemptyset(&requests);
    sigaddset(&requests, SIGUSR1);
    pthread_sigmask(SIG_UNBLOCK, &requests, before);
}

void send_signal_again() {
    command.is_put_off = 0;
    pthread_kill(command.receiver, SIGUSR1);
}

} // namespace

int run_command(const char* line) {
    sigset_t before;
    command.is_running = 1;
    let_signal_in(&before);
    int result = system(line); // NOLINT(cert-env33-c): the platform has its services as commands
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    command.is_running = 0;
    if (command.is_put_off)
        send_signal_again();
    return result;
}

bool is_put_off_by_command(pthread_t receiver) {
    if (!command.is_running)
        return false;
    command.receiver = receiver;
    command.is_put_off = 1;
    return true;
}
