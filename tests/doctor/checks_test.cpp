// Checks of the doctor, one at a time, on a simulated switch whose platform library fails.
#include <set>
#include <string>

#include "base/errors.h"
#include "base/state.h"
#include "doctor/agent_checks.h"
#include "doctor/cloud_checks.h"
#include "doctor/network_checks.h"
#include "doctor/peer.h"
#include "doctor/resource_checks.h"
#include "tests/support/on_board.h"

namespace {

class Doctor : public OnBoard {
  protected:
    // The name of what a check finds.
    std::string look(int (*check)(char* detail), const Findings& findings) {
        detail[0] = 0;
        return findings.rows[check(detail)].name;
    }
    std::string report() { return look(check_report, report_findings); }

    char detail[DETAIL_SIZE] = "";
};

TEST_F(Doctor, a_report_without_a_failure_is_whole) {
    EXPECT_EQ(report(), "whole");
    EXPECT_EQ(detail, std::string(detail).substr(0, std::string(detail).find(" KB") + 3));
}

TEST_F(Doctor, whatever_call_fails_the_report_is_whole_or_told_with_the_codes) {
    report();
    Lines names = calls();
    std::set<std::string> told;
    for (const std::string& name : std::set<std::string>(names.begin(), names.end())) {
        if (!name.starts_with("sal_"))
            continue;
        forget();
        fail_always(name, 77);
        std::string found = report();
        ASSERT_TRUE(found == "whole" || found == "sections-fail") << name << ": " << found;
        EXPECT_EQ(found == "sections-fail", !recorded().empty()) << name;
        if (found == "sections-fail" && std::string(detail).find(" 77") != std::string::npos)
            told.insert(name);
    }
    EXPECT_GT(told.size(), 20U);
}

TEST_F(Doctor, without_memory_there_is_no_report) {
    board.faults.plan({sim::Edge::allocation, "", 1, true, 1, 0});
    EXPECT_EQ(report(), "no-memory");
}

TEST_F(Doctor, of_many_codes_the_first_eight_are_shown) {
    fail_always("", 77);
    report();
    std::string shown = detail;
    std::size_t codes = 0;
    for (std::size_t at = 0; (at = shown.find(" 77", at)) != std::string::npos; ++at)
        ++codes;
    EXPECT_EQ(codes, 8U) << shown;
}

TEST_F(Doctor, a_sequence_number_that_fails_is_told) {
    fail("sal_vxcloud_seqno_get", 7);
    EXPECT_EQ(look(check_saved, saved_findings), "unreadable");
    EXPECT_STREQ(detail, "sal_vxcloud_seqno_get = 7");
    EXPECT_EQ(look(check_saved, saved_findings), "readable");
}

TEST_F(Doctor, memory_is_little_below_sixteen_megabytes) {
    put_file("/proc/meminfo", "MemFree: 5 kB\nMemAvailable: 16383 kB\n");
    EXPECT_EQ(look(check_memory, memory_findings), "little");
    put_file("/proc/meminfo", "MemFree: 5 kB\nMemAvailable: 16384 kB\n");
    EXPECT_EQ(look(check_memory, memory_findings), "enough");
}

TEST_F(Doctor, an_old_system_tells_only_what_is_free) {
    put_file("/proc/meminfo", "MemTotal: 65536 kB\nMemFree: 20480 kB\n");
    EXPECT_EQ(look(check_memory, memory_findings), "enough");
    EXPECT_STREQ(detail, "20 MB available");
}

TEST_F(Doctor, a_text_of_another_kind_in_the_memory_file_tells_nothing) {
    put_file("/proc/meminfo", "\xff\n");
    EXPECT_EQ(look(check_memory, memory_findings), "unknown");
}

TEST_F(Doctor, hosts_are_taken_apart_into_name_and_port) {
    struct {
        const char* host;
        const char* name;
        int port;
    } const cases[] = {
        {"cloud.example", "cloud.example", 443},
        {"cloud.example:8443", "cloud.example", 8443},
        {"192.0.2.7", "192.0.2.7", 443},
        {"[2001:db8::1]", "2001:db8::1", 443},
        {"[2001:db8::1]:8443", "2001:db8::1", 8443},
    };
    for (const auto& one : cases) {
        PeerAddress address = address_of({one.host, 443});
        EXPECT_STREQ(address.name, one.name);
        EXPECT_EQ(address.port, one.port) << one.host;
    }
}

TEST_F(Doctor, a_portal_is_a_redirect_a_page_or_a_demand_to_log_in) {
    Probe plain = {};
    plain.status = 200;
    EXPECT_FALSE(is_portal(plain));
    Probe page = plain;
    page.is_page = true;
    EXPECT_TRUE(is_portal(page));
    Probe demand = plain;
    demand.status = 511;
    EXPECT_TRUE(is_portal(demand));
    Probe redirect = plain;
    snprintf(redirect.redirect, sizeof redirect.redirect, "http://portal.example/");
    EXPECT_TRUE(is_portal(redirect));
    Probe unmarked = plain;
    snprintf(unmarked.body, sizeof unmarked.body, "<!DOCTYPE html>");
    EXPECT_TRUE(is_portal(unmarked));
}

TEST_F(Doctor, a_description_that_is_too_long_is_cut) {
    std::string text(2 * DETAIL_SIZE, 'x');
    describe(detail, "%s", text.c_str());
    describe_more(detail, "more");
    EXPECT_EQ(std::string(detail), text.substr(0, DETAIL_SIZE - 1));
}

TEST_F(Doctor, an_error_list_that_was_full_before_does_not_spoil_the_report) {
    for (int i = 0; i < 1024; ++i)
        record_error(5);
    EXPECT_EQ(report(), "whole");
}

} // namespace
