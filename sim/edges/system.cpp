// Time and what else the agent asks of Linux: sleeps, the calendar, the shell, the resolver.
#include <pthread.h>
#include <signal.h>

#include <cerrno>
#include <ctime>

#include "sim/edges/shell.h"
#include "sim/library/board.h"
#include "sim/library/call.h"

namespace sim {

namespace {

// Keeps local requests off this thread, but for the wait that is given `mask`: the handler makes
// platform calls of its own, and must not find this thread in the middle of writing one down.
class RequestsHeldOff {
  public:
    RequestsHeldOff() {
        sigset_t requests;
        sigemptyset(&requests);
        sigaddset(&requests, SIGUSR1);
        pthread_sigmask(SIG_BLOCK, &requests, &mask_);
    }
    ~RequestsHeldOff() { pthread_sigmask(SIG_SETMASK, &mask_, nullptr); }
    RequestsHeldOff(const RequestsHeldOff&) = delete;
    RequestsHeldOff& operator=(const RequestsHeldOff&) = delete;

    const sigset_t* mask() const { return &mask_; } // as it was

  private:
    sigset_t mask_;
};

// A thread may be cancelled while it sleeps, but not while the sleep is written down; nor in
// virtual time, where a sleep is all bookkeeping.
unsigned traced_sleep(unsigned seconds) {
    RequestsHeldOff held;
    int cancellable;
    const bool paced = !board().clock.is_virtual();
    unsigned left = paced ? board().clock.sleep(seconds, held.mask()) : 0;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancellable);
    if (!paced)
        left = board().clock.sleep(seconds, held.mask());
    board().trace.add_call("sleep", left, seconds);
    pthread_setcancelstate(cancellable, nullptr);
    return left;
}

int set_clock(clockid_t clock, const std::timespec& now) {
    const bool set = clock == CLOCK_REALTIME && board().clock.set_calendar(now);
    board().trace.add_call("clock_settime", set ? 0 : -1, now.tv_sec);
    if (set)
        return 0;
    errno = EINVAL;
    return -1;
}

} // namespace

} // namespace sim

using sim::board;

extern "C" {

int __wrap_system(const char* command) {
    int result = sim::run_command(command);
    board().trace.add_call("system", result, command);
    board().carry_out_orders();
    return result;
}

unsigned __wrap_sleep(unsigned seconds) { return sim::traced_sleep(seconds); }

time_t __wrap_time(time_t* now) {
    time_t calendar = board().clock.calendar();
    if (now)
        *now = calendar;
    return calendar;
}
time_t __wrap___time64(time_t* now) { return __wrap_time(now); }

int __wrap_clock_settime(clockid_t clock, const struct timespec* now) {
    return sim::set_clock(clock, *now);
}
int __wrap___clock_settime64(clockid_t clock, const struct timespec* now) {
    return sim::set_clock(clock, *now);
}

int __wrap___res_init() {
    board().trace.add_call("__res_init", 0);
    return 0;
}
}
