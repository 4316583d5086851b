// platform_judge: holds a platform library against its contract.
#include <cstdio>
#include <fstream>
#include <string>

#include "judge/options.h"
#include "judge/watch.h"
#include "judge/worker.h"

namespace {

bool write_file(const std::string& file, const std::string& text) {
    if (file.empty())
        return true;
    std::ofstream out(file);
    out << text;
    out.flush();
    if (!out)
        std::fprintf(stderr, "platform_judge: %s cannot be written\n", file.c_str());
    return static_cast<bool>(out);
}

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
    bool written = write_file(options.json, judge::as_json(report)) &&
                   write_file(options.junit, judge::as_junit(report)) &&
                   write_file(options.summary, judge::as_summary(report, joined(argv)));
    if (report.interrupted)
        return 3;
    return report.findings() || !written ? 1 : 0;
}
