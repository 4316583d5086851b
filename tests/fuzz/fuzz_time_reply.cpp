// Replies of the time API, which comes without TLS from whoever answers. No reply may do harm, and
// a time that was read once is read again from its own text.
#include <cstdio>
#include <ctime>
#include <string>

#include "base/debug.h"
#include "tests/fuzz/support/account.h"
#include "tests/fuzz/support/answers.h"
#include "tests/fuzz/support/fresh_board.h"
#include "transport/clock_sync.h"

namespace {

// The time API's text for a moment, "" for years that have more digits.
std::string reply_for(std::time_t moment) {
    std::tm parts{};
    if (!gmtime_r(&moment, &parts) || parts.tm_year < -1900 || parts.tm_year > 8099)
        return "";
    char text[64];
    std::size_t length =
        std::strftime(text, sizeof text, "{\"time\": \"%Y-%m-%dT%H:%M:%SZ\"}", &parts);
    return std::string(text, length);
}

void check_text(const std::string& input) {
    std::time_t moment = parse_time_reply(input.c_str());
    std::string again = moment == -1 ? "" : reply_for(moment);
    require(again.empty() || parse_time_reply(again.c_str()) == moment);
}

// With status and header lines of its own, or those of a good reply.
void set_clock(const std::string& input) {
    start_agent();
    Answers answers(as_answer(input), as_answer(input));
    sync_clock();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setenv("TZ", "UTC", 1);
    tzset();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Run run;
    debug_flag = one_in(8, data, size);
    const std::string input(reinterpret_cast<const char*>(data), size);
    check_text(input);
    set_clock(input);
    return 0;
}
