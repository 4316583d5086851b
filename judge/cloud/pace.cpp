// Senders that are slow, fall silent or come together.
#include <memory>
#include <thread>

#include "judge/cloud/families.h"

namespace judge::cloud {

namespace {

using namespace std::chrono_literals;

constexpr const char* not_used_up =
    "1.7: a check-in that did not come to its end is none, and uses nothing up";

std::unique_ptr<Connection> connect(Session& session) {
    ++session.requests;
    const Host& host = session.options.checkin;
    return std::make_unique<Connection>(
        host, host.port_or(https_port), &session.trust, session.options.timeout);
}

// Twenty pieces in three seconds.
void judge_slow(Session& session) {
    Check check(session, "pace", "a slow switch", Level::must, "1.7: a switch may be slow");
    const Checkin checkin = session.good();
    const std::string bytes = checkin.text();
    check.sent("a report in 20 pieces, one every 150 ms", checkin);
    const auto connection = connect(session);
    const std::size_t piece = bytes.size() / 20 + 1;
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
        connection->send(std::string_view(bytes).substr(at, piece));
        std::this_thread::sleep_for(150ms);
    }
    expect_served(check, receive_reply(*connection, after(session.options.timeout)));
}

// The connection ends in the middle of the body; then the same request comes whole.
void judge_cut(Session& session) {
    const Checkin checkin = session.good();
    const std::string bytes = checkin.text();
    {
        const auto connection = connect(session);
        connection->send(std::string_view(bytes).substr(0, bytes.size() - 20));
        std::this_thread::sleep_for(100ms);
    }
    Check check(session, "pace", "a check-in that was cut off before", Level::must, not_used_up);
    check.sent("a report whose connection broke, and then the same bytes whole", checkin);
    expect_served(check, session.send(checkin));
}

void judge_two_at_once(Session& session) {
    Check check(
        session, "pace", "two check-ins at once", Level::must,
        "1.7: a switch may have two check-ins under way");
    const Checkin checkins[] = {session.good(), session.good()};
    check.sent("two reports over two connections at once", checkins[0]);
    Reply other;
    std::thread sender([&] { other = session.send(checkins[1]); });
    const Reply reply = session.send(checkins[0]);
    sender.join();
    if (expect_served(check, reply))
        expect_served(check, other);
}

// Who opens connections and says nearly nothing must not keep the others out.
void judge_beside_slow_ones(Session& session) {
    constexpr std::size_t count = 20;
    std::vector<std::unique_ptr<Connection>> slow(count);
    std::vector<std::thread> openers;
    for (auto& one : slow)
        openers.emplace_back([&] {
            one = connect(session);
            one->send("POST " + checkin_path(session.options.account.mac) + " HTTP/1.1\r\nHo");
        });
    for (std::thread& opener : openers)
        opener.join();
    Check check(
        session, "pace", "a check-in beside slow senders", Level::must,
        "1.7: senders that do not come to an end keep nobody out");
    const Checkin checkin = session.good();
    check.sent("a report, while 20 connections wait in the middle of a head", checkin);
    expect_served(check, session.send(checkin));
}

void judge_silent(Session& session) {
    Check check(
        session, "pace", "a sender that falls silent", Level::should,
        "1.7: a sender that falls silent is ended");
    const double patience = session.options.patience;
    if (patience == 0)
        return check.skip("--patience was not given");
    const Checkin checkin = session.good();
    const std::string bytes = checkin.text();
    check.sent("a report without its last byte, over a connection that stays open", checkin);
    const auto connection = connect(session);
    connection->send(std::string_view(bytes).substr(0, bytes.size() - 1));
    const Reply reply = receive_reply(*connection, after(patience));
    check.came(reply);
    if (reply.is_success())
        check.fault(Level::must, "taken", not_used_up);
    else if (reply.late)
        check.fault("waited for without end");
}

} // namespace

void judge_pace(Session& session) {
    judge_slow(session);
    judge_cut(session);
    judge_two_at_once(session);
    judge_beside_slow_ones(session);
    judge_silent(session);
}

} // namespace judge::cloud
