// What the agent's calls become on the board: descriptors of the chip, sleeps, the clock,
// transfers, and the process itself.
#include <curl/curl.h>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <fstream>
#include <iterator>
#include <set>
#include <thread>

#include "sim/edges/supervisor.h"
#include "tests/support/http_stub.h"
#include "tests/support/on_board.h"

namespace {

// --- The chip's device node.

class DeviceNode : public OnBoard {};

TEST_F(DeviceNode, a_descriptor_is_no_file_of_the_workstation_and_is_free_again_when_closed) {
    const int first = open("/dev/ski", O_RDWR), second = open("/dev/ski", O_RDWR);
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    EXPECT_GE(static_cast<rlim_t>(first), files.rlim_max);
    EXPECT_NE(first, second);
    EXPECT_EQ(close(first), 0);
    errno = 0;
    EXPECT_EQ(close(first), -1);
    EXPECT_EQ(errno, EBADF);
    std::uint32_t words[4] = {};
    EXPECT_EQ(ioctl(first, 3521, words), -1);
    EXPECT_EQ(ioctl(second, 3521, words), 0);
    EXPECT_EQ(open("/dev/ski", O_RDWR), first);
    close(first);
    close(second);
}

TEST_F(DeviceNode, an_open_that_fails_leaves_nothing_behind) {
    board.device.driver_loaded = false;
    errno = 0;
    EXPECT_EQ(open("/dev/ski", O_RDWR), -1);
    EXPECT_EQ(errno, ENOENT);
    std::uint32_t words[4] = {};
    errno = 0;
    EXPECT_EQ(ioctl(-1, 3521, words), -1);
    EXPECT_EQ(errno, EBADF);
}

TEST_F(DeviceNode, a_null_record_is_refused_as_a_driver_refuses_it) {
    const int descriptor = open("/dev/ski", O_RDWR);
    errno = 0;
    EXPECT_EQ(ioctl(descriptor, 3521, nullptr), -1);
    EXPECT_EQ(errno, EFAULT);
    EXPECT_EQ(trace(), Lines{"ioctl(3521, 0, 0, 0, 0) = -1"});
    close(descriptor);
}

// --- Sleeps.

std::atomic<bool> trace_is_written;
std::atomic<int> requests_early, requests_late;

void count_request(int) { ++(trace_is_written ? requests_late : requests_early); }

// The trace goes to a pipe that nobody empties yet, so the sleep stays in the middle of its line.
TEST_F(OnBoard, a_local_request_does_not_come_while_the_trace_is_written) {
    trace_is_written = false;
    requests_early = requests_late = 0;
    const auto previous = signal(SIGUSR1, count_request);
    const std::string pipe = (folder.path() / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = ::openat(AT_FDCWD, pipe.c_str(), O_RDWR | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    const std::string filling(4096, 'x');
    while (::write(reader, filling.data(), filling.size()) > 0) {}
    board.trace.write_to(pipe);
    std::thread sender([&, sleeper = pthread_self()] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        pthread_kill(sleeper, SIGUSR1);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        trace_is_written = true;
        std::string emptied(1 << 20, ' ');
        EXPECT_GT(::read(reader, emptied.data(), emptied.size()), 0);
    });
    sleep(1);
    sender.join();
    EXPECT_EQ(requests_early, 0);
    EXPECT_EQ(requests_late, 1);
    ::close(reader);
    signal(SIGUSR1, previous);
}

TEST_F(OnBoard, a_local_request_ends_a_paced_sleep_which_tells_what_is_left) {
    trace_is_written = false;
    requests_early = requests_late = 0;
    board.clock.pace(100);
    const auto previous = signal(SIGUSR1, count_request);
    std::thread sender([sleeper = pthread_self()] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        pthread_kill(sleeper, SIGUSR1);
    });
    const unsigned left = sleep(3000);
    sender.join();
    EXPECT_EQ(requests_early, 1);
    EXPECT_GT(left, 0u);
    EXPECT_LT(left, 3000u);
    signal(SIGUSR1, previous);
}

// --- The clock.

TEST_F(OnBoard, only_the_calendar_is_set_and_only_to_a_date_that_linux_takes) {
    const timespec wrong{-5, 0}, right{1800000000, 0};
    errno = 0;
    EXPECT_EQ(clock_settime(CLOCK_REALTIME, &wrong), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(clock_settime(CLOCK_MONOTONIC, &right), -1);
    EXPECT_EQ(clock_settime(CLOCK_REALTIME, &right), 0);
    EXPECT_EQ(time(nullptr), 1800000000);
    EXPECT_EQ(
        trace(), (Lines{
                     "clock_settime(-5) = -1", "clock_settime(1800000000) = -1",
                     "clock_settime(1800000000) = 0"}));
}

// --- Failed check-ins.

std::size_t drop(char*, std::size_t size, std::size_t count, void*) { return size * count; }

class FailedCheckIn : public OnBoard {
  protected:
    FailedCheckIn() {
        board.tell = [this](const std::string& line) { told.push_back(line); };
    }
    void transfer(const std::string& url) {
        CURL* handle = curl_easy_init();
        curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, drop);
        curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
        curl_easy_setopt(handle, CURLOPT_PROXY, "");
        curl_easy_perform(handle);
        curl_easy_cleanup(handle);
    }
    std::string host() const { return "127.0.0.1:" + std::to_string(stub.port()); }

    HttpStub stub;
    Lines told;
};

TEST_F(FailedCheckIn, is_told_with_host_status_and_the_first_words_of_the_cloud) {
    stub.answer({403, "the signature\nis wrong\r\n" + std::string(500, '.')});
    transfer("http://" + host() + "/cloud-switch/02:1B:2C:3D:4E:5F/checkin");
    ASSERT_EQ(told.size(), 1u);
    EXPECT_TRUE(told[0].starts_with(
        "check-in at " + host() + ": status 403: the signature is wrong  ......"));
    EXPECT_LT(told[0].size(), 200u);
}

TEST_F(FailedCheckIn, is_told_with_the_reason_when_no_answer_came) {
    board.faults.plan({sim::Edge::transfer, "", 1, false, CURLE_COULDNT_CONNECT, 0});
    transfer("http://" + host() + "/cloud-switch/02:1B:2C:3D:4E:5F/checkin");
    EXPECT_EQ(
        told,
        Lines{"check-in at " + host() + ": " + curl_easy_strerror(CURLE_COULDNT_CONNECT) + " (7)"});
}

TEST_F(FailedCheckIn, is_not_told_of_what_went_well_or_is_no_check_in) {
    stub.answer({200, "{}"});
    transfer("http://" + host() + "/cloud-switch/02:1B:2C:3D:4E:5F/checkin");
    stub.answer({500, "no time"});
    transfer("http://" + host() + "/time");
    EXPECT_EQ(told, Lines{});
}

// --- Certificates.

TEST_F(OnBoard, a_bundle_that_libcurl_was_built_with_is_missing_unless_none_is_wanted) {
    HttpStub no_tls;
    const std::string url = "https://" + no_tls.host() + "/";
    CURL* handle = curl_easy_init();
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_PROXY, "");
    curl_easy_setopt(handle, CURLOPT_CAPATH, "/etc/ssl/certs/");
    EXPECT_EQ(curl_easy_perform(handle), CURLE_SSL_CACERT_BADFILE);
    curl_easy_setopt(handle, CURLOPT_CAINFO, static_cast<char*>(nullptr));
    EXPECT_EQ(curl_easy_perform(handle), CURLE_SSL_CONNECT_ERROR);
    curl_easy_cleanup(handle);
}

// --- The agent's process.

TEST(Supervisor, starts_a_new_process_after_each_that_ends_for_a_restart) {
    TempFolder folder;
    const auto ran = folder.path() / "ran";
    const int status = sim::run_agent([&] {
        std::ofstream(ran, std::ios::app) << getpid() << "\n";
        std::ifstream in(ran);
        const auto runs = std::count(std::istreambuf_iterator<char>(in), {}, '\n');
        if (runs < 3)
            sim::end_for_restart();
        return 5;
    });
    EXPECT_EQ(status, 5);
    std::ifstream in(ran);
    std::set<pid_t> processes{getpid()};
    for (pid_t process; in >> process;)
        processes.insert(process);
    EXPECT_EQ(processes.size(), 4u);
}

TEST(Supervisor, a_local_request_before_the_agent_is_ready_waits_for_it) {
    const int status = sim::run_agent([] {
        kill(getppid(), SIGUSR1); // as somebody who knows the switch's process only
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        requests_early = requests_late = 0;
        trace_is_written = true;
        signal(SIGUSR1, count_request);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        for (int turn = 0; turn < 1000 && requests_late == 0; ++turn)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return requests_late == 1 ? 5 : 6;
    });
    EXPECT_EQ(status, 5);
}

TEST(Supervisor, ends_by_the_signal_that_ended_the_agent) {
    const pid_t supervisor = fork();
    if (supervisor == 0) {
        sim::run_agent([] {
            kill(getppid(), SIGTERM);
            pause();
            return 0;
        });
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(supervisor, &status, 0), supervisor);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGTERM);
}

} // namespace
