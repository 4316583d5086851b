// Commands, and what they inherit.
#include "base/command.h"

#include <signal.h>

#include "tests/support/on_board.h"

namespace {

constexpr const char* ping = "ping -c 1 -s 56 -i 1 silent.example > /tmp/out";

int put_off;
int handled;

void handle(int) {
    if (is_put_off_by_command(pthread_self()))
        ++put_off;
    else
        ++handled;
}

bool is_blocked() {
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    return sigismember(&blocked, SIGUSR1) == 1;
}

// SIGUSR1 is blocked, as in every thread of the agent, and the simulated ping sleeps.
class Command : public OnBoard {
  protected:
    Command() {
        device.network.hosts.push_back({"silent.example", 0x0A000001, 0, 1});
        put_off = handled = 0;
        signal(SIGUSR1, handle);
        change_mask(SIG_BLOCK);
    }
    ~Command() override {
        change_mask(SIG_UNBLOCK);
        signal(SIGUSR1, SIG_DFL);
    }
    static void change_mask(int how) {
        sigset_t request;
        sigemptyset(&request);
        sigaddset(&request, SIGUSR1);
        pthread_sigmask(how, &request, nullptr);
    }
};

} // namespace

TEST_F(Command, runs_the_line_and_returns_its_status) {
    EXPECT_EQ(run_command("cat /no/such/file > /tmp/out"), 256);
    EXPECT_EQ(trace(), (Lines{"system(\"cat /no/such/file > /tmp/out\") = 256"}));
    EXPECT_TRUE(is_blocked());
}

TEST_F(Command, inherits_no_blocked_signal) {
    bool blocked = true;
    board.clock.on_sleep = [&](unsigned) {
        blocked = is_blocked();
        return 0u;
    };
    run_command(ping);
    EXPECT_FALSE(blocked);
    EXPECT_TRUE(is_blocked());
}

TEST_F(Command, signal_amidst_it_is_put_off_and_comes_again_once) {
    board.clock.on_sleep = [](unsigned) {
        raise(SIGUSR1);
        return 0u;
    };
    run_command(ping);
    EXPECT_EQ(put_off, 1);
    EXPECT_EQ(handled, 0);
    change_mask(SIG_UNBLOCK);
    EXPECT_EQ(handled, 1);
    EXPECT_FALSE(is_put_off_by_command(pthread_self()));
}

TEST_F(Command, no_signal_comes_again_that_did_not_come) {
    run_command(ping);
    change_mask(SIG_UNBLOCK);
    EXPECT_EQ(put_off + handled, 0);
}
