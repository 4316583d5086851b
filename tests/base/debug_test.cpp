// The debug console, also one that takes nothing.
#include "base/debug.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "tests/support/on_board.h"

namespace {

using Seconds = std::chrono::duration<double>;

// A console that takes what somebody reads.
class Console : public OnBoard {
  protected:
    Console() {
        put_file("/dev/console", "");
        std::filesystem::remove(board.path("/dev/console"));
        EXPECT_EQ(mkfifo(board.path("/dev/console").c_str(), 0600), 0);
        debug_flag = 1;
    }
    ~Console() override { close(terminal); }

    void connect() { terminal = open("/dev/console", O_RDONLY | O_NONBLOCK); }
    std::string take(std::size_t most) {
        std::string text(most, '\0');
        ssize_t count = read(terminal, text.data(), most);
        text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return text;
    }
    void take_all() {
        while (!take(65536).empty()) {}
    }
    static double seconds_to_print(const std::string& text) {
        auto start = std::chrono::steady_clock::now();
        debug_print("%s", text.c_str());
        return Seconds(std::chrono::steady_clock::now() - start).count();
    }

    int terminal = -1;
};

const std::string long_text(300'000, 'x');

} // namespace

TEST_F(Console, arguments_are_evaluated_only_for_a_line_that_is_printed) {
    int evaluated = 0;
    debug_flag = 0;
    debug_print("%d\n", ++evaluated);
    EXPECT_EQ(evaluated, 0);
    debug_flag = 1;
    debug_print("%d\n", ++evaluated);
    EXPECT_EQ(evaluated, 1);
}

TEST_F(Console, text_is_lost_where_nobody_is_at_the_console) {
    EXPECT_LT(seconds_to_print("text\n"), 0.5);
}

TEST_F(Console, console_that_takes_nothing_is_waited_for_once) {
    connect();
    double first = seconds_to_print(long_text);
    EXPECT_GE(first, 0.9);
    EXPECT_LT(first, 5);
    EXPECT_LT(seconds_to_print(long_text), 0.5);
    take_all();
    debug_print("again\n");
    EXPECT_EQ(take(100), "again\n");
}

TEST_F(Console, slow_console_gets_all_of_a_long_text) {
    connect();
    std::string shown;
    std::thread reader([&] {
        for (int takes = 0; takes < 2000 && shown.size() < long_text.size(); ++takes) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            shown += take(8192);
        }
    });
    debug_print("%s", long_text.c_str());
    reader.join();
    EXPECT_EQ(shown, long_text);
}
