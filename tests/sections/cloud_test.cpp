// The agent's own settings.
#include "sections/cloud.h"

#include <cstring>

#include "base/state.h"
#include "tests/support/on_board.h"

namespace {

class Cloud : public OnBoard {
  protected:
    Cloud() {
        std::strcpy(macstr, "021b2c3d4e5f");
        checkin_connect_establish = 1;
    }

    void set(const std::string& members) {
        forget();
        Json document("{\"cloud\": {" + members + "}}");
        vxc_cloud_set(document);
    }
    bool asked_for_checkin() const {
        return checkin_connect_retry == 1 && checkin_connect_establish == 0;
    }
    std::string report() {
        return report_of([](cJSON* system) {
                   vxc_cloud_get(system);
                   return 0;
               })
            .text;
    }
};

} // namespace

TEST_F(Cloud, report) {
    std::strcpy(CheckinHost, "a.example");
    std::strcpy(fallback_host, "b.example");
    std::strcpy(ConnectionKeeperHost, "c.example:81");
    CheckinInterval = 600;
    device.cloud.seqno = 17;
    EXPECT_EQ(
        report(), R"({"cloud":{"checkin_host":"a.example","fallback_host":"b.example",)"
                  R"("config_seqno":17,"connkeeper_host":"c.example:81","checkin_interval":600}})");
}

TEST_F(Cloud, sequence_number_is_reported_as_1_when_the_store_gives_nothing) {
    device.cloud.seqno = 17;
    fail("sal_vxcloud_seqno_get", 5);
    EXPECT_NE(report().find(R"("config_seqno":1,)"), std::string::npos);
    EXPECT_TRUE(recorded().empty());
}

TEST_F(Cloud, absent_object_does_nothing) {
    Json document(R"({"other": {}})");
    vxc_cloud_set(document);
    vxc_cloud_set(nullptr);
    EXPECT_TRUE(trace().empty());
}

TEST_F(Cloud, everything_is_applied_in_a_fixed_order) {
    set(R"("checkin_type": 2, "connect_timeout": 5, "timeout": 6, "checkin_interval": 60,
           "connkeeper_host": "k", "checkin_host": "h", "checkin_url": "u", "fallback_host": "f",
           "secret": "ss", "key": "kk")");
    EXPECT_EQ(
        trace(), (Lines{
                     "sal_vxcloud_key_set((14 characters)) = 0",
                     "sal_vxcloud_secret_set((14 characters)) = 0",
                     "sal_vxcloud_fallback_host_set(\"f\") = 0",
                     "sal_vxcloud_fallback_host_get() = 0",
                     "sal_vxcloud_checkin_host_set(\"u\") = 0",
                     "sal_vxcloud_checkin_host_get() = 0",
                     "sal_vxcloud_checkin_host_set(\"h\") = 0",
                     "sal_vxcloud_checkin_host_get() = 0",
                     "sal_vxcloud_connkeeper_host_set(\"k\") = 0",
                     "sal_vxcloud_connkeeper_host_get() = 0",
                     "sal_vxcloud_checkin_interval_set(60) = 0",
                     "sal_vxcloud_checkin_interval_get() = 0",
                 }));
    EXPECT_STREQ(gCattr.key, "kk");
    EXPECT_STREQ(gCattr.secret, "ss");
    EXPECT_STREQ(fallback_host, "f");
    EXPECT_STREQ(CheckinHost, "h");
    EXPECT_STREQ(ConnectionKeeperHost, "k");
    EXPECT_EQ(CheckinInterval, 60);
    EXPECT_EQ(checkin_timeout, 6);
    EXPECT_EQ(checkin_connect_timeout, 5);
    EXPECT_EQ(checkin_type, CHECKIN_IPV6_ONLY);
    EXPECT_EQ(device.cloud.key, "kk021b2c3d4e5f");
}

TEST_F(Cloud, key_without_secret_changes_nothing) {
    set(R"("key": "kk")");
    EXPECT_TRUE(trace().empty());
    EXPECT_STREQ(gCattr.key, "");
    set(R"("secret": "ss")");
    EXPECT_TRUE(trace().empty());
    EXPECT_STREQ(gCattr.secret, "");
}

TEST_F(Cloud, account_is_cut_at_127_characters) {
    std::string longest(127, 'k');
    set("\"key\": \"" + longest + "kk\", \"secret\": \"" + longest + "\"");
    EXPECT_EQ(gCattr.key, longest);
    EXPECT_EQ(gCattr.secret, longest);
}

TEST_F(Cloud, account_that_cannot_be_stored_is_used_and_not_recorded) {
    fail("sal_vxcloud_key_set", 5);
    set(R"("key": "kk", "secret": "ss", "timeout": 9)");
    EXPECT_STREQ(gCattr.key, "kk");
    EXPECT_EQ(checkin_timeout, 9);
    EXPECT_TRUE(recorded().empty());
}

TEST_F(Cloud, checkin_url_is_stored_whole_as_the_checkin_host) {
    set(R"("checkin_url": "https://x/y")");
    EXPECT_EQ(device.cloud.checkin_host, "https://x/y");
    EXPECT_STREQ(CheckinHost, "https://x/y");
    EXPECT_TRUE(asked_for_checkin());
}

TEST_F(Cloud, hosts_of_the_checkin_ask_for_one) {
    for (const char* key : {"fallback_host", "checkin_host"}) {
        checkin_connect_establish = 1;
        checkin_connect_retry = 0;
        set("\"" + std::string(key) + "\": \"h\"");
        EXPECT_TRUE(asked_for_checkin()) << key;
        EXPECT_EQ(connection_url_change, 0u);
    }
}

TEST_F(Cloud, connkeeper_host_alone_leaves_the_checkin_connection) {
    set(R"("connkeeper_host": "k")");
    EXPECT_EQ(connection_url_change, 1u);
    EXPECT_EQ(checkin_connect_establish, 1u);
    EXPECT_EQ(checkin_connect_retry, 0u);
}

TEST_F(Cloud, host_that_the_platform_refuses_ends_the_setter) {
    const struct {
        const char* key;
        const char* call;
    } hosts[] = {
        {"fallback_host", "sal_vxcloud_fallback_host_set"},
        {"checkin_url", "sal_vxcloud_checkin_host_set"},
        {"checkin_host", "sal_vxcloud_checkin_host_set"},
        {"connkeeper_host", "sal_vxcloud_connkeeper_host_set"},
    };
    for (const auto& host : hosts) {
        forget();
        fail(host.call, 66);
        Json document(
            "{\"cloud\": {\"" + std::string(host.key) +
            "\": \"h\", \"checkin_interval\": 70, \"timeout\": 9}}");
        vxc_cloud_set(document);
        EXPECT_EQ(recorded(), (Codes{66})) << host.key;
        EXPECT_EQ(calls(), (Lines{host.call})) << host.key;
    }
    EXPECT_EQ(checkin_timeout, 120);
    EXPECT_EQ(checkin_connect_establish, 1u);
    EXPECT_EQ(connection_url_change, 0u);
}

TEST_F(Cloud, what_was_applied_before_a_refusal_stays) {
    set(R"("fallback_host": "f", "checkin_interval": 1)");
    EXPECT_EQ(device.cloud.fallback_host, "f");
    EXPECT_TRUE(asked_for_checkin());
}

TEST_F(Cloud, longest_keeper_host_fits_and_a_longer_one_is_refused) {
    std::string longest(127, 'k');
    set("\"connkeeper_host\": \"" + longest + "\"");
    EXPECT_EQ(ConnectionKeeperHost, longest);
    set("\"connkeeper_host\": \"" + longest + "k\"");
    EXPECT_EQ(recorded().size(), 1u);
    EXPECT_EQ(ConnectionKeeperHost, longest);
}

TEST_F(Cloud, interval_from_60_to_3600_is_accepted) {
    for (int seconds : {60, 3600}) {
        set("\"checkin_interval\": " + std::to_string(seconds));
        EXPECT_TRUE(recorded().empty());
        EXPECT_EQ(CheckinInterval, seconds);
    }
    EXPECT_EQ(checkin_connect_retry, 0u);
}

TEST_F(Cloud, interval_of_59_or_3601_is_refused_with_28_and_nothing_after_it_applied) {
    for (int seconds : {59, 3601, -1, 0}) {
        set("\"checkin_type\": 2, \"timeout\": 9, \"connect_timeout\": 9, \"checkin_interval\": " +
            std::to_string(seconds));
        EXPECT_EQ(recorded(), (Codes{28})) << seconds;
        EXPECT_TRUE(trace().empty());
    }
    EXPECT_EQ(CheckinInterval, 300);
    EXPECT_EQ(checkin_timeout, 120);
    EXPECT_EQ(checkin_connect_timeout, 120);
    EXPECT_EQ(checkin_type, CHECKIN_ANY_ADDRESS);
}

TEST_F(Cloud, interval_that_the_platform_refuses_ends_the_setter) {
    fail("sal_vxcloud_checkin_interval_set", 5);
    Json document(R"({"cloud": {"checkin_interval": 60, "timeout": 9}})");
    vxc_cloud_set(document);
    EXPECT_EQ(recorded(), (Codes{5}));
    EXPECT_EQ(CheckinInterval, 300);
    EXPECT_EQ(checkin_timeout, 120);
}

TEST_F(Cloud, transport_words_are_not_limited_and_ask_for_a_checkin) {
    const struct {
        const char* key;
        const std::int32_t& word;
    } words[] = {
        {"timeout", checkin_timeout},
        {"connect_timeout", checkin_connect_timeout},
        {"checkin_type", checkin_type},
    };
    for (const auto& setting : words) {
        checkin_connect_establish = 1;
        checkin_connect_retry = 0;
        set("\"" + std::string(setting.key) + "\": -70000");
        EXPECT_EQ(setting.word, -70000) << setting.key;
        EXPECT_TRUE(asked_for_checkin()) << setting.key;
        EXPECT_TRUE(trace().empty());
    }
}

TEST_F(Cloud, sequence_number_is_not_taken_here) {
    set(R"("config_seqno": 99)");
    EXPECT_TRUE(trace().empty());
}
