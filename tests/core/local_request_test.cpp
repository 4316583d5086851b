// Local requests: the request file and the signal.
#include "core/local_request.h"

#include <signal.h>
#include <sys/stat.h>

#include <cerrno>
#include <thread>

#include "base/command.h"
#include "base/debug.h"
#include "tests/core/running_keeper.h"

namespace {

constexpr const char* request = "/tmp/vx_cloud_post";
constexpr std::size_t longest = 20480;

class LocalRequest : public OnCloud {
  protected:
    LocalRequest() { debug_flag = 1; }
    ~LocalRequest() override { let_signals_through(); }

    bool request_exists() const { return std::filesystem::exists(board.path(request)); }
    std::uint32_t frame_size() const { return device.chip.state().max_frame_bytes; }

    // A document that sets the frame size to 2000, of exactly that many bytes.
    static std::string document_of(std::size_t size) {
        std::string text = R"({"system": {"jumbo_frames": {"size": 2000}}, "pad": ")";
        return text + std::string(size - text.size() - 2, 'x') + "\"}";
    }
};

} // namespace

TEST_F(LocalRequest, applies_the_document_and_removes_the_file) {
    put_file(request, R"({"system": {"jumbo_frames": {"size": 2000}}})");
    handleAction(SIGUSR1);
    EXPECT_EQ(frame_size(), 2000u);
    EXPECT_FALSE(request_exists());
    EXPECT_EQ(setting_from_cloud, 1u);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_switch_maxFrameSize_set(2000) = 0", "cmd_conf_startupConfig_save() = 0",
                     "system(\"rm /tmp/vx_cloud_post\") = 0"}));
}

TEST_F(LocalRequest, console_texts) {
    std::string text = R"({"system": {}})";
    put_file(request, text);
    handleAction(SIGUSR1);
    EXPECT_EQ(
        raw_console(), "\n\n " + std::to_string(getpid()) +
                           " Get signal\n\n\n\n\ncontent length : 14\n\n\n\n\ncontent " + text +
                           "\n\n\n\n\nDone and clean content\n\n\n");
}

TEST_F(LocalRequest, does_not_check_in_by_itself) {
    put_file(request, R"({"system": {}})");
    handleAction(SIGUSR1);
    EXPECT_FALSE(called("transfer"));
}

TEST_F(LocalRequest, other_signal_leaves) {
    put_file(request, R"({"system": {}})");
    handleAction(SIGUSR2);
    EXPECT_EQ(raw_console(), "\n\nLeave\n\n\n");
    EXPECT_TRUE(request_exists());
}

TEST_F(LocalRequest, missing_file) {
    handleAction(SIGUSR1);
    EXPECT_TRUE(raw_console().ends_with("\ncontent not exist\n\n\n"));
    EXPECT_TRUE(trace().empty());
}

TEST_F(LocalRequest, file_that_is_not_json_is_removed) {
    put_file(request, "{\"system\":");
    handleAction(SIGUSR1);
    EXPECT_TRUE(raw_console().ends_with(
        "\n\nInput json format error\n\n\n\n\nDone and clean content\n\n\n"));
    EXPECT_FALSE(request_exists());
    EXPECT_EQ(setting_from_cloud, 0u);
}

TEST_F(LocalRequest, empty_file) {
    put_file(request, "");
    handleAction(SIGUSR1);
    EXPECT_NE(raw_console().find("content length : 0\n"), std::string::npos);
    EXPECT_NE(raw_console().find("Input json format error"), std::string::npos);
    EXPECT_FALSE(request_exists());
}

TEST_F(LocalRequest, file_of_exactly_the_longest_size_is_parsed) {
    put_file(request, document_of(longest));
    handleAction(SIGUSR1);
    EXPECT_NE(raw_console().find("content length : 20480\n"), std::string::npos);
    EXPECT_EQ(frame_size(), 2000u);
}

TEST_F(LocalRequest, file_of_one_byte_more_is_cut_and_so_no_longer_json) {
    put_file(request, document_of(longest + 1));
    handleAction(SIGUSR1);
    EXPECT_NE(raw_console().find("content length : 20480\n"), std::string::npos);
    EXPECT_NE(raw_console().find("Input json format error"), std::string::npos);
    EXPECT_EQ(frame_size(), 1522u);
    EXPECT_FALSE(request_exists());
}

TEST_F(LocalRequest, directory_in_place_of_the_file) {
    std::filesystem::create_directories(board.path(request));
    handleAction(SIGUSR1);
    EXPECT_TRUE(raw_console().ends_with("\ncontent not exist\n\n\n"));
    EXPECT_TRUE(trace().empty());
}

TEST_F(LocalRequest, fifo_in_place_of_the_file_is_not_waited_for) {
    put_file(request, "");
    std::filesystem::remove(board.path(request));
    ASSERT_EQ(mkfifo(board.path(request).c_str(), 0600), 0);
    handleAction(SIGUSR1);
    EXPECT_TRUE(raw_console().ends_with("\ncontent not exist\n\n\n"));
    EXPECT_TRUE(trace().empty());
}

TEST_F(LocalRequest, account_in_the_document_is_not_shown) {
    put_file(request, R"({"system": {"cloud": {"key": "newkey", "secret": "newsecret"}}})");
    handleAction(SIGUSR1);
    EXPECT_STREQ(gCattr.secret, "newsecret");
    EXPECT_EQ(raw_console().find("newsecret"), std::string::npos);
    EXPECT_EQ(raw_console().find("newkey"), std::string::npos);
}

TEST_F(LocalRequest, without_memory_the_file_waits_for_the_next_signal) {
    put_file(request, R"({"system": {}})");
    board.faults.plan({sim::Edge::allocation, "", 1, true, 0, 0});
    handleAction(SIGUSR1);
    EXPECT_TRUE(request_exists());
    EXPECT_TRUE(trace().empty());
}

TEST_F(LocalRequest, interrupted_code_finds_its_errno_again) {
    errno = EDOM;
    handleAction(SIGUSR1);
    EXPECT_EQ(errno, EDOM);
}

TEST_F(LocalRequest, blocked_signal_waits_until_requests_are_taken) {
    block_local_requests();
    signal(SIGUSR1, handleAction);
    put_file(request, R"({"system": {}})");
    raise(SIGUSR1);
    EXPECT_TRUE(request_exists());
    take_local_requests();
    EXPECT_FALSE(request_exists());
    raise(SIGUSR1);
    EXPECT_FALSE(called("sleep"));
    forget();
    put_file(request, R"({"system": {}})");
    EXPECT_EQ(sleep_taking_requests(5), 0u);
    EXPECT_FALSE(request_exists());
}

TEST_F(LocalRequest, sleep_is_slept_out_whatever_comes_in) {
    block_local_requests();
    board.clock.on_sleep = [](unsigned seconds) { return seconds == 10 ? 4u : 0u; };
    sleep_out(10);
    EXPECT_EQ(traced("sleep"), (Lines{"sleep(10) = 4", "sleep(4) = 0"}));
}

TEST_F(LocalRequest, only_the_thread_that_takes_requests_lets_them_in) {
    block_local_requests();
    signal(SIGUSR1, handleAction);
    put_file(request, R"({"system": {}})");
    bool open = true;
    board.clock.on_sleep = [&](unsigned) {
        sigset_t blocked;
        pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
        open = !sigismember(&blocked, SIGUSR1);
        return 0u;
    };
    std::thread([] { sleep_taking_requests(5); }).join();
    EXPECT_FALSE(open);
    sleep_taking_requests(5);
    EXPECT_TRUE(open);
}

TEST_F(LocalRequest, request_amidst_a_command_comes_again_after_it) {
    block_local_requests();
    signal(SIGUSR1, handleAction);
    put_file(request, R"({"system": {}})");
    device.network.hosts.push_back({"silent.example", 0x0A000001, 0, 1});
    bool applied_amidst = true;
    board.clock.on_sleep = [&](unsigned) {
        raise(SIGUSR1);
        applied_amidst = !request_exists();
        return 0u;
    };
    run_command("ping -c 1 -s 56 -i 1 silent.example > /tmp/out");
    EXPECT_FALSE(applied_amidst);
    EXPECT_TRUE(request_exists());
    take_local_requests();
    EXPECT_FALSE(request_exists());
}

TEST_F(LocalRequest, request_amidst_a_command_of_another_thread_comes_to_the_one_that_takes_it) {
    block_local_requests();
    signal(SIGUSR1, handleAction);
    put_file(request, R"({"system": {}})");
    device.network.hosts.push_back({"silent.example", 0x0A000001, 0, 1});
    board.clock.on_sleep = [](unsigned) {
        raise(SIGUSR1);
        return 0u;
    };
    std::thread([] { run_command("ping -c 1 -s 56 -i 1 silent.example > /tmp/out"); }).join();
    EXPECT_TRUE(request_exists());
    take_local_requests();
    EXPECT_FALSE(request_exists());
}
