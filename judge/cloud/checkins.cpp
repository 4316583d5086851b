// What a good switch sends, and a cloud must serve.
#include <algorithm>

#include "judge/cloud/families.h"

namespace judge::cloud {

namespace {

struct Good {
    const char* name;
    const char* says;
    const char* words; // what is sent
    void (*shape)(const Session& session, Checkin& checkin);
};

Json as_document(const Checkin& checkin) { return Json::parse(checkin.body); }

// Header lines as Checkin::lines() has them, without the request line.
enum Line { host_line, accept_line, length_line, type_line, authorization_line, signature_line };

void change_case(std::string& line) {
    const auto name_end = line.begin() + static_cast<std::ptrdiff_t>(line.find(':'));
    std::transform(line.begin(), name_end, line.begin(), [](unsigned char c) {
        return static_cast<char>(std::tolower(c));
    });
}

void make_long(Checkin& checkin, std::size_t bytes) {
    Json report = as_document(checkin);
    Json& list = report["system"]["ports"] = Json::array({Json::object({{"id", "1"}})});
    Json& devices = list[0]["connected_device_mac_list"] = Json::array();
    for (std::size_t size = checkin.body.size(); size < bytes; size += 27)
        devices.push_back("02:00:00:00:00:01");
    checkin.body = report.dump(1, '\t');
}

constexpr Good goods[] = {
    {"a check-in", "1: a report that is rightly signed is served", "a report with line breaks",
     [](const Session&, Checkin&) {}},
    {"a report on one line", "1: its bytes are taken as they come", "a report on one line",
     [](const Session&, Checkin& c) { c.body = as_document(c).dump(); }},
    {"a report of one member", "5: a member may be missing from a report",
     "a report with system/cloud/config_seqno alone",
     [](const Session& s, Checkin& c) {
         c.body = "{\"system\":{\"cloud\":{\"config_seqno\":" + std::to_string(s.number) + "}}}";
     }},
    {"a report with any text", "5: texts are UTF-8, U+FFFD stands for what was not",
     "a name with letters beyond ASCII, a quotation mark and U+FFFD",
     [](const Session&, Checkin& c) {
         Json report = as_document(c);
         report["system"]["summary_info"]["device_name"] = "B\xc3\xbcro \"1\" \xef\xbf\xbd";
         c.body = report.dump(1, '\t');
     }},
    {"a report with large counters", "5: counters go up to 2^64 - 1",
     "a counter of 18446744073709551615",
     [](const Session&, Checkin& c) {
         Json report = as_document(c);
         report["system"]["ports"] =
             Json::array({{{"id", "1"}, {"statistics", {{"rx_octets", 18446744073709551615ULL}}}}});
         c.body = report.dump(1, '\t');
     }},
    {"a long report", "1: a report may have 512 KiB", "a report of 512 KiB",
     [](const Session&, Checkin& c) { make_long(c, 512 << 10); }},
    {"header names in lower case", "1: names ignore letter case", "the four headers in lower case",
     [](const Session&, Checkin& c) {
         c.rearrange = [](std::vector<std::string>& lines) {
             std::for_each(lines.begin() + length_line, lines.end(), change_case);
         };
     }},
    {"other headers", "1: others may stand before, between and after them",
     "X-First, X-Between and X-Last among the headers",
     [](const Session&, Checkin& c) {
         c.rearrange = [](std::vector<std::string>& lines) {
             lines.insert(lines.begin() + authorization_line, "X-Between: 2");
             lines.insert(lines.begin(), "X-First: 1");
             lines.emplace_back("X-Last: 3");
         };
     }},
    {"a clock some seconds slow", "1.3: a clock may be 30 seconds off", "a timestamp 30 s ago",
     [](const Session&, Checkin& c) { c.timestamp -= 30; }},
    {"a clock some seconds fast", "1.3: a clock may be 30 seconds off", "a timestamp in 30 s",
     [](const Session&, Checkin& c) { c.timestamp += 30; }},
};

constexpr Good at_the_window[] = {
    {"a timestamp just inside the window, old", "1.3: a timestamp within the window is taken",
     "a timestamp 10 s inside the window",
     [](const Session& s, Checkin& c) { c.timestamp -= s.options.window - 10; }},
    {"a timestamp just inside the window, new", "1.3: a timestamp within the window is taken",
     "a timestamp 10 s inside the window",
     [](const Session& s, Checkin& c) { c.timestamp += s.options.window - 10; }},
};

void judge_good(Session& session, const Good& good) {
    Check check(session, "check-ins", good.name, Level::must, good.says);
    Checkin checkin = session.good();
    good.shape(session, checkin);
    check.sent(good.words, checkin);
    expect_served(check, session.send(checkin));
}

} // namespace

void judge_checkins(Session& session) {
    for (const Good& good : goods)
        judge_good(session, good);
    if (session.options.window > 10)
        for (const Good& good : at_the_window)
            judge_good(session, good);
}

} // namespace judge::cloud
