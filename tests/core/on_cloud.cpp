// The trace and the console, reduced to what the core did.
#include "tests/core/on_cloud.h"

#include <unistd.h>

#include <algorithm>
#include <array>

namespace {

void replace_all(std::string& text, const std::string& what, const std::string& by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
}

constexpr std::array core_prefixes = {
    "api_checkin:",
    "vxc_",
    "Done and",
    "conf_",
    "main :",
    "retry by",
    "checkin_retry_count set",
    "-----",
    "connection-",
    "connection_",
    "connect to",
    "curl_easy_perform",
    "pthread_create",
    "still need",
    "need sleep",
    "{\"",
    "CURLOPT_IPRESOLVE"};

bool is_of_core(const std::string& line) {
    return std::any_of(core_prefixes.begin(), core_prefixes.end(), [&](const char* prefix) {
        return line.starts_with(prefix);
    });
}

} // namespace

Lines OnCloud::attempts() const {
    Lines lines;
    for (std::string line : trace()) {
        std::string result = line.substr(line.rfind("= ") + 2);
        if (line.starts_with("transfer(\"" + url(cloud)))
            lines.push_back("CLOUD=" + result);
        else if (line.starts_with("transfer(\"" + url(fallback)))
            lines.push_back("FALLBACK=" + result);
        else if (line.starts_with("sleep("))
            lines.push_back(line);
    }
    return lines;
}

Lines OnCloud::core_console() const {
    Lines lines = console();
    std::erase_if(lines, [](const std::string& line) { return !is_of_core(line); });
    for (std::string& line : lines) {
        replace_all(line, "pid " + std::to_string(getpid()), "pid PID");
        if (line.starts_with("api_checkin: pid PID send data"))
            line = "api_checkin: pid PID send data REPORT";
        replace_all(line, fallback.host(), "FALLBACK");
    }
    return lines;
}
