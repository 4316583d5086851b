// The report, with every call that it makes failing in turn.
#include <cstdlib>

#include "base/debug.h"
#include "core/dispatch.h"
#include "json/json_print.h"
#include "tests/support/on_board.h"
#include "tests/torture/torture.h"

namespace {

std::string report_text() {
    Json document(createJsonObject());
    vxc_get(document);
    return compact(document);
}

const TorturedRun report = {
    [](sim::Board&) {},
    [] {
        cJSON* document = createJsonObject();
        if (!document)
            return;
        vxc_get(document);
        std::free(printJson(document));
        deleteJsonObject(document);
    },
    report_text};

const TorturedRun report_on_the_console = {
    [](sim::Board&) { debug_flag = 1; }, report.run, report_text};

} // namespace

TEST(ReportTorture, platform_calls) { EXPECT_GT(torture(sim::Edge::platform, report), 100u); }
TEST(ReportTorture, driver_requests) { EXPECT_GT(torture(sim::Edge::ioctl, report), 100u); }
TEST(ReportTorture, allocations) { EXPECT_GT(torture(sim::Edge::allocation, report), 500u); }
TEST(ReportTorture, files) { EXPECT_GT(torture(sim::Edge::file, report_on_the_console), 10u); }
