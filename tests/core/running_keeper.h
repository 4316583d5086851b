// The connection keeper's thread as long as a test lives.
#pragma once

#include <signal.h>

#include "core/keeper.h"
#include "tests/core/on_cloud.h"

// Must be destroyed before the board.
struct RunningKeeper {
    RunningKeeper() = default;
    ~RunningKeeper() { stop(); }
    RunningKeeper(const RunningKeeper&) = delete;
    RunningKeeper& operator=(const RunningKeeper&) = delete;

    void start() { start_keeper(&thread); }
    void stop() {
        while (!stop_keeper(&thread)) {}
    }
    void restart() {
        stop();
        start();
    }

    KeeperThread thread{};
};

// A service that holds the request open, as it does while there is nothing to do.
inline HttpAnswer silence() {
    HttpAnswer answer;
    answer.silent = true;
    return answer;
}

// Undoes block_local_requests for the tests that follow; what waits is dropped.
inline void let_signals_through() {
    signal(SIGUSR1, SIG_IGN);
    sigset_t requests;
    sigemptyset(&requests);
    sigaddset(&requests, SIGUSR1);
    pthread_sigmask(SIG_UNBLOCK, &requests, nullptr);
    signal(SIGUSR1, SIG_DFL);
}
