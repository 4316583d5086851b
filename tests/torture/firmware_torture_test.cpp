// All firmware orders at once: an upgrade, another partition, the settings of the factory.
#include "core/dispatch.h"
#include "json/json_document.h"
#include "sections/firmware_upgrade.h"
#include "tests/torture/torture.h"

namespace {

cJSON* orders;

cJSON* show_state(sim::Board& board) {
    deleteJsonObject(orders);
    cJSON* state = createJsonObject();
    addJsonObjectIntItem(state, "flag", static_cast<int>(flags[0]));
    addJsonObjectIntItem(state, "reboots", board.reboots);
    return state;
}

torture::Scenario firmware_with(int code, const char* table) {
    return {
        table,
        [](sim::Board&) {
            orders = parseJsonString(R"({"system": {"firmware": {
                "upgrade_partition": 2, "upgrade_url": "/flash/image0", "active_partition": 2,
                "factory_reset": true}}})");
        },
        [] { vxc_set(orders); },
        show_state,
        small_switch,
        false,
        code};
}

} // namespace

TEST(FirmwareTorture, each_call_that_fails_has_the_outcome_of_its_row) {
    torture::torture(firmware_with(torture::failure_code, "firmware"));
}

// What is wrong with the image itself is told to the cloud.
TEST(FirmwareTorture, image_that_is_none_is_flagged) {
    torture::torture(firmware_with(46, "firmware_without_image"), torture::platform_calls);
}
