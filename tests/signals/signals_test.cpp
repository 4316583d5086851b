// Local requests and restarts of the keeper come when they come. VX_REQUESTS and VX_RESTARTS say
// how many of them; a few unless given.
#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <random>
#include <thread>

#include "base/state.h"
#include "core/keeper.h"
#include "core/local_request.h"
#include "core/main_loop.h"
#include "tests/signals/holdings.h"
#include "tests/signals/restless_cloud.h"
#include "tests/support/name_service.h"
#include "tests/support/on_board.h"
#include "tests/support/temp_folder.h"

namespace {

using namespace std::chrono_literals;

constexpr unsigned seed = 20261122;
// Bytes of the heap that come and go: buffers of files, and one block of some 30 KB that is there
// or not, after 40 requests as after 500.
constexpr std::size_t noise = 40000;

int number_of(const char* variable, int otherwise) {
    const char* text = std::getenv(variable);
    return text ? std::atoi(text) : otherwise;
}

// An agent on a small switch, in this thread. No trace is kept, but it is written down.
class Restless : public testing::Test {
  protected:
    Restless() {
        reset_agent();
        board.trace.write_to(folder.path() / "trace.log");
        proto = "http";
        std::strcpy(macaddrstr, "02:1B:2C:3D:4E:5F");
        std::strcpy(Checkinstr, "/cloud-switch/02:1B:2C:3D:4E:5F/checkin");
        for (char* host : {CheckinHost, fallback_host})
            std::strcpy(host, cloud.host().c_str());
        std::strcpy(ConnectionKeeperHost, cloud.host("keeper.example").c_str());
        block_local_requests();
        signal(SIGUSR1, handleAction);
    }
    ~Restless() override {
        stop_listening();
        signal(SIGUSR1, SIG_IGN);
        take_local_requests();
        signal(SIGUSR1, SIG_DFL);
    }

    void stop_listening() {
        while (!stop_keeper(&keeper)) {}
    }

    std::filesystem::path scenario() {
        const auto file = folder.path() / "small.json";
        std::ofstream(file) << R"({"hardware": {"logical_ports": 12}})";
        return file;
    }

    // The lines of the trace that begin so.
    Lines traced(const std::string& begin) const {
        Lines found;
        std::ifstream in(folder.path() / "trace.log");
        for (std::string line; std::getline(in, line);)
            if (line.starts_with(begin))
                found.push_back(line);
        return found;
    }

    // What is held once nothing goes on.
    Holdings settle(std::size_t threads) {
        stop_listening();
        EXPECT_TRUE(wait_for_threads(threads));
        board.log = {}; // the board keeps the last few hundred lines
        return count_holdings();
    }

    static void expect_no_more(const Holdings& after, const Holdings& before) {
        EXPECT_LE(after.memory, before.memory + noise);
        EXPECT_EQ(after.descriptors, before.descriptors);
        EXPECT_EQ(after.threads, before.threads);
        std::printf(
            "heap %zu -> %zu bytes, descriptors %zu -> %zu, threads %zu -> %zu\n", before.memory,
            after.memory, before.descriptors, after.descriptors, before.threads, after.threads);
    }

    RestlessCloud cloud{seed};
    TempFolder folder;
    sim::Board board{folder.path() / "board", scenario()};
    NameService names{"keeper.example"};
    KeeperThread keeper{};
};

// Somebody else on the switch, who leaves requests, each with a frame size of its own, and is in a
// hurry: a request is left as soon as the one before it was taken.
class Requester {
  public:
    Requester(std::filesystem::path request, int first, int count)
        : request_(std::move(request)), thread_([=, this] { leave_all(first, count); }) {}
    ~Requester() { thread_.join(); }
    Requester(const Requester&) = delete;
    Requester& operator=(const Requester&) = delete;

    bool done() const { return done_; }
    static int frame_size(int number) { return 1522 + number % 7000; }

  private:
    void leave_all(int first, int count) {
        std::minstd_rand random(seed);
        for (int number = first; number < first + count; ++number) {
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 4000));
            leave(number);
            // One signal is enough; some send more, or send one for nothing.
            for (unsigned signals = 1 + random() % 3; signals; --signals)
                kill(getpid(), SIGUSR1);
            while (std::filesystem::exists(request_))
                std::this_thread::sleep_for(50us);
        }
        done_ = true;
    }

    void leave(int number) {
        const std::filesystem::path draft = request_.string() + ".new";
        std::ofstream(draft) << R"({"system": {"jumbo_frames": {"size": )" << frame_size(number)
                             << "}}}";
        std::filesystem::rename(draft, request_);
    }

    std::filesystem::path request_;
    std::atomic<bool> done_ = false;
    std::thread thread_;
};

TEST_F(Restless, each_local_request_is_applied_once_whenever_it_comes) {
    const int few = 20;
    const int count = number_of("VX_REQUESTS", 100);
    const std::size_t threads = count_holdings().threads;
    int turns = 0;
    auto take_requests = [&](int first, int number) {
        start_keeper(&keeper);
        const Requester requester(board.path("/tmp/vx_cloud_post"), first, number);
        for (; !requester.done(); ++turns)
            main_loop_turn(&keeper);
    };
    take_requests(0, few);
    const Holdings before = settle(threads);
    take_requests(few, count);
    expect_no_more(settle(threads), before);
    const Lines applied = traced("sal_switch_maxFrameSize_set(");
    ASSERT_EQ(applied.size(), static_cast<std::size_t>(few + count));
    for (int i = 0; i < few + count; ++i)
        EXPECT_EQ(
            applied[static_cast<std::size_t>(i)],
            "sal_switch_maxFrameSize_set(" + std::to_string(Requester::frame_size(i)) + ") = 0");
    std::printf("%d requests in %d turns of the main loop\n", few + count, turns);
}

TEST_F(Restless, keeper_is_restarted_at_any_moment) {
    const int few = 10;
    const int count = number_of("VX_RESTARTS", 50);
    const std::size_t threads = count_holdings().threads;
    std::minstd_rand random(seed);
    auto restart = [&](int times) {
        for (; times; --times) {
            names.take_time(std::chrono::microseconds(random() % 2000));
            start_keeper(&keeper);
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
            stop_listening();
            ASSERT_EQ(thread_curl, nullptr);
        }
    };
    restart(few);
    const Holdings before = settle(threads);
    restart(count);
    expect_no_more(settle(threads), before);
    std::printf(
        "%d restarts, %zu requests, %zu messages\n", few + count, traced("listen(").size(),
        traced("sal_mib_cntr_clr(").size());
}

} // namespace
