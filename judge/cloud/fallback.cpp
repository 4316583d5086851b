// The fallback host, which is the same cloud.
#include "judge/cloud/families.h"

namespace judge::cloud {

namespace {

constexpr const char* same = "1: the fallback host serves check-ins as the check-in host does";

Checkin good_for_fallback(const Session& session) {
    Checkin checkin = session.good();
    checkin.host = session.options.fallback.text;
    return checkin;
}

void judge_good(Session& session) {
    Check check(session, "fallback", "a check-in there", Level::must, same);
    const Checkin checkin = good_for_fallback(session);
    check.sent("a report to the fallback host", checkin);
    expect_served(check, session.send(checkin, session.options.fallback));
}

void judge_bad(Session& session) {
    Check check(session, "fallback", "a wrong signature there", Level::must, same);
    Checkin checkin = good_for_fallback(session);
    checkin.account.secret += "x";
    check.sent("a report to the fallback host, signed with another secret", checkin);
    expect_refused(check, session.send(checkin, session.options.fallback));
}

void judge_replay(Session& session) {
    Check check(
        session, "fallback", "a replay there", Level::must,
        "1.3: a request sent twice is refused the second time, at whichever host");
    const Checkin checkin = session.good();
    session.send(checkin);
    check.sent("a check-in, and the same bytes to the fallback host", checkin);
    expect_refused(check, session.send(checkin, session.options.fallback));
}

} // namespace

void judge_fallback(Session& session) {
    if (session.options.fallback.name.empty()) {
        Check(session, "fallback", "the fallback host", Level::must, same)
            .skip("--fallback was not given");
        return;
    }
    judge_good(session);
    judge_bad(session);
    judge_replay(session);
}

} // namespace judge::cloud
