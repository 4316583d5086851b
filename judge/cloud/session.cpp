// Sending, telling, and the two verdicts on a check-in.
#include "judge/cloud/session.h"

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

namespace judge::cloud {

namespace {

// What a switch tells of itself even when it can tell little else.
constexpr const char* own_report = R"({
    "system": {
        "jumbo_frames": {"size": 1522},
        "cloud": {"checkin_host": "", "fallback_host": "", "config_seqno": 1,
                  "connkeeper_host": "", "checkin_interval": 300},
        "firmware": {"active_partition": 1, "version_partition_1": "1.0.0",
                     "version_partition_2": "", "flags": []},
        "summary_info": {"device_name": "Judge-1", "model": "Q18r5", "mac": "",
                         "firmware_version": "1.0.0", "uptime_seconds": 60, "total_ports": 20,
                         "active_ports": 1, "ip": "192.0.2.10", "gateway_ip": "192.0.2.1"},
        "management_vlan": 1, "uplink_port": 1, "reboot": false, "dark_mode": false,
        "poe": {}, "port_mirror": [], "link_aggregation": []
    },
    "acl": {"mac_acl": [], "mac_ace": [], "ipv4_acl": [], "ipv4_ace": []},
    "qos": {"cos": [], "dscp": []},
    "lldp": {"remote": []}
})";

Json read_report(const Options& options) {
    if (!options.report.empty()) {
        std::ifstream in(options.report);
        const std::string text{std::istreambuf_iterator<char>(in), {}};
        Json report = Json::parse(text, nullptr, false);
        if (!report.is_object())
            throw WrongCommandLine("--report: " + options.report + " holds no JSON object");
        return report;
    }
    Json report = Json::parse(own_report);
    Json& cloud = report["system"]["cloud"];
    cloud["checkin_host"] = options.checkin.text;
    cloud["fallback_host"] = options.fallback.text;
    cloud["connkeeper_host"] = options.keeper.text;
    report["system"]["summary_info"]["mac"] = options.account.mac;
    return report;
}

// The command reads the document, and what it prints is of no interest.
HandOver run_command(const std::string& command, const std::string& document) {
    FILE* const pipe = popen(("{ " + command + "\n} >/dev/null").c_str(), "w");
    if (!pipe)
        return {{}, "the command could not be started"};
    std::fputs(document.c_str(), pipe);
    const int status = pclose(pipe);
    if (status == 0)
        return {};
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return {{}, "the command failed with status " + std::to_string(code)};
}

HandOver ask_person(const std::string& mac, const char* what, const std::string& document) {
    std::printf(
        "\nPlease %s for %s, then press Enter (or type skip):\n%s\n", what, mac.c_str(),
        document.c_str());
    std::fflush(stdout);
    std::string answer;
    if (!std::getline(std::cin, answer))
        return {"nobody answered", {}};
    return {answer == "skip" ? "the operator skipped it" : "", {}};
}

} // namespace

Session::Session(const Options& given)
    : options(given), trust(given.ca), number(given.number), report_(read_report(given)) {
    report.wording = {"cloud_judge", "a cloud", "cloud", "requests", "checks", "sent", "must"};
}

Checkin Session::good() const {
    Checkin checkin;
    checkin.host = options.checkin.text;
    checkin.path = checkin_path(options.account.mac);
    checkin.account = options.account;
    checkin.timestamp = now_seconds();
    checkin.nonce = fresh_nonce();
    checkin.body = report_text(number);
    return checkin;
}

std::string Session::report_text(std::int64_t seqno) const {
    Json copy = report_;
    copy["system"]["cloud"]["config_seqno"] = seqno;
    return copy.dump(1, '\t');
}

Reply Session::send(const Checkin& checkin) { return send(checkin, options.checkin); }

Reply Session::send(const Checkin& checkin, const Host& host) {
    ++requests;
    const Trust* const tls = checkin.plain ? nullptr : &trust;
    // A host with a port has the same one for both.
    Connection connection(
        host, host.port_or(checkin.plain ? http_port : https_port), tls, options.timeout);
    if (connection.send(checkin.text()) && checkin.cut)
        connection.end_sending();
    return receive_reply(connection, after(options.timeout));
}

Reply Session::get(const Host& host, const std::string& path, double seconds) {
    ++requests;
    Connection connection(host, host.port_or(http_port), nullptr, options.timeout);
    connection.send("GET " + path + " HTTP/1.1\r\nHost: " + host.text + "\r\nAccept: */*\r\n\r\n");
    return receive_reply(connection, after(seconds));
}

HandOver
Session::hand_over(const std::string& command, const char* what, const Json& document) const {
    if (command.empty() && !options.ask)
        return {std::string("nobody to ") + what, {}};
    if (command.empty())
        return ask_person(options.account.mac, what, document.dump());
    setenv("MAC", options.account.mac.c_str(), 1);
    return run_command(command, document.dump());
}

// --- One check.

Check::Check(Session& session, const char* family, std::string name, Level level, std::string says)
    : session_(session), requests_before_(session.requests) {
    result_.family = family;
    result_.probe = std::move(name);
    seen_.should = level == Level::should;
    seen_.says = std::move(says);
}

Check::~Check() {
    result_.number = static_cast<int>(session_.report.steps.size());
    result_.calls = session_.requests - requests_before_;
    result_.cases = result_.skipped.empty();
    if (result_.skipped.empty())
        result_.seen.push_back(seen_);
    for (Finding& finding : result_.findings) {
        finding.call = seen_.call;
        finding.came = seen_.came;
    }
    if (session_.options.verbose) {
        Finding told = seen_;
        told.reason = good() ? "good" : result_.skipped.empty() ? "not good" : result_.skipped;
        std::printf("%s\n", as_text(session_.report, result_, told).c_str());
        std::fflush(stdout);
    }
    session_.report.calls[result_.family] += result_.calls;
    session_.report.steps.push_back(std::move(result_));
}

Check& Check::sent(const std::string& words) {
    seen_.call = words;
    return *this;
}

Check& Check::sent(const std::string& words, const Checkin& checkin) {
    seen_.call = words;
    if (checkin.instead.empty())
        for (const std::string& line : checkin.lines())
            seen_.call += "\n           " + line;
    return *this;
}

Check& Check::came(const std::string& words) {
    seen_.came = words;
    return *this;
}

bool Check::expect_done(const HandOver& result) {
    if (!result.skipped.empty())
        skip(result.skipped);
    if (!result.failure.empty()) {
        came(result.failure);
        fault("could not be queued");
    }
    return result.done();
}

void Check::fault(const std::string& reason) {
    fault(seen_.should ? Level::should : Level::must, reason, seen_.says);
}

void Check::fault(Level level, const std::string& reason, const std::string& says) {
    Finding finding;
    finding.reason = reason;
    finding.says = says;
    finding.should = level == Level::should;
    result_.findings.push_back(finding);
}

// --- The two verdicts.

bool expect_served(Check& check, const Reply& reply) {
    check.came(reply);
    if (reply.status == 0)
        check.fault("not answered");
    else if (reply.status >= 300 && reply.status < 400)
        check.fault("redirected");
    else if (reply.status != 200)
        check.fault("not served");
    else if (reply.body.size() > longest_body)
        check.fault(Level::must, "reply too long", "1.4: a body of more than 1 MiB fails");
    else if (!reply.whole)
        check.fault("reply cut short");
    else if (!reply.body.empty() && !reply.object())
        check.fault(
            Level::should, "reply that is no document",
            "1.4: a JSON object of settings, {} or no body");
    return check.good();
}

void expect_refused(Check& check, const Reply& reply) {
    check.came(reply);
    if (reply.is_success())
        return check.fault("taken");
    if (reply.object())
        check.fault(
            Level::must, "refusal that is applied", "1.4: an error is not answered with an object");
    if (reply.status == 0)
        check.fault(
            Level::should, "refusal without an answer",
            "1.6: a refusal is answered with a status from 400 to 499");
    else if (reply.status < 400 || reply.status > 499)
        check.fault(
            Level::should, "refusal of another status",
            "1.6: a refusal is answered with a status from 400 to 499");
}

} // namespace judge::cloud
