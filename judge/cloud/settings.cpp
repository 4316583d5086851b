// Settings on their way: delivered with a rising number until they are acknowledged, and not after.
#include "judge/cloud/families.h"
#include "judge/cloud/operator.h"

namespace judge::cloud {

namespace {

constexpr const char* comes = "4: settings are delivered in the reply to a check-in";
constexpr const char* rises = "4: numbers rise";
constexpr const char* until = "4: settings are delivered until they are acknowledged";

// One document, and what is known of its way.
struct Way {
    Session& session;
    const Host& host;
    Settings settings = {};
    Delivery delivery = {};

    std::optional<Delivery> await(double seconds, Reply& last) const {
        return judge::cloud::await(session, host, {&settings}, seconds, last);
    }
    std::string words(const std::string& what) const {
        return what + "; reported is number " + std::to_string(session.number);
    }
};

void check_number(Check& check, const Session& session, const Delivery& delivery) {
    if (delivery.number == 0)
        check.fault(
            Level::must, "no number", "4: a number in system/cloud/config_seqno, 1 to 2147483647");
    else if (delivery.number <= session.number)
        check.fault(Level::must, "number does not rise", rises);
}

void check_document(Check& check, const Way& way) {
    if (way.delivery.document != way.settings.document)
        check.fault(
            Level::should, "other settings than were queued",
            "4: a reply holds the document that was queued");
}

// Queues a document and waits for it. False when there is nothing to go on with.
bool deliver(Way& way, const char* name, const std::string& what) {
    Check check(way.session, "settings", name, Level::must, comes);
    if (!queue(way.session, check, way.settings))
        return false;
    check.sent(way.words(what), report(way.session, way.host));
    Reply last;
    const auto delivery = way.await(way.session.options.wait, last);
    check.came(last);
    if (!delivery) {
        check.fault("not delivered");
        return false;
    }
    way.delivery = *delivery;
    check_number(check, way.session, *delivery);
    check_document(check, way);
    return way.delivery.number > way.session.number;
}

// A switch that refuses settings checks in at once, with the old number.
void judge_speed(Way& way) {
    Check check(
        way.session, "settings", "a refused document at full speed", Level::should,
        "4: some time lies between two deliveries of a document");
    check.sent(way.words("two check-ins at once after a delivery"), report(way.session, way.host));
    int deliveries = 0;
    for (int i = 0; i < 2; ++i) {
        const Reply reply = way.session.send(report(way.session, way.host), way.host);
        check.came(reply);
        deliveries += delivers(reply, way.settings);
    }
    if (deliveries == 2)
        check.fault("delivered at full speed");
}

// The same document again, by the same number or a higher one.
void judge_again(Way& way, const char* name, const std::string& what, const char* says) {
    Check check(way.session, "settings", name, Level::must, says);
    check.sent(way.words(what), report(way.session, way.host));
    Reply last;
    const auto again = way.await(way.session.options.redeliver, last);
    check.came(last);
    if (!again)
        return check.fault("not delivered again");
    check_number(check, way.session, *again);
    if (again->number == way.delivery.number && again->document != way.delivery.document)
        check.fault(
            Level::must, "one number for two documents", "4: a number belongs to one document");
    way.delivery = *again;
}

// Somebody without the secret says that the settings are applied.
void judge_forged(Way& way) {
    Checkin forged = report(way.session, way.host);
    forged.body = way.session.report_text(way.delivery.number);
    forged.account.secret += "x";
    way.session.send(forged, way.host);
    judge_again(
        way, "a forged acknowledgement",
        "a wrongly signed report with number " + std::to_string(way.delivery.number) +
            ", then right ones",
        "4: what was refused acknowledges nothing");
}

void acknowledge(Way& way) { way.session.number = way.delivery.number; }

// Reports the number, at one host or another: the document is through.
void judge_acknowledged(Way& way, const char* name, const Host& host) {
    acknowledge(way);
    Check check(way.session, "settings", name, Level::must, until);
    check.sent(way.words("three check-ins that acknowledge"), report(way.session, host));
    for (int i = 0; i < 3; ++i) {
        const Reply reply = way.session.send(report(way.session, host), host);
        check.came(reply);
        if (delivers(reply, way.settings))
            return check.fault("delivered after its acknowledgement");
    }
}

// Two that are queued, and each is acknowledged when it has come.
void judge_order(Session& session) {
    const Host& host = session.options.checkin;
    const Settings older, newer;
    Check check(
        session, "settings", "two documents", Level::should,
        "4: one document at a time, the oldest first");
    if (!queue(session, check, older) || !queue(session, check, newer))
        return;
    check.sent("check-ins after two documents were queued", report(session, host));
    Reply last;
    for (int i = 0; i < 2; ++i) {
        const auto delivery = await(session, host, {&older, &newer}, session.options.wait, last);
        check.came(last);
        if (!delivery)
            return check.fault(Level::must, "not delivered", comes);
        if (i == 0 && delivers(last, newer))
            check.fault("not the oldest first");
        check_number(check, session, *delivery);
        session.number = delivery->number;
    }
    session.send(report(session, host), host); // acknowledges the second
}

// A switch that was with another cloud reports a number beyond any of this one.
void judge_from_elsewhere(Session& session) {
    session.number += 1000;
    Way way{session, session.options.checkin};
    deliver(
        way, "a number from another cloud", "a check-in with a number beyond any that was given");
    if (way.delivery.number)
        acknowledge(way);
}

// False when not even the first document came as it should.
bool judge_way(Session& session) {
    Way way{session, session.options.checkin};
    if (!deliver(way, "queued settings", "check-ins after a document was queued"))
        return false;
    judge_speed(way);
    judge_again(
        way, "refused settings", "check-ins with the old number, as of a switch that refused",
        until);
    judge_forged(way);
    judge_acknowledged(way, "acknowledged settings", way.host);
    judge_order(session);
    judge_from_elsewhere(session);
    return true;
}

// Delivered at the fallback host, acknowledged at the check-in host.
void judge_at_fallback(Session& session) {
    if (session.options.fallback.name.empty())
        return;
    Way way{session, session.options.fallback};
    if (deliver(
            way, "settings at the fallback host",
            "check-ins at the fallback host after a document was queued"))
        judge_acknowledged(way, "what came from the fallback host", session.options.checkin);
}

} // namespace

void judge_settings(Session& session) {
    if (judge_way(session))
        judge_at_fallback(session);
    else
        Check(session, "settings", "what follows the first delivery", Level::must, until)
            .skip("settings were not delivered as they should be");
}

} // namespace judge::cloud
