// What a peer with bad intentions tries: requests without an end, documents without a bottom, other
// people's web pages, files that others can read.
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <future>

#include "lab/body_share.h"
#include "lab/json_text.h"
#include "lab/open_sockets.h"
#include "lab/private_file.h"
#include "lab/store.h"
#include "lab/thread_each.h"
#include "lab_fixture.h"

namespace lab_test {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

std::string nest(std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); }

std::string make_deep_action(std::size_t depth) {
    return R"({"action":"checkin","deep":)" + nest(depth) + "}";
}

// --- Requests without an end.

class Hostile : public Lab {
  protected:
    // Every listener, and what a request to it begins with.
    std::vector<std::pair<Peer, std::string>> list_listeners() {
        std::vector<std::pair<Peer, std::string>> list;
        for (const Peer& peer :
             {checkin_listener(), Peer{checkin_listener().port, ""}, plain_listener(),
              keeper_listener(), admin_listener()})
            list.emplace_back(
                peer,
                "POST /switches HTTP/1.1\r\nHost: localhost:" + std::to_string(peer.port) + "\r\n");
        return list;
    }
    void expect_alive() { EXPECT_EQ(report_seqno(1), Json::object()); }
};

std::string make_chunks(std::size_t bytes) {
    const std::string chunk = "10000\r\n" + std::string(0x10000, 'x') + "\r\n";
    std::string text;
    while (text.size() < bytes)
        text += chunk;
    return text;
}

TEST_F(Hostile, a_head_without_an_end_is_not_taken) {
    for (const auto& [peer, begin] : list_listeners()) {
        std::string lines;
        for (int i = 0; i < 1000; i++)
            lines += "X-Line: " + std::string(100, 'x') + "\r\n";
        const Answer answer = talk(peer, begin + lines + "\r\n");
        EXPECT_NE(answer.status, 200);
        EXPECT_NE(answer.status, 405) << "was taken for a request";
        EXPECT_EQ(talk(peer, "GET /" + std::string(1 << 20, 'x')).status, 0);
    }
    expect_alive();
}

TEST_F(Hostile, a_chunked_body_is_bounded_as_it_comes) {
    for (const auto& [peer, begin] : list_listeners()) {
        const Answer answer =
            talk(peer, begin + "Transfer-Encoding: chunked\r\n\r\n" + make_chunks(9 << 20));
        EXPECT_GE(answer.status, 400) << begin;
    }
    expect_alive();
}

TEST_F(Hostile, a_chunk_of_which_the_size_never_ends_is_bounded) {
    const std::string endless = "Transfer-Encoding: chunked\r\n\r\n1;" + std::string(200000, 'x');
    for (const Peer& peer : {plain_listener(), keeper_listener()})
        EXPECT_GE(talk(peer, "POST / HTTP/1.1\r\n" + endless).status, 400);
    expect_alive();
}

TEST_F(Hostile, a_long_report_is_refused_by_what_came_of_it) {
    Checkin checkin;
    checkin.body = "{\"x\":\"" + std::string(9 << 20, 'x') + "\"}";
    const Answer answer = check_in(checkin);
    EXPECT_EQ(answer.status, 403);
    EXPECT_NE(answer.body.find("the body is longer than 8388608 bytes"), std::string::npos);
    checkin.body = "{\"x\":\"" + std::string(1 << 20, 'x') + "\"}";
    EXPECT_EQ(check_in(checkin).status, 200);
}

TEST_F(Hostile, a_long_document_is_refused_and_a_long_image_is_not) {
    const std::string bytes(5 << 20, ' ');
    EXPECT_EQ(
        admin("POST", of_switch("/settings"), bytes, 400)["error"],
        "the body is longer than 4194304 bytes");
    admin("POST", of_switch("/actions"), bytes, 400);
    admin("PUT", "/firmware/v2.bix", bytes, 201);
}

TEST_F(Hostile, the_body_of_a_get_or_delete_is_not_read) {
    misbehave({{"mode", "slow"}});
    const Peer peer = admin_listener();
    const std::string head =
        "DELETE /misbehave HTTP/1.1\r\nHost: localhost:" + std::to_string(peer.port) +
        "\r\nContent-Length: 3000000\r\n\r\n";
    EXPECT_EQ(talk(peer, head + std::string(3000000, 'x')).status, 200);
    EXPECT_TRUE(admin_get("/misbehave").empty());
}

TEST(BodyShare, bodies_together_are_bounded) {
    lab::BodyShare share;
    EXPECT_TRUE(share.grow(lab::BodyShare::most_in_all - 10));
    {
        lab::BodyShare other;
        EXPECT_TRUE(other.grow(10));
        EXPECT_FALSE(other.grow(1));
    }
    EXPECT_TRUE(share.grow(10));
    EXPECT_FALSE(share.grow(1));
}

TEST(OpenSockets, a_slow_peer_is_let_go_and_a_waiting_one_is_not) {
    lab::OpenSockets sockets(0s);
    int slow[2], waiting[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, slow), 0);
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, waiting), 0);
    sockets.add(slow[0]);
    sockets.add(waiting[0]);
    sockets.work(waiting[0]);
    std::this_thread::sleep_for(1ms);
    sockets.end_slow();
    EXPECT_EQ(send(slow[1], "x", 1, MSG_NOSIGNAL), -1);
    EXPECT_EQ(send(waiting[1], "x", 1, MSG_NOSIGNAL), 1);
    for (const int socket : {slow[0], slow[1], waiting[0], waiting[1]})
        close(socket);
}

TEST(ThreadEach, a_task_without_a_thread_waits_and_says_so) {
    std::promise<void> full, done;
    int times_full = 0;
    lab::ThreadEach threads(1, [&] {
        if (times_full++ == 0)
            full.set_value();
    });
    threads.run([&] { full.get_future().wait(); });
    threads.run([&] { done.set_value(); });
    done.get_future().wait();
    threads.wait_for_all();
    EXPECT_GE(times_full, 1);
}

// --- Documents without a bottom.

TEST(JsonText, depth_is_counted_outside_strings) {
    EXPECT_FALSE(lab::is_nested_too_deeply(nest(64)));
    EXPECT_TRUE(lab::is_nested_too_deeply(nest(65)));
    EXPECT_TRUE(lab::is_nested_too_deeply(std::string(1000000, '[')));
    EXPECT_FALSE(lab::is_nested_too_deeply('"' + std::string(100, '[') + '"'));
    EXPECT_FALSE(lab::is_nested_too_deeply(R"("\")" + std::string(100, '[') + '"'));
    std::string row;
    for (int i = 0; i < 100; i++)
        row += "[{}],";
    EXPECT_FALSE(lab::is_nested_too_deeply(row));
}

TEST_F(Hostile, no_deep_document_is_taken) {
    admin("POST", of_switch("/actions"), make_deep_action(100000), 400);
    admin("POST", of_switch("/settings"), R"({"acl":)" + nest(100000) + "}", 400);
    admin("POST", "/misbehave", R"({"mode":)" + nest(100000) + "}", 400);
    admin("PUT", "/config", R"({"window":)" + nest(100000) + "}", 400);
    admin("PUT", of_switch(""), R"({"key":)" + nest(100000) + "}", 400);
    Checkin checkin;
    checkin.body = R"({"x":)" + nest(100000) + "}";
    EXPECT_NE(check_in(checkin).body.find("nested too deeply"), std::string::npos);
    EXPECT_TRUE(admin_get(of_switch("/actions")).empty());
    EXPECT_TRUE(admin_get(of_switch("/settings")).empty());
    expect_alive();
}

TEST_F(Hostile, a_deep_document_of_an_earlier_version_is_shown_and_sent_as_text) {
    stop();
    const std::string deep = make_deep_action(100000);
    {
        lab::Store store((folder_.path() / "lab.db").string());
        store.queue_action(mac, deep, 1);
        store.queue_settings(mac, R"({"acl":)" + nest(100000) + "}", 1);
        store.add_event({0, 1, "checkin", mac, "text", nest(100000)});
    }
    start();
    EXPECT_EQ(admin_get(of_switch("/actions"))[0]["document"], deep);
    EXPECT_TRUE(admin_get(of_switch("/settings"))[0]["document"].is_string());
    EXPECT_EQ(events("checkin")[0]["text"], "text");
    EXPECT_EQ(get(keeper_listener(), std::string("/router/listen/") + mac).body, deep);
    EXPECT_EQ(check_in(Checkin()).status, 200);
}

TEST_F(Hostile, what_waits_for_a_switch_is_bounded_and_what_is_done_is_forgotten) {
    stop();
    {
        lab::Store store((folder_.path() / "lab.db").string());
        for (int i = 0; i < 1002; i++) {
            store.queue_action(mac, R"({"action":"checkin"})", 1);
            store.take_action(mac);
        }
        EXPECT_EQ(store.list_actions(mac).size(), 1001u); // forgotten when the next one is queued
        for (int i = 0; i < 1000; i++) {
            store.queue_action(mac, R"({"action":"checkin"})", 1);
            store.queue_settings(mac, R"({"lldp":{}})", 1);
        }
    }
    start();
    EXPECT_EQ(
        admin("POST", of_switch("/actions"), R"({"action":"checkin"})", 409)["error"],
        "1000 actions already wait for the switch");
    admin("POST", of_switch("/settings"), R"({"lldp":{}})", 409);
}

TEST_F(Hostile, an_event_quotes_the_beginning_of_a_long_text_only) {
    admin(
        "POST", of_switch("/actions"),
        R"({"action":"checkin","long":")" + std::string(100000, 'x') + R"("})", 201);
    EXPECT_EQ(std::string(events("action-queued")[0]["text"]).size(), 1003u);
    Checkin checkin;
    checkin.authorization = std::string(7000, 'x');
    check_in(checkin);
    EXPECT_EQ(std::string(events("rejected")[0]["reason"]).size(), 1003u);
}

// --- Other people's web pages.

struct Visitor {
    const char* lines; // PORT stands for the port
    int status;
};

TEST_F(Hostile, the_admin_interface_answers_to_its_own_names_and_pages_only) {
    const Visitor visitors[] = {
        {"Host: 127.0.0.1:PORT", 200},
        {"Host: localhost:PORT", 200},
        {"Host: LocalHost:PORT", 200},
        {"Host: [::1]:PORT", 200},
        {"Host: 127.0.0.1:PORT\r\nOrigin: http://127.0.0.1:PORT", 200},
        {"Host: localhost:PORT\r\nOrigin: http://localhost:PORT\r\nSec-Fetch-Site: same-origin",
         200},
        {"Host: localhost:PORT\r\nSec-Fetch-Site: none", 200},
        {"Host: localhost", 403},
        {"Host: localhost:1PORT", 403},
        {"Host: rebound.example:PORT", 403},
        {"Host: localhost.rebound.example:PORT", 403},
        {"Host: 127.0.0.1.rebound.example:PORT", 403},
        {"Host: 192.0.2.1:PORT", 403},
        {"Host:", 403},
        {"Accept: */*", 403},
        {"Host: localhost:PORT\r\nHost: localhost:PORT", 403},
        {"Host: localhost:PORT\r\nOrigin: http://page.example", 403},
        {"Host: localhost:PORT\r\nOrigin: http://localhost:1", 403},
        {"Host: localhost:PORT\r\nOrigin: https://localhost:PORT", 403},
        {"Host: localhost:PORT\r\nOrigin: http://localhost:PORT.page.example", 403},
        {"Host: localhost:PORT\r\nOrigin: null", 403},
        {"Host: localhost:PORT\r\nOrigin:", 403},
        {"Host: localhost:PORT\r\nOrigin: http://localhost:PORT\r\nOrigin: http://page.example",
         403},
        {"Host: localhost:PORT\r\nSec-Fetch-Site: cross-site", 403},
        {"Host: localhost:PORT\r\nSec-Fetch-Site: same-site", 403},
    };
    const Peer peer = admin_listener();
    for (const Visitor& visitor : visitors) {
        std::string lines = visitor.lines;
        for (std::size_t at; (at = lines.find("PORT")) != std::string::npos;)
            lines.replace(at, 4, std::to_string(peer.port));
        const Answer answer = talk(peer, "GET /switches HTTP/1.1\r\n" + lines + "\r\n\r\n");
        EXPECT_EQ(answer.status, visitor.status) << lines << "\n" << answer.body;
        EXPECT_EQ(answer.body.find(mac) != std::string::npos, visitor.status == 200) << lines;
    }
}

TEST_F(Hostile, a_refused_page_is_told_why_and_changes_nothing) {
    const Peer peer = admin_listener();
    const std::string begin = "POST /switches/" + std::string(mac) + "/actions HTTP/1.1\r\n";
    const std::string end = "Content-Length: 20\r\n\r\n{\"action\":\"checkin\"}";
    const std::string own = "Host: localhost:" + std::to_string(peer.port) + "\r\n";
    EXPECT_NE(
        talk(peer, begin + "Host: rebound.example\r\n" + end)
            .body.find("answers to Host 127.0.0.1:"),
        std::string::npos);
    EXPECT_NE(
        talk(peer, begin + own + "Origin: http://page.example\r\n" + end)
            .body.find("not for pages of \\\"http://page.example\\\""),
        std::string::npos);
    EXPECT_TRUE(admin_get(of_switch("/actions")).empty());
    EXPECT_EQ(talk(peer, begin + own + end).status, 201);
}

// --- Files that others can read.

bool is_private(const fs::path& path) {
    return fs::status(path).permissions() == (fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Hostile, secrets_are_readable_by_the_owner_only) {
    admin("PUT", "/switches/000000000001", R"({"key":"k","secret":"s"})", 201);
    for (const char* name : {"lab.db", "lab.db-wal", "lab.db-shm", "ca/authority.key"})
        EXPECT_TRUE(is_private(folder_.path() / name)) << name;
}

TEST_F(Hostile, files_of_an_earlier_version_are_closed_to_others) {
    stop();
    const fs::path database = folder_.path() / "lab.db", key = folder_.path() / "ca/authority.key";
    for (const fs::path& path : {database, key})
        fs::permissions(path, fs::perms(0644));
    for (const char* name : {"lab.db-wal", "lab.db-shm"}) {
        std::ofstream(folder_.path() / name).flush();
        fs::permissions(folder_.path() / name, fs::perms(0644));
    }
    start();
    for (const char* name : {"lab.db", "lab.db-wal", "lab.db-shm", "ca/authority.key"})
        EXPECT_TRUE(is_private(folder_.path() / name)) << name;
    expect_alive();
}

TEST_F(Hostile, a_key_is_never_written_to_a_file_that_others_can_read) {
    stop();
    fs::remove(folder_.path() / "ca/authority.key");
    const fs::path draft = folder_.path() / "ca/authority.key.new";
    std::ofstream(draft).flush();
    fs::permissions(draft, fs::perms(0666));
    start();
    EXPECT_TRUE(is_private(folder_.path() / "ca/authority.key"));
}

TEST(PrivateFile, a_file_that_cannot_be_made_private_is_not_used) {
    EXPECT_THROW(lab::make_private_file("/nowhere/file"), std::runtime_error);
}

} // namespace

} // namespace lab_test
