// A settings document, with every call that its appliance makes failing in turn.
#include "core/dispatch.h"
#include "platform/mib.h"
#include "platform/port.h"
#include "tests/support/on_board.h"
#include "tests/torture/settings.h"
#include "tests/torture/torture.h"

namespace {

void apply(const char* text) {
    cJSON* document = parseJsonString(text);
    if (document)
        vxc_set(document);
    deleteJsonObject(document);
}

// Runs differ in how long they waited, which the uptime and the counters would show.
void forget_time() {
    sim::board().clock.restart();
    for (int port = 0; port < sim::board().device.logical_ports(); ++port)
        sal_mib_cntr_clr(port);
}

std::string switch_afterwards() {
    forget_time();
    Json document(createJsonObject());
    vxc_get(document);
    return compact(document);
}

const TorturedRun settings = {[](sim::Board&) {}, [] { apply(whole_settings); }, switch_afterwards};

// A group that fails half-way may leave its members down, and nothing raises them again.
std::string switch_afterwards_raised() {
    for (int port = 0; port < sim::board().device.logical_ports(); ++port)
        sal_port_enable_set(port, 1);
    return switch_afterwards();
}

const TorturedRun groups = {
    [](sim::Board&) {}, [] { apply(group_settings); }, switch_afterwards_raised};

} // namespace

TEST(ApplyTorture, platform_calls) { EXPECT_GT(torture(sim::Edge::platform, settings), 10u); }
TEST(ApplyTorture, driver_requests) { EXPECT_GT(torture(sim::Edge::ioctl, settings), 0u); }
TEST(ApplyTorture, allocations) { EXPECT_GT(torture(sim::Edge::allocation, settings), 20u); }
TEST(ApplyTorture, files) { EXPECT_GT(torture(sim::Edge::file, settings), 0u); }

// Both formations look through every place of the table of static addresses.
TEST(GroupTorture, platform_calls) { EXPECT_GT(torture(sim::Edge::platform, groups), 2 * 256u); }
TEST(GroupTorture, driver_requests) { EXPECT_GT(torture(sim::Edge::ioctl, groups), 0u); }
TEST(GroupTorture, allocations) { EXPECT_GT(torture(sim::Edge::allocation, groups), 10u); }
