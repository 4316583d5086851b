// What the lab does wrong when it is told to, and that it stops when told so.
#include <openssl/x509_vfy.h>
#include <zlib.h>

#include <chrono>

#include "lab_fixture.h"

namespace lab_test {

namespace {

using namespace std::chrono_literals;

class Misbehaving : public Lab {
  protected:
    Answer check_in_at(std::size_t listener = 0) {
        return talk(checkin_listener(listener), Checkin().text());
    }

    // The size of a gzip file's content; 0 when there is something wrong with it.
    static std::size_t unpacked_size(const std::string& packed) {
        z_stream stream{};
        std::string piece(1 << 20, '\0');
        inflateInit2(&stream, 15 + 16);
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
        stream.avail_in = static_cast<uInt>(packed.size());
        int state = Z_OK;
        while (state == Z_OK) {
            stream.next_out = reinterpret_cast<Bytef*>(piece.data());
            stream.avail_out = static_cast<uInt>(piece.size());
            state = inflate(&stream, Z_NO_FLUSH);
        }
        inflateEnd(&stream);
        return state == Z_STREAM_END ? stream.total_out : 0;
    }
};

TEST_F(Misbehaving, refuses_connections_until_told_to_behave) {
    misbehave({{"mode", "refuse"}});
    EXPECT_TRUE(check_in_at(0).refused);
    EXPECT_TRUE(check_in_at(1).refused);
    admin("DELETE", "/misbehave");
    EXPECT_EQ(check_in_at(0).status, 200);
    EXPECT_EQ(check_in_at(1).status, 200);
}

TEST_F(Misbehaving, refuses_on_one_port_only) {
    misbehave({{"mode", "refuse"}, {"port", checkin_listener().port}});
    EXPECT_TRUE(check_in_at(0).refused);
    EXPECT_EQ(check_in_at(1).status, 200);
}

TEST_F(Misbehaving, refusing_the_keeper_ends_its_polls) {
    const std::string listen = std::string("/router/listen/") + mac;
    const IdleConnection waiting(
        keeper_listener().port, "GET " + listen + " HTTP/1.1\r\nHost: lab\r\n\r\n");
    events("poll");
    misbehave({{"mode", "refuse"}, {"listener", "keeper"}});
    EXPECT_TRUE(get(keeper_listener(), listen).refused);
    EXPECT_EQ(admin_get("/stats")["waiting_polls"], 0);
}

TEST_F(Misbehaving, resets_the_connection) {
    misbehave({{"mode", "reset"}, {"count", 1}});
    const Answer answer = check_in_at();
    EXPECT_TRUE(answer.connected);
    EXPECT_FALSE(answer.handshake);
    EXPECT_EQ(check_in_at().status, 200);
}

TEST_F(Misbehaving, holds_the_connection_and_says_nothing) {
    misbehave({{"mode", "silent"}, {"listener", "plain"}, {"count", 1}});
    const std::string request = "GET /time HTTP/1.1\r\nHost: lab\r\n\r\n";
    const Answer answer = talk(plain_listener(), request, true); // waits until the client is done
    EXPECT_TRUE(answer.connected);
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(get(plain_listener(), "/time").status, 200);
    misbehave({{"mode", "silent"}, {"listener", "plain"}});
    const IdleConnection held(plain_listener().port, request);
    nth_event("misbehaviour", 2);
    stop(); // does not wait for the client
}

TEST_F(Misbehaving, redirects_and_does_not_process) {
    misbehave({{"mode", "redirect"}, {"count", 1}});
    const Answer answer = check_in_at();
    EXPECT_EQ(answer.status, 307);
    EXPECT_NE(answer.head.find("Location: /elsewhere\r\n"), std::string::npos);
    EXPECT_EQ(counter("checkin"), 0);
}

TEST_F(Misbehaving, announces_half_of_the_body) {
    misbehave({{"mode", "short-length"}, {"count", 1}});
    const Answer answer = check_in_at();
    EXPECT_EQ(answer.status, 200);
    EXPECT_NE(answer.head.find("Content-Length: 1\r\n"), std::string::npos);
    EXPECT_EQ(answer.body, "{}");
    EXPECT_EQ(counter("checkin"), 1);
}

TEST_F(Misbehaving, sends_bodies_and_heads_without_an_end) {
    for (const char* mode : {"endless", "endless-head"}) {
        misbehave({{"mode", mode}, {"count", 1}});
        const Answer answer = check_in_at();
        EXPECT_EQ(answer.status, mode == std::string("endless") ? 200 : 0) << mode;
        EXPECT_FALSE(answer.whole) << mode;
        misbehave({{"mode", mode}, {"listener", "keeper"}, {"count", 1}});
        get(keeper_listener(), std::string("/router/listen/") + mac);
    }
    EXPECT_EQ(counter("checkin"), 0);
    EXPECT_EQ(check_in_at().status, 200);
}

TEST_F(Misbehaving, sends_a_little_that_unpacks_to_much) {
    misbehave({{"mode", "bomb"}, {"count", 1}});
    const Answer answer = check_in_at();
    EXPECT_NE(answer.head.find("Transfer-Encoding: gzip\r\n"), std::string::npos);
    EXPECT_LT(answer.body.size(), 32768u);
    EXPECT_EQ(unpacked_size(answer.body), 16u << 20);
}

TEST_F(Misbehaving, firmware_over_tls_is_spoiled_as_check_ins_are) {
    admin("PUT", "/firmware/image", "bytes", 201);
    EXPECT_EQ(get(checkin_listener(), "/firmware/image").body, "bytes");
    misbehave({{"mode", "unknown-ca"}, {"count", 1}});
    EXPECT_FALSE(get(checkin_listener(), "/firmware/image").handshake);
}

TEST_F(Misbehaving, answers_with_a_status_and_does_not_process) {
    misbehave({{"mode", "status"}, {"count", 2}});
    misbehave({{"mode", "status"}, {"status", 204}, {"count", 1}});
    EXPECT_EQ(check_in_at().status, 500);
    EXPECT_EQ(check_in_at().status, 500);
    EXPECT_EQ(check_in_at().status, 204);
    EXPECT_EQ(counter("checkin"), 0);
    EXPECT_EQ(check_in_at().status, 200);
    EXPECT_EQ(counter("misbehaviour"), 3);
}

TEST_F(Misbehaving, closes_in_the_middle_of_the_body) {
    admin("POST", of_switch("/settings"), R"({"lldp":{}})", 201);
    misbehave({{"mode", "truncate"}, {"count", 1}});
    const Answer cut = check_in_at();
    EXPECT_EQ(cut.status, 200);
    EXPECT_FALSE(cut.whole);
    EXPECT_FALSE(cut.body.empty());
    const Answer sound = check_in_at();
    EXPECT_TRUE(sound.whole);
    EXPECT_TRUE(sound.body.starts_with(cut.body));
}

TEST_F(Misbehaving, sends_the_body_slowly) {
    misbehave({{"mode", "slow"}, {"delay_ms", 60}, {"piece", 1}, {"count", 1}});
    const auto begin = std::chrono::steady_clock::now();
    const Answer answer = check_in_at();
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 120ms);
    EXPECT_EQ(answer.body, "{}");
}

TEST_F(Misbehaving, alters_the_body) {
    misbehave({{"mode", "corrupt"}, {"count", 1}});
    const Answer answer = check_in_at();
    EXPECT_TRUE(answer.whole);
    EXPECT_EQ(answer.body, "{|");
    EXPECT_EQ(check_in_at().body, "{}");
}

struct BadCertificate {
    const char* mode;
    long verdict;
};

TEST_F(Misbehaving, shows_bad_certificates) {
    const BadCertificate cases[] = {
        {"expired", X509_V_ERR_CERT_HAS_EXPIRED},
        {"unknown-ca", X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY},
        {"wrong-name", X509_V_ERR_IP_ADDRESS_MISMATCH},
    };
    std::size_t failures = 0;
    for (const BadCertificate& bad : cases) {
        misbehave({{"mode", bad.mode}, {"count", 1}});
        const Answer answer = check_in_at();
        EXPECT_FALSE(answer.handshake) << bad.mode;
        EXPECT_EQ(answer.verify_result, bad.verdict) << bad.mode;
        EXPECT_FALSE(nth_event("tls-failed", ++failures).is_null());
    }
    const Answer good = check_in_at();
    EXPECT_EQ(good.verify_result, X509_V_OK);
    EXPECT_EQ(good.status, 200);
}

TEST_F(Misbehaving, a_bad_certificate_leaves_the_time_on_the_same_port_alone) {
    misbehave({{"mode", "expired"}, {"count", 1}});
    EXPECT_EQ(get({checkin_listener().port, ""}, "/time").status, 200);
    EXPECT_FALSE(check_in_at().handshake);
}

TEST_F(Misbehaving, on_the_plain_listener_spoils_the_time) {
    misbehave({{"mode", "status"}, {"status", 503}, {"listener", "plain"}, {"count", 1}});
    EXPECT_EQ(check_in_at().status, 200);
    EXPECT_EQ(get(plain_listener(), "/time").status, 503);
    EXPECT_EQ(get(plain_listener(), "/time").status, 200);
}

TEST_F(Misbehaving, earlier_scripts_call_a_listener_a_door) {
    misbehave({{"mode", "status"}, {"door", "keeper"}});
    EXPECT_EQ(admin_get("/misbehave")[0]["listener"], "keeper");
}

TEST_F(Misbehaving, lists_what_is_in_force) {
    misbehave({{"mode", "slow"}, {"count", 3}, {"delay_ms", 5}});
    misbehave({{"mode", "refuse"}, {"listener", "keeper"}});
    check_in_at();
    const Json list = admin_get("/misbehave");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0]["mode"], "slow");
    EXPECT_EQ(list[0]["count"], 2);
    EXPECT_EQ(list[0]["delay_ms"], 5);
    EXPECT_EQ(list[1]["mode"], "refuse");
    EXPECT_EQ(list[1]["listener"], "keeper");
}

TEST_F(Misbehaving, impossible_orders_are_refused) {
    for (const char* order :
         {R"({})", R"([])", R"({"mode":"polite"})", R"({"mode":"status","listener":"admin"})",
          R"({"mode":"expired","listener":"keeper"})", R"({"mode":"refuse","count":1})",
          R"({"mode":"status","status":"500"})", R"({"mode":"status","status":99})",
          R"({"mode":"slow","piece":0})", R"({"mode":"slow","pace":1})",
          R"({"mode":"reset","port":1})", R"({"mode":"reset","count":-1})",
          R"({"mode":"reset","count":18446744073709551615})", R"({"mode":7})"})
        EXPECT_TRUE(admin("POST", "/misbehave", order, 400).contains("error")) << order;
    const Json other_listener = {
        {"mode", "reset"}, {"listener", "keeper"}, {"port", checkin_listener().port}};
    admin("POST", "/misbehave", other_listener.dump(), 400);
    EXPECT_TRUE(admin_get("/misbehave").empty());
}

} // namespace

} // namespace lab_test
