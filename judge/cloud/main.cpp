// cloud_judge: holds a cloud against the wire.
#include <csignal>
#include <cstdio>
#include <exception>
#include <fstream>

#include "judge/cloud/families.h"

namespace {

using namespace judge::cloud;

bool write_file(const std::string& file, const std::string& text) {
    if (file.empty())
        return true;
    std::ofstream out(file);
    out << text;
    out.flush();
    if (!out)
        std::fprintf(stderr, "cloud_judge: %s cannot be written\n", file.c_str());
    return static_cast<bool>(out);
}

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
    const bool written = write_file(options.json, judge::as_json(report)) &&
                         write_file(options.junit, judge::as_junit(report)) &&
                         write_file(options.summary, judge::as_summary(report, options.command));
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
