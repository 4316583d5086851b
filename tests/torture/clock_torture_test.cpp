// The clock is corrected from the cloud's time, of which there are two attempts.
#include <cstring>

#include "base/state.h"
#include "json/json_document.h"
#include "tests/support/http_stub.h"
#include "tests/torture/torture.h"
#include "transport/clock_sync.h"

TEST(ClockTorture, each_call_that_fails_has_the_outcome_of_its_row) {
    HttpStub cloud;
    auto prepare = [&](sim::Board&) {
        std::strcpy(fallback_host, cloud.host().c_str());
        cloud.forget_answers();
        for (int attempt = 0; attempt < 2; ++attempt)
            cloud.answer_path("/time", {.body = R"({"time": "2026-11-16T05:30:00Z"})"});
    };
    torture::torture(
        {"clock", prepare, [] { sync_clock(); }, [](sim::Board&) { return createJsonObject(); },
         small_switch, true, torture::failure_code, cloud.host()},
        torture::platform_calls | torture::transfers);
}
