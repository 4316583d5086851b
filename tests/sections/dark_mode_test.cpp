// Dark mode: the LEDs off, and back on as they were.
#include "sections/dark_mode.h"

#include "base/debug.h"
#include "core/dispatch.h"
#include "platform/led.h"
#include "tests/support/on_board.h"

namespace {

// Before any test resets the agent.
const std::uint32_t mode_of_a_new_process = saved_led_mode;

const std::string led_read = "sal_swctrl_poe_led_mode_get() = 0";

std::string led_write(int mode) {
    return "sal_swctrl_poe_led_mode_set(" + std::to_string(mode) + ") = 0";
}

class DarkMode : public OnBoard {
  protected:
    int set(const std::string& value) {
        Json system("{\"dark_mode\":" + value + "}");
        return vxc_dark_mode_set(system);
    }
};

} // namespace

TEST_F(DarkMode, report_is_true_for_every_mode_but_lan) {
    for (auto [mode, shown] :
         {std::pair{LED_MODE_LAN, "false"}, {LED_MODE_POE, "true"}, {LED_MODE_DARK, "true"}}) {
        device.leds.mode = static_cast<std::uint32_t>(mode);
        Report report = report_of(vxc_dark_mode_get);
        EXPECT_EQ(report.result, 0);
        EXPECT_EQ(report.text, std::string(R"({"dark_mode":)") + shown + "}");
    }
}

TEST_F(DarkMode, report_passes_a_failure_on_and_adds_nothing) {
    auto runs = fail_each_call([](sim::Board&) {}, vxc_dark_mode_get);
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_EQ(runs[0].result, 77);
    EXPECT_EQ(runs[0].report, "{}");
    EXPECT_EQ(runs[0].errors, Codes{});
}

TEST_F(DarkMode, a_missing_object_is_code_498_and_not_recorded) {
    EXPECT_EQ(vxc_dark_mode_set(nullptr), 498);
    EXPECT_EQ(vxc_dark_mode_get(nullptr), 498);
    EXPECT_EQ(recorded(), Codes{});
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(DarkMode, without_its_key_nothing_is_read) {
    Json system("{}");
    EXPECT_EQ(vxc_dark_mode_set(system), 0);
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(DarkMode, true_remembers_the_mode_and_turns_the_leds_off) {
    debug_flag = 1;
    device.leds.mode = LED_MODE_POE;
    EXPECT_EQ(set("true"), 0);
    EXPECT_EQ(trace(), (Lines{led_read, led_write(7)}));
    EXPECT_EQ(saved_led_mode, 1u);
    EXPECT_EQ(device.leds.mode, 7u);
    EXPECT_EQ(console(), Lines{"VX_cloud : dark_mode TRUE"});
}

TEST_F(DarkMode, true_twice_in_a_row_keeps_the_first_mode) {
    device.leds.mode = LED_MODE_POE;
    set("true");
    set("true");
    EXPECT_EQ(trace(), (Lines{led_read, led_write(7), led_read, led_write(7)}));
    EXPECT_EQ(saved_led_mode, 1u);
}

TEST_F(DarkMode, false_brings_back_the_lan_mode) {
    debug_flag = 1;
    set("true");
    forget();
    EXPECT_EQ(set("false"), 0);
    EXPECT_EQ(trace(), (Lines{led_read, led_write(0)}));
    EXPECT_EQ(console(), Lines{"VX_cloud : recover to LAN mode"});
}

TEST_F(DarkMode, false_brings_back_the_poe_mode) {
    debug_flag = 1;
    device.leds.mode = LED_MODE_POE;
    set("true");
    forget();
    EXPECT_EQ(set("false"), 0);
    EXPECT_EQ(trace(), (Lines{led_read, led_write(1)}));
    EXPECT_EQ(console(), Lines{"VX_cloud : recover to POE mode"});
}

TEST_F(DarkMode, false_changes_nothing_in_lan_and_poe_mode) {
    for (std::uint32_t mode : {LED_MODE_LAN, LED_MODE_POE}) {
        forget();
        device.leds.mode = mode;
        EXPECT_EQ(set("false"), 0);
        EXPECT_EQ(trace(), Lines{led_read});
        EXPECT_EQ(device.leds.mode, mode);
    }
}

TEST_F(DarkMode, false_after_a_restart_in_the_dark_stays_dark) {
    EXPECT_EQ(mode_of_a_new_process, 7u);
    saved_led_mode = mode_of_a_new_process;
    debug_flag = 1;
    device.leds.mode = LED_MODE_DARK;
    EXPECT_EQ(set("false"), 0);
    EXPECT_EQ(trace(), (Lines{led_read, led_write(7)}));
    EXPECT_EQ(console(), Lines{});
}

TEST_F(DarkMode, any_value_that_is_not_false_counts_as_true) {
    for (const char* value : {"null", "0", "\"off\"", "{}"}) {
        device.leds.mode = LED_MODE_LAN;
        EXPECT_EQ(set(value), 0);
        EXPECT_EQ(device.leds.mode, 7u) << value;
    }
}

TEST_F(DarkMode, every_call_of_an_order_may_fail_without_consequence) {
    struct Case {
        const char* value;
        std::uint32_t mode;
        Lines calls;
    };
    for (const Case& it :
         {Case{"true", 1, {"sal_swctrl_poe_led_mode_get", "sal_swctrl_poe_led_mode_set"}},
          Case{"false", 7, {"sal_swctrl_poe_led_mode_get", "sal_swctrl_poe_led_mode_set"}}}) {
        auto runs = fail_each_call(
            [&](sim::Board& fresh) { fresh.device.leds.mode = it.mode; },
            [&](cJSON*) { return set(it.value); });
        ASSERT_EQ(runs.size(), 2u);
        for (std::size_t i = 0; i < runs.size(); ++i) {
            EXPECT_EQ(runs[i].call, it.calls[i]);
            EXPECT_EQ(runs[i].result, 0);
            EXPECT_EQ(runs[i].errors, Codes{});
        }
    }
}

TEST_F(DarkMode, is_applied_and_saved_with_the_settings) {
    Json document(R"({"system":{"dark_mode":true}})");
    vxc_set(document);
    EXPECT_EQ(trace(), (Lines{led_read, led_write(7), "cmd_conf_startupConfig_save() = 0"}));
    EXPECT_EQ(log(), Lines{});
}
