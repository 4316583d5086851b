// The certificates of both hosts, as a switch verifies them.
#include "judge/cloud/families.h"

namespace judge::cloud {

namespace {

void judge_certificate(Session& session, const char* name, const Host& host) {
    Check check(
        session, "certificates", name, Level::must,
        "1.5: the switch verifies the certificate's chain and host name");
    if (host.name.empty())
        return check.skip("no such host was given");
    check.sent("a TLS connection to " + host.text);
    ++session.requests;
    const Connection connection(
        host, host.port_or(https_port), &session.trust, session.options.timeout);
    if (!connection.fault().empty()) {
        check.came(connection.fault());
        check.fault("no TLS");
    } else if (!connection.certificate_fault().empty()) {
        check.came(connection.certificate_fault());
        check.fault("certificate not trusted");
    } else {
        check.came("chain and name are good");
    }
}

} // namespace

void judge_certificates(Session& session) {
    judge_certificate(session, "certificate of the check-in host", session.options.checkin);
    judge_certificate(session, "certificate of the fallback host", session.options.fallback);
}

} // namespace judge::cloud
