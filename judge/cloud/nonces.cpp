// Replays, and what must not be taken for one.
#include <thread>

#include "judge/cloud/families.h"

namespace judge::cloud {

namespace {

constexpr const char* once = "1.3: a request sent twice is refused the second time";
constexpr const char* triple = "1.3: the triple of MAC, nonce and timestamp is what is remembered";

void judge_replay(Session& session) {
    const Checkin checkin = session.good();
    session.send(checkin);
    Check check(session, "nonces", "a replay", Level::must, once);
    check.sent("a check-in, and the same bytes again", checkin);
    expect_refused(check, session.send(checkin));
}

void judge_other_body(Session& session) {
    Checkin checkin = session.good();
    session.send(checkin);
    checkin.body += "\n";
    Check check(session, "nonces", "a replay with another report", Level::must, triple);
    check.sent("nonce and timestamp of an earlier check-in, with another report, signed", checkin);
    expect_refused(check, session.send(checkin));
}

void judge_restart(Session& session) {
    Checkin checkin = session.good();
    checkin.timestamp -= 20;
    session.send(checkin);
    checkin.timestamp += 20;
    Check check(
        session, "nonces", "nonces of a restarted switch", Level::must,
        "1.3: after a restart the same nonces follow, each with a later timestamp");
    check.sent("the nonce of an earlier check-in with a later timestamp", checkin);
    expect_served(check, session.send(checkin));
}

void judge_stranger(Session& session) {
    Checkin checkin = session.good();
    Checkin forged = checkin;
    forged.signature = std::string(64, '0');
    session.send(forged);
    Check check(
        session, "nonces", "a nonce that a stranger tried", Level::must,
        "1.3: a triple is recorded only after the signature was found right");
    check.sent("a check-in of which nonce and timestamp came before, wrongly signed", checkin);
    expect_served(check, session.send(checkin));
}

// The same bytes from several connections in the same moment.
void judge_race(Session& session) {
    constexpr std::size_t count = 4;
    const Checkin checkin = session.good();
    std::vector<Reply> replies(count);
    std::vector<std::thread> senders;
    Check check(session, "nonces", "the same check-in at once", Level::must, once);
    for (Reply& reply : replies)
        senders.emplace_back([&] { reply = session.send(checkin); });
    for (std::thread& sender : senders)
        sender.join();
    std::size_t taken = 0;
    std::string texts;
    for (const Reply& reply : replies) {
        taken += reply.is_success();
        texts += (texts.empty() ? "" : "; ") + reply.text();
    }
    check.sent("the same bytes over " + std::to_string(count) + " connections at once", checkin);
    check.came(texts);
    if (taken > 1)
        check.fault("taken");
    if (taken == 0)
        check.fault("not served");
}

} // namespace

void judge_nonces(Session& session) {
    judge_replay(session);
    judge_other_body(session);
    judge_restart(session);
    judge_stranger(session);
    judge_race(session);
}

} // namespace judge::cloud
