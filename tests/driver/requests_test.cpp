// The driver requests, each against a stand-in for the device node.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <thread>

#include <dlfcn.h>
#include <fcntl.h>

#include "driver/acl.h"
#include "driver/cablediag.h"
#include "driver/dai.h"
#include "driver/lacp.h"
#include "driver/mcast.h"
#include "driver/mib.h"
#include "driver/port.h"
#include "driver/request.h"
#include "driver/stp.h"
#include "driver/switch.h"
#include "driver/trunk.h"
#include "tests/driver/device.h"
#include "tests/driver/operations/operation.h"

namespace {

constexpr std::uint32_t logical_ports = 28;

using Events = std::vector<std::string>;
const Events one_request = {"open", "ioctl", "close"};
const Events no_request = {};
const Events failed_open = {"open"};

// What the driver writes over a record: no byte that a caller could have put there.
unsigned char answer_byte(std::size_t i) { return static_cast<unsigned char>(i * 7 + 11) | 1; }

void overwrite(void* record, std::size_t size) {
    auto* bytes = static_cast<unsigned char*>(record);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = answer_byte(i);
}

bool is_untouched(const Operation& operation) {
    return std::ranges::all_of(operation.outputs, [](const Output& output) {
        return std::all_of(output.place, output.place + output.size, [](unsigned char byte) {
            return byte == untouched;
        });
    });
}

bool holds_answer(const Output& output) {
    for (std::size_t i = 0; i < output.size; ++i) {
        const bool terminator = output.is_text && i + 1 == output.size;
        if (output.place[i] != (terminator ? 0 : answer_byte(output.at + i)))
            return false;
    }
    return true;
}

class Requests : public testing::Test {
  protected:
    Requests() { device() = {}; }
    ~Requests() override { device() = {}; }

    // What the driver answers to everything, over a record of its own.
    void answer_everything(int code) {
        device().answer = [code](std::uint32_t, void*) { return code; };
    }
};

TEST_F(Requests, every_operation_opens_makes_one_request_and_closes) {
    for (Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        device().forget();
        EXPECT_EQ(operation.call(), 0);
        EXPECT_EQ(device().events, one_request);
        EXPECT_EQ(device().open_flags, O_RDWR);
        EXPECT_EQ(device().command, operation.number);
    }
}

TEST_F(Requests, every_record_is_laid_out_as_its_shape_says) {
    for (Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        Bytes seen(operation.sent.size());
        device().answer = [&](std::uint32_t, void* record) {
            std::memcpy(seen.data(), record, seen.size());
            return 0;
        };
        operation.call();
        EXPECT_EQ(seen, operation.sent);
    }
}

TEST_F(Requests, every_result_of_a_successful_request_is_copied_out) {
    for (Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        device().answer = [&](std::uint32_t, void* record) {
            overwrite(record, operation.sent.size());
            return 0;
        };
        EXPECT_EQ(operation.call(), 0);
        EXPECT_TRUE(std::ranges::all_of(operation.outputs, holds_answer));
    }
}

TEST_F(Requests, a_failed_request_returns_the_drivers_code_and_writes_no_output) {
    for (Operation& operation : operations())
        for (int code : {1, 19, 30, 498, 501, 70000, -1}) {
            SCOPED_TRACE(operation.name);
            device().forget();
            device().answer = [&](std::uint32_t, void* record) {
                overwrite(record, operation.sent.size());
                return code;
            };
            EXPECT_EQ(operation.call(), code);
            EXPECT_TRUE(is_untouched(operation));
            EXPECT_EQ(device().events, one_request);
        }
}

TEST_F(Requests, without_a_device_every_operation_returns_501_and_writes_no_output) {
    device().missing = true;
    for (Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        device().forget();
        EXPECT_EQ(operation.call(), 501);
        EXPECT_TRUE(is_untouched(operation));
        EXPECT_EQ(device().events, failed_open);
    }
}

TEST_F(Requests, a_null_pointer_is_498_without_opening_the_device) {
    std::size_t calls = 0;
    for (Operation& operation : operations())
        for (int argument : operation.pointers) {
            SCOPED_TRACE(operation.name);
            EXPECT_EQ(operation.call_with_null(argument), 498);
            EXPECT_TRUE(is_untouched(operation));
            EXPECT_EQ(device().events, no_request);
            ++calls;
        }
    EXPECT_GT(calls, 250u);
}

TEST_F(Requests, a_port_at_or_beyond_the_logical_port_count_is_30_without_opening_the_device) {
    for (Operation& operation : operations()) {
        if (operation.port_argument < 0)
            continue;
        SCOPED_TRACE(operation.name);
        for (std::uint32_t port : {logical_ports, logical_ports + 1, 0xFFFFFFFFu}) {
            EXPECT_EQ(operation.call_at_port(port), 30);
            EXPECT_TRUE(is_untouched(operation));
        }
        EXPECT_EQ(device().events, no_request);
        for (std::uint32_t port : {0u, logical_ports - 1})
            EXPECT_EQ(operation.call_at_port(port), 0);
        EXPECT_EQ(device().events.size(), 6u);
        device().forget();
    }
}

TEST_F(Requests, a_clear_takes_any_port_that_the_driver_takes) {
    EXPECT_EQ(dai_portMib_clear(0xFFFFFFFF), 0);
    EXPECT_EQ(rsd_mib_cntr_clr(logical_ports), 0);
    answer_everything(30);
    EXPECT_EQ(rsd_mib_cntr_clr(logical_ports), 30);
}

// ---- The frame ----

TEST_F(Requests, the_frame_carries_the_record_itself_and_passes_a_negative_result_on) {
    int record = 0;
    device().answer = [&](std::uint32_t, void* seen) {
        EXPECT_EQ(seen, &record);
        return -1;
    };
    EXPECT_EQ(glue_util_ioctl(0xFFFFFFFF, &record), -1);
    EXPECT_EQ(device().command, 0xFFFFFFFFu);
    EXPECT_EQ(device().events, one_request);
}

// ---- Names and numbers ----

TEST_F(Requests, the_list_holds_every_name_once_and_only_the_known_pairs_share_a_number) {
    std::set<std::string> names;
    std::map<std::uint32_t, std::vector<std::string>> by_number;
    for (Operation& operation : operations()) {
        EXPECT_TRUE(names.insert(operation.name).second) << operation.name;
        by_number[operation.number].push_back(operation.name);
    }
    EXPECT_EQ(names.size(), 563u); // and the clear of the debug counters, which makes no request
    std::erase_if(by_number, [](const auto& entry) { return entry.second.size() == 1; });
    const decltype(by_number) shared = {
        {1681, {"mcast_basic_static_groupEntry_set", "mcast_igmpv3_static_groupEntry_set"}},
        {2243, {"lacp_backupMember_get", "lacp_port_state_get"}},
    };
    EXPECT_EQ(by_number, shared);
}

TEST_F(Requests, every_name_is_exported_from_the_executable) {
    for (Operation& operation : operations())
        EXPECT_EQ(dlsym(RTLD_DEFAULT, operation.name.c_str()), operation.function)
            << operation.name;
    for (const char* name : {"glue_util_ioctl", "cablediag_getret", "rsd_mib_cntrDebug_clr"})
        EXPECT_NE(dlsym(RTLD_DEFAULT, name), nullptr) << name;
}

// ---- The members with rules of their own ----

TEST_F(Requests, port_enable_takes_a_port_below_the_count_and_zero_or_one) {
    EXPECT_EQ(rsd_port_enable_set(logical_ports, 1), 30);
    EXPECT_EQ(rsd_port_enable_set(logical_ports, 2), 30);
    EXPECT_EQ(rsd_port_enable_set(0, 2), 19);
    EXPECT_EQ(rsd_port_enable_set(0, 0xFFFFFFFF), 19);
    EXPECT_EQ(device().events, no_request);

    std::uint32_t words[2] = {};
    device().answer = [&](std::uint32_t, void* record) {
        std::memcpy(words, record, sizeof words);
        return 0;
    };
    EXPECT_EQ(rsd_port_enable_set(logical_ports - 1, 1), 0);
    EXPECT_EQ(device().command, 3457u);
    EXPECT_EQ(words[0], logical_ports - 1);
    EXPECT_EQ(words[1], 1u);
}

TEST_F(Requests, no_other_member_judges_a_value) {
    EXPECT_EQ(rsd_port_rxEnable_set(0, 2), 0);
    EXPECT_EQ(dai_enable_set(0xFFFFFFFF), 0);
    EXPECT_EQ(rsd_switch_maxFrameSize_set(0xFFFFFFFF), 0);
}

TEST_F(Requests, a_layer_4_range_stands_at_bytes_276_to_291_and_its_index_comes_back_in_byte_296) {
    unsigned char seen[336];
    device().answer = [&](std::uint32_t, void* record) {
        std::memcpy(seen, record, sizeof seen);
        static_cast<unsigned char*>(record)[296] = 9;
        return 0;
    };
    const std::uint32_t words[4] = {1, 1024, 2048, 0};
    AclPortRange range;
    static_assert(sizeof range == sizeof words);
    std::memcpy(&range, words, sizeof range);
    std::uint8_t index = 77;
    EXPECT_EQ(rsd_acl_l4port_range_set(&range, &index), 0);
    EXPECT_EQ(device().command, 328u);
    EXPECT_EQ(index, 9);
    EXPECT_EQ(std::memcmp(seen + 276, words, 16), 0);
    std::fill_n(seen + 276, 16, 0);
    EXPECT_EQ(std::accumulate(std::begin(seen), std::end(seen), 0), 0);
}

TEST_F(Requests, a_layer_4_range_is_read_back_by_its_index) {
    const std::uint32_t words[4] = {2, 80, 443, 5};
    unsigned char index_seen = 0;
    device().answer = [&](std::uint32_t, void* record) {
        index_seen = static_cast<unsigned char*>(record)[296];
        std::memcpy(static_cast<unsigned char*>(record) + 276, words, sizeof words);
        return 0;
    };
    AclPortRange range = {};
    EXPECT_EQ(rsd_acl_l4port_range_get(&range, 6), 0);
    EXPECT_EQ(device().command, 327u);
    EXPECT_EQ(index_seen, 6);
    EXPECT_EQ(std::memcmp(&range, words, sizeof words), 0);
}

TEST_F(Requests, a_refused_layer_4_range_leaves_the_index_alone) {
    answer_everything(7);
    const AclPortRange range = {1, 1, 2, 0};
    std::uint8_t index = 77;
    EXPECT_EQ(rsd_acl_l4port_range_set(&range, &index), 7);
    EXPECT_EQ(index, 77);
}

TEST_F(Requests, trunk_mode_with_a_null_result_is_498) {
    EXPECT_EQ(rsd_trunk_mode_get(0, nullptr), 498);
    EXPECT_EQ(device().events, no_request);
}

TEST_F(Requests, clearing_the_debug_counters_is_28_without_a_request) {
    EXPECT_EQ(rsd_mib_cntrDebug_clr(), 28);
    device().missing = true;
    EXPECT_EQ(rsd_mib_cntrDebug_clr(), 28);
    EXPECT_EQ(device().events, no_request);
}

TEST_F(Requests, the_cable_record_of_diagnostics_comes_from_the_drivers_cable_read) {
    device().answer = [&](std::uint32_t, void* record) {
        const std::uint8_t pairs[8] = {0, 1, 2, 3, 40, 50, 60, 70};
        std::memcpy(static_cast<unsigned char*>(record) + 4, pairs, sizeof pairs);
        return 0;
    };
    CableResult result = {};
    EXPECT_EQ(cablediag_getret(&result, 4), 0);
    EXPECT_EQ(device().command, 449u);
    EXPECT_EQ(result.port, 4u);
    EXPECT_EQ(result.pair_state[3], 3);
    EXPECT_EQ(result.length_m[0], 40);
    EXPECT_EQ(cablediag_getret(nullptr, 4), 498);
    EXPECT_EQ(cablediag_getret(&result, logical_ports), 30);
}

TEST_F(Requests, both_names_of_a_number_make_the_same_request) {
    std::vector<std::uint32_t> commands;
    device().answer = [&](std::uint32_t command, void*) {
        commands.push_back(command);
        return 0;
    };
    const McastGroup group = {};
    LacpState state;
    mcast_basic_static_groupEntry_set(&group);
    mcast_igmpv3_static_groupEntry_set(&group);
    lacp_backupMember_get(0, &state);
    lacp_port_state_get(0, &state);
    EXPECT_EQ(commands, (std::vector<std::uint32_t>{1681, 1681, 2243, 2243}));
}

TEST_F(Requests, a_text_too_long_for_its_record_is_cut_and_terminated) {
    std::string seen;
    device().answer = [&](std::uint32_t command, void* record) {
        seen = static_cast<char*>(record) + (command == 257 ? 0 : 16);
        return 0;
    };
    const std::string text(1000, 'x');
    stp_mstConfigName_set(text.c_str());
    EXPECT_EQ(seen, text.substr(0, 32));
    rsd_port_descp_set(0, text.c_str());
    EXPECT_EQ(seen, text.substr(0, 255));
    rsd_acl_entry_create(text.c_str(), 1);
    EXPECT_EQ(seen, text.substr(0, 32));
}

// ---- Threads and descriptors ----

TEST_F(Requests, eight_threads_may_mix_requests) {
    auto work = [](unsigned seed) {
        int wrong = 0;
        auto mixed = operations();
        std::ranges::shuffle(mixed, std::mt19937(seed));
        for (Operation& operation : mixed) {
            device().answer = [&](std::uint32_t command, void* record) {
                wrong += command != operation.number;
                wrong += std::memcmp(record, operation.sent.data(), operation.sent.size()) != 0;
                overwrite(record, operation.sent.size());
                return 0;
            };
            wrong += operation.call() != 0;
            wrong += !std::ranges::all_of(operation.outputs, holds_answer);
        }
        return wrong;
    };
    std::vector<int> wrong(8, -1);
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < wrong.size(); ++i)
        threads.emplace_back([&, i] { wrong[i] = work(i); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, std::vector<int>(8, 0));
}

TEST_F(Requests, a_million_requests_leave_no_descriptor_behind) {
    constexpr int requests = 1'000'000;
    const int before = open_descriptors();
    int made = 0, failures = 0;
    device().quiet = true;
    // Every fourth request is refused by the driver.
    device().answer = [&](std::uint32_t, void*) { return made % 4 == 0 ? 5 : 0; };
    for (; made < requests; ++made) {
        std::uint32_t value;
        failures += dai_port_trust_get(5, &value) != 0;
    }
    EXPECT_EQ(failures, requests / 4);
    EXPECT_EQ(open_descriptors(), before);
}

} // namespace

// The platform library's part.
int sys_logic_port_num_ret(void) { return static_cast<int>(logical_ports); }
