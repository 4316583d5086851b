// platform_judge: holds a platform library against its contract.
#include <cstdio>
#include <string>

#include "judge/options.h"
#include "judge/report.h"
#include "judge/watch.h"
#include "judge/worker.h"

namespace {

std::string joined(char** arguments) {
    std::string text;
    for (; *arguments; ++arguments)
        text += (text.empty() ? "" : " ") + std::string(*arguments);
    return text;
}

} // namespace

int main(int argc, char** argv) {
    judge::Options options;
    std::string message;
    int status = 0;
    if (!judge::parse(argc, argv, options, message, status)) {
        std::fputs(message.c_str(), status ? stderr : stdout);
        return status;
    }
    if (options.worker >= 0)
        return judge::work(options);
    judge::Report report = judge::watch(options, argv);
    std::fputs(judge::as_table(report).c_str(), stdout);
    bool written = judge::write_file("platform_judge", options.json, judge::as_json(report)) &&
                   judge::write_file("platform_judge", options.junit, judge::as_junit(report)) &&
                   judge::write_file(
                       "platform_judge", options.summary, judge::as_summary(report, joined(argv)));
    if (report.interrupted)
        return 3;
    return report.findings() || !written ? 1 : 0;
}
