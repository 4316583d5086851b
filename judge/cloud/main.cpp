// cloud_judge: holds a cloud against the wire.
#include <csignal>
#include <cstdio>
#include <exception>

#include "judge/cloud/families.h"

namespace {

using namespace judge::cloud;

// With the wrong account a cloud is right to refuse everything.
void remark_on_account(Session& session) {
    const Reply reply = session.send(session.good());
    if (reply.status != 200)
        session.report.remarks.push_back(
            "not even a plain check-in is served (" + reply.text() +
            "): are hosts, account and clock right?");
}

void judge_all(Session& session) {
    remark_on_account(session);
    for (const Family& family : families)
        if (session.options.wants(family.name) && !interrupted)
            family.judge(session);
    session.report.interrupted = interrupted;
}

int tell(const Session& session) {
    const judge::Report& report = session.report;
    const Options& options = session.options;
    std::fputs(judge::as_table(report).c_str(), stdout);
    const bool written =
        judge::write_file("cloud_judge", options.json, judge::as_json(report)) &&
        judge::write_file("cloud_judge", options.junit, judge::as_junit(report)) &&
        judge::write_file(
            "cloud_judge", options.summary, judge::as_summary(report, options.command));
    if (report.interrupted)
        return 3;
    return report.findings() || (options.strict && report.shoulds()) || !written ? 1 : 0;
}

int run(int count, char** arguments) {
    std::vector<std::string> names;
    for (const Family& family : families)
        names.emplace_back(family.name);
    Options options;
    if (!parse_options(count, arguments, names, options))
        return 0;
    Session session(options);
    judge_all(session);
    return tell(session);
}

} // namespace

int main(int count, char** arguments) {
    std::signal(SIGPIPE, SIG_IGN);
    for (const int signal : {SIGINT, SIGTERM})
        std::signal(signal, [](int) { interrupted = 1; });
    try {
        return run(count, arguments);
    } catch (const WrongCommandLine& wrong) {
        std::fprintf(stderr, "cloud_judge: %s\n(--help shows the options)\n", wrong.what());
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "cloud_judge: %s\n", failure.what());
    }
    return 2;
}
