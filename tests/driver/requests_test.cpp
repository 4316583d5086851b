// The driver requests, each against a stand-in for the device node.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <span>
#include <thread>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include "driver/acl.h"
#include "driver/cablediag.h"
#include "driver/dai.h"
#include "driver/lacp.h"
#include "driver/mcast.h"
#include "driver/mib.h"
#include "driver/port.h"
#include "driver/shapes.h"
#include "driver/stp.h"
#include "driver/switch.h"
#include "driver/trunk.h"
#include "tests/driver/device.h"
#include "tests/driver/operations/operation.h"

#if defined(__SANITIZE_ADDRESS__)
#define ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ADDRESS_SANITIZER
#endif
#endif
#ifdef ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#define NOT_INSTRUMENTED [[gnu::no_sanitize_address]]
#else
#define NOT_INSTRUMENTED
#endif

namespace {

// As many logical ports as a port number needs that has a value in every byte.
constexpr std::uint32_t endless_ports = 0xFFFFFFFF;
constexpr std::uint32_t switch_ports = 28;
std::atomic<std::uint32_t> logical_ports = endless_ports;

using Sizes = std::vector<std::size_t>;
using Events = std::vector<std::string>;
const Events one_request = {"open", "ioctl", "close"};
const Events no_request = {};
const Events failed_open = {"open"};

// What the driver writes over a record: no byte that a caller put there, and none that is zero.
unsigned char answer_byte(std::size_t i) {
    return static_cast<unsigned char>((i * 7 + i / 256 * 2 + 10) | 1);
}

void overwrite(void* record, std::size_t size) {
    auto* bytes = static_cast<unsigned char*>(record);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = answer_byte(i);
}

bool is_untouched(const Operation& operation) {
    return std::ranges::all_of(operation.outputs, [](const Output& output) {
        return std::ranges::equal(output.before, std::span(output.place, output.before.size()));
    });
}

// A result holds what the driver answered, a text its terminator, and nothing is written behind it.
bool holds_answer(const Output& output) {
    Bytes expected = output.before;
    for (std::size_t i = 0; i < output.size; ++i)
        expected[i] = answer_byte(output.at + i);
    if (output.is_text)
        expected[output.size - 1] = 0;
    return std::ranges::equal(expected, std::span(output.place, expected.size()));
}

// Leaves `byte` wherever the next function's locals will be.
[[gnu::noinline]] NOT_INSTRUMENTED void fill_stack(unsigned char byte) {
    volatile unsigned char stack[32 * 1024];
    for (volatile unsigned char& place : stack)
        place = byte;
}

class Requests : public testing::Test {
  protected:
    Requests() {
        device() = {};
        logical_ports = endless_ports;
    }
    ~Requests() override { device() = {}; }

    // What the driver answers to everything, over a record of its own.
    void answer_everything(int code) {
        device().answer = [code](std::uint32_t, void*) { return code; };
    }

    // Copies every record of `size` bytes that reaches the driver into `seen`.
    void watch(Bytes& seen, std::size_t size) {
        device().answer = [&seen, size](std::uint32_t, void* record) {
            const auto* bytes = static_cast<unsigned char*>(record);
            seen.assign(bytes, bytes + size);
            return 0;
        };
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

TEST_F(Requests, every_byte_of_every_record_is_defined_and_stands_where_its_shape_says) {
    for (Samples samples : {Samples::words, Samples::complements})
        for (Operation& operation : operations(samples))
            for (unsigned char remains : {0x00, 0x5A, 0xC3}) {
                SCOPED_TRACE(operation.name);
                Bytes seen;
                watch(seen, operation.sent.size());
                fill_stack(remains);
                EXPECT_EQ(operation.call(), 0);
                EXPECT_EQ(seen, operation.sent);
            }
}

TEST_F(Requests, every_argument_is_as_long_as_its_field) {
    for (Operation& operation : operations())
        EXPECT_TRUE(operation.fits) << operation.name;
}

#ifdef ADDRESS_SANITIZER
TEST_F(Requests, every_record_ends_where_the_drivers_ends) {
    for (Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        device().answer = [&](std::uint32_t, void* record) {
            auto* bytes = static_cast<unsigned char*>(record);
            EXPECT_EQ(__asan_region_is_poisoned(bytes, operation.sent.size()), nullptr);
            EXPECT_TRUE(__asan_address_is_poisoned(bytes + operation.sent.size()));
            return 0;
        };
        operation.call();
    }
}
#endif

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

TEST_F(Requests, a_null_pointer_is_498_without_opening_the_device_whatever_the_port) {
    std::size_t calls = 0;
    for (std::uint32_t ports : {endless_ports, 0u})
        for (Operation& operation : operations())
            for (int argument : operation.pointers) {
                SCOPED_TRACE(operation.name);
                logical_ports = ports;
                EXPECT_EQ(operation.call_with_null(argument), 498);
                EXPECT_TRUE(is_untouched(operation));
                EXPECT_EQ(device().events, no_request);
                ++calls;
            }
    EXPECT_GT(calls, 2 * 250u);
}

TEST_F(Requests, a_port_at_or_beyond_the_logical_port_count_is_30_without_opening_the_device) {
    logical_ports = switch_ports;
    for (Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        if (operation.port_argument < 0) {
            EXPECT_EQ(operation.call(), 0); // what is no port may be any number
            device().forget();
            continue;
        }
        for (std::uint32_t port : {28u, 29u, 0x100u, 0x10000u, 0x1000000u, 0xFFFFFFFFu}) {
            EXPECT_EQ(operation.call_at_port(port), 30);
            EXPECT_TRUE(is_untouched(operation));
        }
        EXPECT_EQ(device().events, no_request);
        for (std::uint32_t port : {0u, 27u})
            EXPECT_EQ(operation.call_at_port(port), 0);
        EXPECT_EQ(device().events.size(), 6u);
        device().forget();
    }
}

// Texts of every length around the end of their room, the rest of the record as ever.
TEST_F(Requests, every_text_is_cut_and_terminated_where_its_room_ends) {
    std::size_t texts = 0;
    for (Operation& operation : operations()) {
        const std::size_t size = operation.text_size;
        if (size == 0)
            continue;
        SCOPED_TRACE(operation.name);
        Bytes seen;
        watch(seen, operation.sent.size());
        for (std::size_t length : Sizes{0, 1, size - 2, size - 1, size, size + 1, 1000}) {
            const std::string text(length, 'x');
            Bytes expected = operation.sent;
            const auto field = expected.begin() + static_cast<std::ptrdiff_t>(operation.text_at);
            std::fill_n(field, size, 0);
            std::fill_n(field, std::min(length, size - 1), 'x');
            EXPECT_EQ(operation.call_with_text(text), 0);
            EXPECT_EQ(seen, expected) << length;
        }
        ++texts;
    }
    EXPECT_EQ(texts, 14u);
}

TEST_F(Requests, a_clear_takes_any_port_that_the_driver_takes) {
    logical_ports = switch_ports;
    EXPECT_EQ(dai_portMib_clear(0xFFFFFFFF), 0);
    EXPECT_EQ(rsd_mib_cntr_clr(28), 0);
    answer_everything(30);
    EXPECT_EQ(rsd_mib_cntr_clr(28), 30);
}

// --- The frame.

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

TEST_F(Requests, a_device_that_is_the_first_descriptor_of_all_is_one) {
    const int input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    EXPECT_EQ(dai_enable_set(1), 0);
    EXPECT_EQ(device().events, one_request);
    dup2(input, STDIN_FILENO);
    close(input);
}

// --- Names and numbers.

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

// --- The members with rules of their own.

TEST_F(Requests, port_enable_takes_a_port_below_the_count_and_zero_or_one) {
    logical_ports = switch_ports;
    EXPECT_EQ(rsd_port_enable_set(28, 1), 30);
    EXPECT_EQ(rsd_port_enable_set(28, 2), 30);
    for (std::uint32_t enable : {2u, 0x100u, 0x10001u, 0x1000000u, 0xFFFFFFFFu})
        EXPECT_EQ(rsd_port_enable_set(0, enable), 19);
    EXPECT_EQ(device().events, no_request);

    std::uint32_t words[2] = {};
    device().answer = [&](std::uint32_t, void* record) {
        std::memcpy(words, record, sizeof words);
        return 0;
    };
    EXPECT_EQ(rsd_port_enable_set(27, 1), 0);
    EXPECT_EQ(device().command, 3457u);
    EXPECT_EQ(words[0], 27u);
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
    EXPECT_EQ(cablediag_getret(&result, endless_ports), 30);
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

// --- Threads and descriptors.

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

TEST_F(Requests, a_hundred_thousand_requests_leave_no_descriptor_behind) {
    constexpr int requests = 100'000;
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
int sys_logic_port_num_ret(void) { return static_cast<int>(logical_ports.load()); }
