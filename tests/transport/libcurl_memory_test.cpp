// Requests while libcurl runs out of memory at each of its allocations in turn.
#include <curl/curl.h>

#include <atomic>
#include <cstdlib>

#include "on_wire.h"
#include "transport/send.h"

namespace {

std::atomic<int> allocations; // made since the start of a request
std::atomic<int> failing;     // the number of the one to fail; 0 for none
std::atomic<bool> for_good;   // and every later one

bool fails() {
    int number = ++allocations;
    int first = failing;
    return first != 0 && (number == first || (for_good && number > first));
}

void* take(std::size_t size) { return fails() ? nullptr : std::malloc(size); }
void* take_cleared(std::size_t count, std::size_t size) {
    return fails() ? nullptr : std::calloc(count, size);
}
void* take_again(void* memory, std::size_t size) {
    return fails() ? nullptr : std::realloc(memory, size);
}
char* take_copy(const char* text) { return fails() ? nullptr : strdup(text); }

class LibcurlMemory : public OnWire {
  protected:
    // No transfer is alive between two tests, so libcurl can be set up anew.
    LibcurlMemory() {
        curl_global_cleanup();
        curl_global_init_mem(CURL_GLOBAL_ALL, take, std::free, take_again, take_copy, take_cleared);
    }
    ~LibcurlMemory() override {
        curl_global_cleanup();
        curl_global_init(CURL_GLOBAL_ALL);
    }

    struct Outcome {
        std::int32_t result;
        std::string reply;
        bool sent;
    };

    Outcome post(int fail_at, bool ever_after) {
        cloud.forget_answers();
        cloud.answer({.body = "reply"});
        std::size_t before = cloud.requests().size();
        char* reply = nullptr;
        allocations = 0;
        for_good = ever_after;
        failing = fail_at;
        std::int32_t result =
            api_send_buff1("http", cloud.host().c_str(), "/p", &reply, "{}", "thekey", "thesecret");
        failing = 0;
        Outcome outcome = {result, reply ? reply : "", cloud.requests().size() > before};
        std::free(reply);
        return outcome;
    }
};

// Two allocations for each of the four header lines come first.
constexpr int header_allocations = 8;

} // namespace

TEST_F(LibcurlMemory, header_that_is_lost_gives_the_request_up) {
    for (int nth = 1; nth <= header_allocations; ++nth) {
        forget();
        Outcome outcome = post(nth, false);
        EXPECT_EQ(outcome.result, API_FAILED) << nth;
        EXPECT_FALSE(called("transfer")) << nth;
    }
}

TEST_F(LibcurlMemory, transfer_that_cannot_be_made_gives_the_request_up) {
    Outcome outcome = post(header_allocations + 1, false);
    EXPECT_EQ(outcome.result, API_FAILED);
    EXPECT_FALSE(called("transfer"));
}

TEST_F(LibcurlMemory, each_failed_allocation_is_survived_and_told_in_the_result) {
    EXPECT_EQ(post(0, false).result, API_OK);
    int count = allocations;
    ASSERT_GT(count, header_allocations);
    for (bool ever_after : {false, true}) {
        for (int nth = 1; nth <= count; ++nth) {
            Outcome outcome = post(nth, ever_after);
            EXPECT_LE(outcome.result, API_OK) << nth;
            EXPECT_GE(outcome.result, API_NO_CONNECT) << nth;
            if (outcome.result == API_OK) {
                EXPECT_EQ(outcome.reply, "reply") << nth;
            }
        }
    }
    Outcome healthy = post(0, false);
    EXPECT_EQ(healthy.result, API_OK);
    EXPECT_TRUE(healthy.sent);
}
