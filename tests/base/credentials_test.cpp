// The account's key and secret in the switch's store, bound to its MAC.
#include "base/credentials.h"

#include <cstring>

#include "base/debug.h"
#include "base/state.h"
#include "platform/vxcloud.h"
#include "tests/support/on_board.h"

namespace {

struct Kind {
    int (*set)(const char*);
    int (*get)(char*);
    std::string sim::CloudStore::*stored;
    const char* set_call;
    const char* get_call;
    const char* failure;
};

const Kind kinds[] = {
    {api_key_set, api_key_get, &sim::CloudStore::key, "sal_vxcloud_key_set", "sal_vxcloud_key_get",
     "api_key_get fail"},
    {api_secret_set, api_secret_get, &sim::CloudStore::secret, "sal_vxcloud_secret_set",
     "sal_vxcloud_secret_get", "api_secret_get fail"},
};

class Credentials : public OnBoard, public testing::WithParamInterface<Kind> {
  protected:
    Credentials() { std::strcpy(macstr, "aabbccddeeff"); }

    std::string& stored() { return device.cloud.*kind.stored; }

    void expect_refused() {
        char destination[CREDENTIAL_SIZE] = "untouched";
        EXPECT_EQ(kind.get(destination), 1);
        EXPECT_STREQ(destination, "untouched");
    }

    const Kind& kind = GetParam();
};

std::string name_of(const testing::TestParamInfo<Kind>& test) {
    return test.index == 0 ? "key" : "secret";
}

INSTANTIATE_TEST_SUITE_P(Transport, Credentials, testing::ValuesIn(kinds), name_of);

} // namespace

TEST_P(Credentials, stored_with_the_mac_behind_it_and_read_without) {
    EXPECT_EQ(kind.set("ABC123"), 0);
    EXPECT_EQ(stored(), "ABC123aabbccddeeff");
    char destination[CREDENTIAL_SIZE] = {};
    EXPECT_EQ(kind.get(destination), 0);
    EXPECT_STREQ(destination, "ABC123");
    EXPECT_EQ(calls(), (Lines{kind.set_call, kind.get_call}));
}

TEST_P(Credentials, read_adds_no_terminator) {
    kind.set("ABC");
    char destination[CREDENTIAL_SIZE] = "xxxxxx";
    EXPECT_EQ(kind.get(destination), 0);
    EXPECT_STREQ(destination, "ABCxxx");
}

TEST_P(Credentials, value_of_another_device_is_a_failure) {
    stored() = "ABC123aabbccddee00";
    expect_refused();
}

TEST_P(Credentials, value_shorter_than_the_suffix_is_a_failure) {
    for (const char* text : {"", "f", "abbccddeeff"}) {
        stored() = text;
        expect_refused();
    }
}

TEST_P(Credentials, failing_store_is_a_failure) {
    kind.set("ABC");
    fail(kind.get_call, 9);
    expect_refused();
}

TEST_P(Credentials, null_destination_asks_nobody) {
    EXPECT_EQ(kind.get(nullptr), 1);
    EXPECT_EQ(calls(), Lines{});
}

TEST_P(Credentials, failure_is_on_the_console_under_the_debug_flag_only) {
    expect_refused();
    EXPECT_EQ(raw_console(), "");
    debug_flag = 1;
    expect_refused();
    EXPECT_EQ(console(), Lines{kind.failure});
}

TEST_P(Credentials, result_of_the_store_is_passed_on) {
    fail(kind.set_call, 12);
    EXPECT_EQ(kind.set("ABC"), 12);
}

TEST_P(Credentials, longest_that_the_store_takes_with_its_suffix) {
    std::string longest(115, 'k');
    EXPECT_EQ(kind.set(longest.c_str()), 0);
    char destination[CREDENTIAL_SIZE] = {};
    EXPECT_EQ(kind.get(destination), 0);
    EXPECT_EQ(destination, longest);
    EXPECT_NE(kind.set(std::string(127, 'k').c_str()), 0);
    EXPECT_EQ(stored(), longest + "aabbccddeeff");
}

TEST_F(OnBoard, sequence_number_goes_straight_to_the_store) {
    EXPECT_EQ(api_vxcloud_seqno_set(-7), 0);
    std::int32_t number = 0;
    EXPECT_EQ(api_vxcloud_seqno_get(&number), 0);
    EXPECT_EQ(number, -7);
    fail("sal_vxcloud_seqno_get", 5);
    fail("sal_vxcloud_seqno_set", 6);
    EXPECT_EQ(api_vxcloud_seqno_get(&number), 5);
    EXPECT_EQ(api_vxcloud_seqno_set(8), 6);
}
