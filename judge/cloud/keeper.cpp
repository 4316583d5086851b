// Long-polls of the connection keeper: held, answered, dropped and taken up again.
#include <memory>
#include <thread>

#include "judge/cloud/families.h"

namespace judge::cloud {

namespace {

using namespace std::chrono_literals;

constexpr const char* held = "2: a request is held until there is something to do";
constexpr const char* answered = "2: and answered with one action";

// A request of the switch that waits.
class Poll {
  public:
    Poll(Session& session, const std::string& mac) {
        ++session.requests;
        const Host& host = session.options.keeper;
        connection_ = std::make_unique<Connection>(
            host, host.port_or(http_port), nullptr, session.options.timeout);
        connection_->send(
            "GET /router/listen/" + mac + " HTTP/1.1\r\nHost: " + host.text +
            "\r\nAccept: */*\r\n\r\n");
    }
    Reply wait(double seconds) const { return receive_reply(*connection_, after(seconds)); }
    void drop() { connection_.reset(); }

  private:
    std::unique_ptr<Connection> connection_;
};

std::string words(const Session& session, const std::string& mac) {
    return "GET /router/listen/" + mac + " to " + session.options.keeper.text;
}

bool is_action(const Reply& reply) {
    const auto document = reply.status == 200 ? reply.object() : std::nullopt;
    return document && document->contains("action") && (*document)["action"].is_string();
}

// Still waiting, or what is wrong.
void expect_held(Check& check, const Reply& reply) {
    if (reply.late) {
        check.came("it was held");
        return;
    }
    check.came(reply);
    if (reply.status >= 300 && reply.status < 400)
        check.fault("redirected");
    else if (is_action(reply))
        check.fault("an action that nobody pushed");
    else
        check.fault(reply.status ? "answered without an action" : "closed");
}

// Actions that were queued before are taken, as a switch would.
void take_old_actions(Session& session) {
    for (int i = 0; i < 20 && !interrupted; ++i)
        if (!is_action(Poll(session, session.options.account.mac).wait(0.5)))
            return;
}

// --- What needs no action.

void judge_held(
    Session& session, const char* name, Level level, const std::string& mac, double seconds) {
    Check check(session, "keeper", name, level, held);
    check.sent(words(session, mac));
    expect_held(check, Poll(session, mac).wait(seconds));
}

void judge_taken_up(Session& session) {
    Check check(
        session, "keeper", "a poll after a dropped one", Level::must,
        "2: a dropped request is taken up again");
    const std::string& mac = session.options.account.mac;
    check.sent(words(session, mac) + ", dropped, and again");
    { const Poll dropped(session, mac); }
    expect_held(check, Poll(session, mac).wait(session.options.hold / 2));
}

void judge_checkin_meanwhile(Session& session) {
    Check check(
        session, "keeper", "a check-in during a poll", Level::must, "2: check-ins go on meanwhile");
    const Poll poll(session, session.options.account.mac);
    const Checkin checkin = session.good();
    check.sent("a report, while a poll waits", checkin);
    expect_served(check, session.send(checkin));
}

// --- What needs one.

const Json action = {{"action", "checkin"}};

bool push(Session& session, Check& check) {
    return check.expect_done(
        session.hand_over(session.options.push_action, "push this action", action));
}

void expect_action(Check& check, const Reply& reply, const char* otherwise) {
    check.came(reply);
    const auto document = reply.object();
    if (reply.late || reply.status == 0 || (document && document->empty()))
        check.fault(otherwise);
    else if (!is_action(reply) || (*document)["action"] != action["action"])
        check.fault("action of another form");
}

// False when none was pushed.
bool judge_answered(Session& session) {
    const std::string& mac = session.options.account.mac;
    Check check(session, "keeper", "a pushed action", Level::must, answered);
    const Poll poll(session, mac);
    std::this_thread::sleep_for(300ms);
    check.sent(words(session, mac) + ", and meanwhile an action is pushed");
    if (!push(session, check))
        return false;
    expect_action(check, poll.wait(session.options.wait), "action not delivered");
    return true;
}

void judge_not_repeated(Session& session, bool pushed) {
    const std::string& mac = session.options.account.mac;
    Check check(session, "keeper", "a poll after an action", Level::must, held);
    if (!pushed)
        return check.skip("no action was pushed");
    check.sent(words(session, mac) + ", after the action was answered");
    expect_held(check, Poll(session, mac).wait(session.options.hold / 2));
}

// The switch goes away while it waits; what is pushed then is for when it is back.
void judge_dropped(Session& session) {
    const std::string& mac = session.options.account.mac;
    Check check(
        session, "keeper", "an action for a dropped poll", Level::must,
        "2: an action that was written to a dropped connection is not delivered");
    {
        const Poll dropped(session, mac);
        std::this_thread::sleep_for(300ms);
    }
    std::this_thread::sleep_for(100ms);
    check.sent(words(session, mac) + ", dropped; an action is pushed; and again");
    if (push(session, check))
        expect_action(check, Poll(session, mac).wait(session.options.wait), "action lost");
}

// A switch whose old connection has died without a word asks anew.
void judge_newest(Session& session) {
    const std::string& mac = session.options.account.mac;
    Check check(
        session, "keeper", "an action for two polls", Level::should,
        "2: of two requests of a switch the newer one waits");
    const Poll older(session, mac);
    std::this_thread::sleep_for(300ms);
    const Poll newer(session, mac);
    std::this_thread::sleep_for(300ms);
    check.sent(words(session, mac) + " twice, the older one still open, and an action is pushed");
    if (push(session, check))
        expect_action(check, newer.wait(session.options.wait), "action for the older connection");
}

void judge_later(Session& session) {
    const std::string& mac = session.options.account.mac;
    Check check(
        session, "keeper", "an action while nobody waits", Level::should,
        "2: an action waits for a switch that is not there");
    std::this_thread::sleep_for(500ms);
    check.sent("an action is pushed, and then " + words(session, mac));
    if (push(session, check)) {
        std::this_thread::sleep_for(500ms);
        expect_action(check, Poll(session, mac).wait(session.options.wait), "action lost");
    }
}

} // namespace

void judge_keeper(Session& session) {
    if (session.options.keeper.name.empty()) {
        Check(session, "keeper", "the connection keeper", Level::must, held)
            .skip("--keeper was not given");
        return;
    }
    const double hold = session.options.hold;
    take_old_actions(session);
    judge_held(session, "a poll", Level::must, session.options.account.mac, hold);
    judge_held(session, "an unknown switch's poll", Level::should, "02:00:00:FF:FF:01", hold / 2);
    judge_taken_up(session);
    judge_checkin_meanwhile(session);
    judge_not_repeated(session, judge_answered(session));
    judge_dropped(session);
    judge_newest(session);
    judge_later(session);
}

} // namespace judge::cloud
