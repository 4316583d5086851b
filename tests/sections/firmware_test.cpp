// The firmware section: the report, an upgrade with its three attempts, the choice of the partition
// to start from, restarts, and the lock that keeps a second order away.
#include "sections/firmware.h"

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <thread>

#include "base/debug.h"
#include "base/errors.h"
#include "base/state.h"
#include "platform/firmware.h"
#include "platform/system.h"
#include "sections/firmware_upgrade.h"
#include "sim/instruments/scenario.h"
#include "sim/library/firmware_image.h"
#include "tests/support/on_board.h"

namespace {

const char* const upgrade_order = R"("upgrade_partition":2,"upgrade_url":"/images/new")";

const Lines upgrade_calls{
    "sal_fwImage_download(\"/tmp/tmp_vmlinux.bix\", \"/images/new\") = 0",
    "sal_sys_fwImage_write(\"/tmp/tmp_vmlinux.bix\", 1) = 0",
    "sleep(10) = 0",
    "sal_sys_fwImage_backup(1, \"/tmp/tmp_backup.bix\") = 0",
    "sal_sys_fwImageSaveMem_gen(\"/tmp/tmp_backup.bix\") = 0",
};

Lines operator+(Lines lines, const Lines& more) {
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

int order(const std::string& members) {
    Json document(R"({"firmware":{)" + members + "}}");
    return vxc_firmware_set(document);
}

class Firmware : public OnBoard {
  protected:
    Firmware() { offer(board, "/images/new", sim::make_image("1.1.0", "the new firmware")); }
    ~Firmware() override { mutex_is(PTHREAD_MUTEX_NORMAL); }

    static void offer(sim::Board& board, const std::string& path, const std::string& image) {
        EXPECT_TRUE(sim::write_atomically(board.path(path), image));
    }
    sim::Flash flash() const { return sim::Flash(board.root()); }
    void drop_image(int partition) { flash().write(partition, ""); }

    std::string reported() {
        Report report = report_of(vxc_firmware_get);
        EXPECT_EQ(report.result, 0);
        return report.text;
    }
    std::string reported_flags() {
        std::string text = reported();
        return text.substr(text.find("\"flags\":") + 8, text.find(']') - text.find('[') + 1);
    }
    Lines trace_of(const std::string& members) {
        EXPECT_EQ(order(members), 0);
        return trace();
    }
    long times(const std::string& call) const {
        Lines names = calls();
        return std::count(names.begin(), names.end(), call);
    }

    // What an order writes to standard error, which is a file of the board meanwhile.
    std::string complaint_of(const std::string& members, const Lines& expected) {
        int screen = dup(STDERR_FILENO);
        int kept = open("/run/stderr", O_WRONLY | O_CREAT, 0600);
        dup2(kept, STDERR_FILENO);
        Lines traced = trace_of(members);
        dup2(screen, STDERR_FILENO);
        close(kept);
        close(screen);
        EXPECT_EQ(traced, expected);
        return file("/run/stderr");
    }

    static void mutex_is(int type) {
        pthread_mutexattr_t attributes;
        pthread_mutexattr_init(&attributes);
        pthread_mutexattr_settype(&attributes, type);
        pthread_mutex_destroy(&vx_fm_mutex);
        pthread_mutex_init(&vx_fm_mutex, &attributes);
        pthread_mutexattr_destroy(&attributes);
    }
};

// What each call of a run leads to when it fails.
struct Outcome {
    std::string call;
    int nth;
    Codes errors;
    Lines calls_after;
};

void expect_outcomes(const std::vector<FailedRun>& runs, const std::vector<Outcome>& outcomes) {
    ASSERT_EQ(runs.size(), outcomes.size());
    for (std::size_t i = 0; i < runs.size(); ++i) {
        std::string name = outcomes[i].call + " " + std::to_string(outcomes[i].nth);
        EXPECT_EQ(runs[i].call + " " + std::to_string(runs[i].nth), name);
        EXPECT_EQ(runs[i].result, 0) << name;
        EXPECT_EQ(runs[i].errors, outcomes[i].errors) << name;
        EXPECT_EQ(runs[i].calls_after, outcomes[i].calls_after) << name;
    }
}

} // namespace

// --- Report.

TEST_F(Firmware, report_has_the_selection_and_both_versions) {
    EXPECT_EQ(
        reported(), R"({"firmware":{"active_partition":1,"version_partition_1":"1.0.0",)"
                    R"("version_partition_2":"0.9.0","flags":[]}})");
    EXPECT_EQ(
        calls(), (Lines{
                     "sal_sys_dualImageCurrSel_get", "sal_sys_fwImageHdrInfo_get",
                     "sal_filter_ver_get", "sal_sys_fwImageHdrInfo_get", "sal_filter_ver_get"}));
    flash().select(1);
    EXPECT_NE(reported().find(R"("active_partition":2)"), std::string::npos);
}

TEST_F(Firmware, report_of_an_image_without_header_has_an_empty_version) {
    drop_image(0);
    EXPECT_EQ(
        reported(), R"({"firmware":{"active_partition":1,"version_partition_1":"",)"
                    R"("version_partition_2":"0.9.0","flags":[]}})");
    EXPECT_EQ(times("sal_filter_ver_get"), 1);
}

TEST_F(Firmware, report_shows_a_version_that_fills_its_32_bytes) {
    std::string version = "1.2.3-a-version-of-32-characters";
    flash().write(1, sim::make_image(version, "payload"));
    EXPECT_NE(reported().find(R"("version_partition_2":")" + version + "\""), std::string::npos);
}

TEST_F(Firmware, flags_are_the_status_word_and_1_for_errors) {
    EXPECT_EQ(reported_flags(), "[]");
    flags[0] = 101;
    EXPECT_EQ(reported_flags(), "[101]");
    record_error(7);
    EXPECT_EQ(reported_flags(), "[1]");
    flags[0] = 102;
    EXPECT_EQ(reported_flags(), "[1,102]");
}

TEST_F(Firmware, report_clears_all_status_words_and_keeps_the_error_list) {
    record_error(7);
    for (std::uint32_t& word : flags)
        word = 101;
    reported();
    for (std::uint32_t word : flags)
        EXPECT_EQ(word, 0u);
    EXPECT_EQ(recorded(), Codes{7});
}

TEST_F(Firmware, report_of_an_unreadable_selection_adds_nothing_and_keeps_the_flags) {
    flags[0] = 101;
    fail("sal_sys_dualImageCurrSel_get", 77);
    Report report = report_of(vxc_firmware_get);
    EXPECT_EQ(report.result, 77);
    EXPECT_EQ(report.text, "{}");
    EXPECT_EQ(calls(), Lines{"sal_sys_dualImageCurrSel_get"});
    EXPECT_EQ(flags[0], 101u);
}

TEST_F(Firmware, status_words_that_memory_was_too_short_to_report_are_told_next_time) {
    std::uint64_t nth = 0;
    for (bool failed = true; failed;) {
        Json document(createJsonObject());
        flags[0] = 101;
        board.faults.clear();
        board.faults.plan({sim::Edge::allocation, "", ++nth, false, 1, 0});
        EXPECT_EQ(vxc_firmware_get(document), 0);
        failed = board.faults.count(sim::Edge::allocation) >= nth;
        board.faults.clear();
        bool told = getJsonArrayForKey(document["firmware"], "flags");
        EXPECT_EQ(flags[0], told ? 0u : 101u) << nth;
        EXPECT_EQ(reported_flags(), told ? "[]" : "[101]") << nth;
    }
    EXPECT_GT(nth, 5u);
}

TEST_F(Firmware, report_goes_on_without_a_version_that_cannot_be_read) {
    auto runs = fail_each_call([](sim::Board&) {}, vxc_firmware_get);
    ASSERT_EQ(runs.size(), 5u);
    auto versions = [](const std::string& first, const std::string& second) {
        return R"({"firmware":{"active_partition":1,"version_partition_1":")" + first +
               R"(","version_partition_2":")" + second + R"(","flags":[]}})";
    };
    const std::string reports[] = {
        "{}", versions("", "0.9.0"), versions("", "0.9.0"), versions("1.0.0", ""),
        versions("1.0.0", "")};
    for (std::size_t i = 0; i < runs.size(); ++i) {
        EXPECT_EQ(runs[i].result, i == 0 ? 77 : 0) << i;
        EXPECT_EQ(runs[i].report, reports[i]) << i;
        EXPECT_EQ(runs[i].errors, Codes{}) << i;
    }
    // A header that fails with another code than "no image" still has its version asked for.
    EXPECT_EQ(
        runs[1].calls_after,
        (Lines{"sal_filter_ver_get", "sal_sys_fwImageHdrInfo_get", "sal_filter_ver_get"}));
}

// --- Orders.

TEST_F(Firmware, nothing_happens_without_system_or_firmware) {
    Json empty("{}");
    EXPECT_EQ(vxc_firmware_set(nullptr), 0);
    EXPECT_EQ(vxc_firmware_set(empty), 0);
    EXPECT_EQ(trace(), Lines{});
}

TEST_F(Firmware, an_empty_order_prints_and_does_nothing_more) {
    debug_flag = 1;
    EXPECT_EQ(trace_of(""), Lines{});
    EXPECT_EQ(
        console(), (Lines{
                       "vxc_firmware_set", "upgrade_partition 0", "upgrade_url (null)",
                       "active_partition 0", "vxc_firmware_set is finish"}));
}

TEST_F(Firmware, an_upgrade_is_written_read_back_and_booted) {
    EXPECT_EQ(
        trace_of(upgrade_order), (upgrade_calls + Lines{"sleep(2) = 0", "sal_sys_reboot() = 0"}));
    EXPECT_EQ(flash().read(1), file("/images/new"));
    EXPECT_EQ(file("/tmp/tmp_backup.bix"), "");
    EXPECT_EQ(board.reboots, 1);
    EXPECT_FALSE(device.firmware.locked);
    EXPECT_EQ(reported_flags(), "[]");
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Firmware, an_upgrade_shows_its_steps_on_the_console) {
    debug_flag = 1;
    order(std::string(upgrade_order) + R"(,"active_partition":2)");
    EXPECT_EQ(
        console(), (Lines{
                       "vxc_firmware_set", "upgrade_partition 2", "upgrade_url /images/new",
                       "sal_fwImage_download ret 0", "sal_sys_fwImage_write to partition 1 ret 0",
                       "sal_sys_fwImage_backup at partition 1 start",
                       "sal_sys_fwImage_backup at partition 1 ret 0", "active_partition 2",
                       "vxc_firmware_set is finish"}));
}

TEST_F(Firmware, a_url_without_a_partition_or_the_reverse_starts_no_upgrade) {
    EXPECT_EQ(trace_of(R"("upgrade_url":"/images/new")"), Lines{});
    EXPECT_EQ(trace_of(R"("upgrade_partition":2)"), Lines{});
    EXPECT_EQ(trace_of(R"("upgrade_partition":2,"upgrade_url":7)"), Lines{});
}

TEST_F(Firmware, an_upgrade_with_factory_reset_restores_defaults_and_reboots_once) {
    EXPECT_EQ(
        trace_of(std::string(upgrade_order) + R"(,"factory_reset":true)"),
        (upgrade_calls +
         Lines{"sleep(2) = 0", "sal_sys_restore_defaults(0) = 0", "sal_sys_reboot() = 0"}));
}

TEST_F(Firmware, factory_reset_alone_restores_defaults_and_reboots) {
    cmd_conf_startupConfig_save();
    forget();
    EXPECT_EQ(
        trace_of(R"("factory_reset":true)"),
        (Lines{"sal_sys_restore_defaults(0) = 0", "sal_sys_reboot() = 0"}));
    EXPECT_EQ(file("/etc/startup-config.json"), "");
}

TEST_F(Firmware, factory_reset_that_is_not_true_does_nothing) {
    for (const char* value : {"false", "null", "0", "1", "\"true\""})
        EXPECT_EQ(trace_of(std::string(R"("factory_reset":)") + value), Lines{}) << value;
}

TEST_F(Firmware, active_partition_alone_never_reboots) {
    EXPECT_EQ(
        trace_of(R"("active_partition":2)"),
        (Lines{
            "sal_sys_dualImageCurrSel_get() = 0", "sal_sys_fwImageHdrInfo_get(0) = 0",
            "sal_sys_fwImageHdrInfo_get(1) = 0", "sal_sys_dualImage_sel(1) = 0", "sleep(1) = 0"}));
    EXPECT_EQ(flash().selected(), 1);
}

TEST_F(Firmware, the_partition_is_chosen_after_the_upgrade_and_before_the_restart) {
    order(std::string(upgrade_order) + R"(,"active_partition":2,"factory_reset":true)");
    Lines names = calls();
    EXPECT_EQ(
        Lines(names.begin() + 5, names.end()),
        (Lines{
            "sleep", "sal_sys_dualImageCurrSel_get", "sal_sys_fwImageHdrInfo_get",
            "sal_sys_fwImageHdrInfo_get", "sal_sys_dualImage_sel", "sleep",
            "sal_sys_restore_defaults", "sal_sys_reboot"}));
}

TEST_F(Firmware, a_failed_upgrade_neither_resets_nor_reboots_but_the_partition_is_chosen) {
    fail("sal_fwImage_download", 1);
    order(std::string(upgrade_order) + R"(,"active_partition":2,"factory_reset":true)");
    EXPECT_EQ(flash().selected(), 1);
    EXPECT_FALSE(called("sal_sys_restore_defaults"));
    EXPECT_FALSE(called("sal_sys_reboot"));
}

TEST_F(Firmware, each_call_of_an_order_that_fails_has_its_outcome) {
    const Lines chosen{
        "sal_sys_dualImageCurrSel_get", "sal_sys_fwImageHdrInfo_get", "sal_sys_fwImageHdrInfo_get",
        "sal_sys_dualImage_sel", "sleep"};
    const Lines restarted{"sal_sys_restore_defaults", "sal_sys_reboot"};
    const Lines fetched{"sal_fwImage_download",   "sal_sys_fwImage_write",      "sleep",
                        "sal_sys_fwImage_backup", "sal_sys_fwImageSaveMem_gen", "sleep"};
    auto behind = [](const Lines& lines, std::size_t skipped) {
        return Lines(lines.begin() + static_cast<std::ptrdiff_t>(skipped), lines.end());
    };
    auto runs = fail_each_call(
        [](sim::Board& fresh) { offer(fresh, "/images/new", sim::make_image("1.1.0", "new")); },
        [](cJSON*) {
            return order(
                std::string(upgrade_order) + R"(,"active_partition":2,"factory_reset":true)");
        });
    expect_outcomes(
        runs, {
                  {"sal_fwImage_download",
                   1,
                   {},
                   Lines{"sal_sys_fwImageSaveMem_gen", "sal_sys_fwImageLock_give"} + chosen},
                  {"sal_sys_fwImage_write", 1, {}, chosen},
                  {"sal_sys_fwImage_backup",
                   1,
                   {},
                   Lines{"sal_sys_fwImageSaveMem_gen"} + fetched + chosen + restarted},
                  {"sal_sys_fwImageSaveMem_gen", 1, {}, chosen},
                  {"sal_sys_dualImageCurrSel_get", 1, {}, behind(chosen, 1) + restarted},
                  {"sal_sys_fwImageHdrInfo_get", 1, {}, behind(chosen, 2) + restarted},
                  {"sal_sys_fwImageHdrInfo_get", 2, {}, behind(chosen, 3) + restarted},
                  {"sal_sys_dualImage_sel", 1, {77}, behind(chosen, 4) + restarted},
                  {"sal_sys_restore_defaults", 1, {}, {"sal_sys_reboot"}},
                  {"sal_sys_reboot", 1, {}, {}},
              });
}

// --- Upgrade.

TEST_F(Firmware, a_failed_download_releases_the_file_and_gives_the_lock_back) {
    EXPECT_EQ(vxc_upgrade("/images/none", 1), 1);
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_fwImage_download(\"/tmp/tmp_vmlinux.bix\", \"/images/none\") = 1",
                     "sal_sys_fwImageSaveMem_gen(\"/tmp/tmp_vmlinux.bix\") = 0",
                     "sal_sys_fwImageLock_give() = 0"}));
    EXPECT_FALSE(device.firmware.locked);
    EXPECT_EQ(reported_flags(), "[]");
}

TEST_F(Firmware, a_download_without_header_is_flag_101) {
    offer(board, "/images/text", "This is no firmware.");
    EXPECT_EQ(vxc_upgrade("file:///images/text", 1), FW_NO_IMAGE);
    EXPECT_EQ(reported_flags(), "[101]");
}

TEST_F(Firmware, a_damaged_download_is_flag_102_in_one_report) {
    std::string image = file("/images/new");
    image[image.size() - 3] ^= 1;
    offer(board, "/images/new", image);
    EXPECT_EQ(order(upgrade_order), 0);
    EXPECT_EQ(reported_flags(), "[102]");
    EXPECT_EQ(reported_flags(), "[]");
    EXPECT_FALSE(called("sal_sys_fwImage_write"));
    EXPECT_FALSE(called("sal_sys_reboot"));
}

TEST_F(Firmware, the_flag_of_another_result_stays_what_it_was) {
    flags[0] = 101;
    fail("sal_fwImage_download", 45);
    EXPECT_EQ(vxc_upgrade("/images/new", 1), 45);
    EXPECT_EQ(flags[0], 101u);
}

TEST_F(Firmware, a_failed_write_returns_at_once) {
    fail("sal_sys_fwImage_write", FW_BAD_IMAGE);
    EXPECT_EQ(vxc_upgrade("/images/new", 1), FW_BAD_IMAGE);
    EXPECT_EQ(calls(), (Lines{"sal_fwImage_download", "sal_sys_fwImage_write"}));
    EXPECT_EQ(reported_flags(), "[]");
}

TEST_F(Firmware, a_partition_that_the_switch_does_not_have_is_a_failed_write) {
    for (const char* number : {"0", "3", "-2147483648", "\"2\""}) {
        forget();
        order(std::string(R"("upgrade_url":"/images/new","upgrade_partition":)") + number);
        EXPECT_EQ(calls(), (Lines{"sal_fwImage_download", "sal_sys_fwImage_write"})) << number;
    }
    EXPECT_EQ(flash().booted_version(), "1.0.0");
}

TEST_F(Firmware, a_read_back_that_fails_three_times_makes_three_downloads) {
    debug_flag = 1;
    for (int nth = 1; nth <= 3; ++nth)
        fail("sal_sys_fwImage_backup", 60 + nth, nth);
    EXPECT_EQ(vxc_upgrade("/images/new", 1), 63);
    EXPECT_EQ(times("sal_fwImage_download"), 3);
    EXPECT_EQ(times("sal_sys_fwImage_write"), 3);
    EXPECT_EQ(times("sleep"), 3);
    EXPECT_EQ(times("sal_sys_fwImageSaveMem_gen"), 3);
    Lines lines = console();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Restart upgrade"), 2);
    EXPECT_EQ(reported_flags(), "[]");
}

TEST_F(Firmware, a_read_back_that_fails_twice_ends_well_and_leaves_its_flag) {
    fail("sal_sys_fwImage_backup", FW_NO_IMAGE, 1);
    fail("sal_sys_fwImage_backup", FW_BAD_IMAGE, 2);
    EXPECT_EQ(order(upgrade_order), 0);
    EXPECT_EQ(times("sal_fwImage_download"), 3);
    EXPECT_EQ(board.reboots, 1);
    EXPECT_EQ(reported_flags(), "[102]");
}

TEST_F(Firmware, a_read_back_without_image_is_flag_101) {
    fail_always("sal_sys_fwImage_backup", FW_NO_IMAGE);
    EXPECT_EQ(vxc_upgrade("/images/new", 1), FW_NO_IMAGE);
    EXPECT_EQ(reported_flags(), "[101]");
}

TEST_F(Firmware, a_backup_file_that_cannot_be_released_ends_the_upgrade) {
    fail_always("sal_sys_fwImageSaveMem_gen", 78);
    fail("sal_sys_fwImage_backup", FW_BAD_IMAGE, 1);
    EXPECT_EQ(vxc_upgrade("/images/new", 1), 78);
    EXPECT_EQ(times("sal_fwImage_download"), 1);
    EXPECT_EQ(reported_flags(), "[102]");
}

TEST_F(Firmware, a_download_that_fails_at_the_second_attempt_ends_the_upgrade) {
    fail("sal_sys_fwImage_backup", 60);
    fail("sal_fwImage_download", FW_BAD_IMAGE, 2);
    EXPECT_EQ(vxc_upgrade("/images/new", 1), FW_BAD_IMAGE);
    EXPECT_EQ(times("sal_sys_fwImage_write"), 1);
    EXPECT_TRUE(called("sal_sys_fwImageLock_give"));
    EXPECT_EQ(reported_flags(), "[102]");
}

// --- The partition to start from.

TEST_F(Firmware, without_a_second_image_the_selection_is_left_alone) {
    drop_image(1);
    for (int partition : {0, 1}) {
        flash().select(1 - partition);
        vxc_act_partiton_set(partition);
        EXPECT_EQ(flash().selected(), 1 - partition);
    }
    EXPECT_FALSE(called("sal_sys_dualImage_sel"));
    EXPECT_EQ(recorded(), Codes{});
}

TEST_F(Firmware, without_a_first_image_the_second_can_be_chosen) {
    drop_image(0);
    vxc_act_partiton_set(1);
    EXPECT_EQ(flash().selected(), 1);
}

TEST_F(Firmware, the_current_selection_is_not_set_again) {
    vxc_act_partiton_set(0);
    EXPECT_FALSE(called("sal_sys_dualImage_sel"));
}

TEST_F(Firmware, a_partition_out_of_range_is_asked_for_and_its_refusal_reported) {
    drop_image(1);
    EXPECT_EQ(order(R"("active_partition":3)"), 0);
    EXPECT_TRUE(called("sal_sys_dualImage_sel"));
    EXPECT_EQ(recorded(), Codes{3});
    EXPECT_EQ(reported_flags(), "[1]");
}

// --- The lock.

TEST_F(Firmware, a_second_order_is_dropped_while_one_is_carried_out) {
    debug_flag = 1;
    Lines second;
    board.clock.on_sleep = [&](unsigned seconds) {
        if (seconds == 10)
            std::thread([&] {
                Lines before = console();
                EXPECT_EQ(order(R"("active_partition":2,"factory_reset":true)"), 0);
                Lines after = console();
                second.assign(
                    after.begin() + static_cast<std::ptrdiff_t>(before.size()), after.end());
            }).join();
        return 0u;
    };
    EXPECT_EQ(
        trace_of(upgrade_order), (upgrade_calls + Lines{"sleep(2) = 0", "sal_sys_reboot() = 0"}));
    EXPECT_EQ(second, (Lines{"vxc_firmware_set", "vxc_firmware_set is processing"}));
}

TEST_F(Firmware, the_next_order_after_one_is_taken) {
    for (int turn = 1; turn <= 2; ++turn) {
        order(R"("factory_reset":true)");
        EXPECT_EQ(board.reboots, turn);
    }
}

// A lock of no kind that there is can never be taken.
TEST_F(Firmware, a_lock_that_cannot_be_taken_drops_the_order) {
    debug_flag = 1;
    std::memset(&vx_fm_mutex, 0xFF, sizeof vx_fm_mutex);
    EXPECT_EQ(complaint_of(upgrade_order, Lines{}), "pthread_mutex_trylock: Invalid argument\n");
    EXPECT_EQ(
        console(), (Lines{"vxc_firmware_set", "vxc_firmware_set pthread_mutex_trylock error"}));
}

TEST_F(Firmware, a_lock_that_cannot_be_released_keeps_the_switch_up) {
    debug_flag = 1;
    mutex_is(PTHREAD_MUTEX_ERRORCHECK);
    board.clock.on_sleep = [](unsigned seconds) {
        if (seconds == 2)
            pthread_mutex_unlock(&vx_fm_mutex);
        return 0u;
    };
    EXPECT_EQ(
        complaint_of(upgrade_order, (upgrade_calls + Lines{"sleep(2) = 0"})),
        "pthread_mutex_unlock: Operation not permitted\n");
    EXPECT_EQ(console().back(), "vxc_firmware_set pthread_mutex_unlock error");
}

// --- The simulated flash.

TEST(Flash, the_switch_starts_the_selected_image_and_the_other_when_that_is_damaged) {
    TempFolder folder;
    auto running = [&] {
        sim::Board board(folder.path());
        return std::string(fds_sys_version_ret());
    };
    sim::Flash flash(folder.path());
    EXPECT_EQ(running(), "1.0.0");
    flash.select(1);
    EXPECT_EQ(running(), "0.9.0");
    flash.write(1, flash.read(1) + "more");
    EXPECT_EQ(running(), "1.0.0");
}

TEST(Flash, a_restart_of_the_agent_alone_starts_no_other_image) {
    TempFolder folder;
    {
        sim::Board board(folder.path());
        sim::Flash(folder.path()).select(1);
        board.start_agent_again = [] {};
        EXPECT_TRUE(board.restart_agent());
    }
    sim::Board board(folder.path());
    EXPECT_STREQ(fds_sys_version_ret(), "1.0.0");
}

TEST_F(OnBoard, a_download_stays_on_the_board_and_knows_its_schemes) {
    EXPECT_TRUE(sim::write_atomically(folder.path().parent_path() / "vx_outside", "x"));
    EXPECT_EQ(sal_fwImage_download("/tmp/image", "file:///../vx_outside"), 1);
    EXPECT_EQ(sal_fwImage_download("/tmp/image", "tftp://localhost/image"), 3);
    EXPECT_EQ(sal_fwImage_download("/tmp/image", ""), 3);
    EXPECT_EQ(sal_fwImage_download("/tmp/image", "http://127.0.0.1:1/image"), 1);
    std::filesystem::remove(folder.path().parent_path() / "vx_outside");
}
