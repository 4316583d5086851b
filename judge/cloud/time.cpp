// The time service, from which a switch sets a clock that is wrong.
#include <cmath>
#include <ctime>

#include "judge/cloud/families.h"

namespace judge::cloud {

namespace {

// Seconds since 1970; nullopt for a text of another form than 2026-11-16T05:30:00Z.
std::optional<std::int64_t> parse_time(const std::string& text) {
    static const std::string form = "0000-00-00T00:00:00Z";
    if (text.size() != form.size())
        return std::nullopt;
    for (std::size_t i = 0; i < form.size(); ++i)
        if (form[i] == '0' ? text[i] < '0' || text[i] > '9' : text[i] != form[i])
            return std::nullopt;
    std::tm parts{};
    if (strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts) != text.data() + text.size())
        return std::nullopt;
    return timegm(&parts);
}

void judge_form(Check& check, const Reply& reply) {
    const auto document = reply.object();
    const bool told = document && document->contains("time") && (*document)["time"].is_string();
    const auto time = told ? parse_time((*document)["time"]) : std::nullopt;
    if (!time)
        return check.fault("time of another form");
    if (const std::int64_t off = *time - now_seconds(); std::abs(off) > 60)
        check.fault(
            Level::must, "wrong time",
            "3: the text is UTC (it differs by " + std::to_string(off) +
                " s from this machine's clock)");
    if (reply.seconds > 2)
        check.fault(Level::should, "late time", "3: answered at once");
}

} // namespace

void judge_time(Session& session) {
    const Host& host = session.options.time;
    Check check(
        session, "time", "the time", Level::must,
        "3: plain HTTP, not signed, {\"time\":\"2026-11-16T05:30:00Z\"}");
    check.sent("GET /time to " + host.text);
    const Reply reply = session.get(host, "/time", 20);
    if (expect_served(check, reply))
        judge_form(check, reply);
}

} // namespace judge::cloud
