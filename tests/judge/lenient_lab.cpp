// The lab cloud with one bad habit, for a judge to find:
//
//     lenient_lab --habit HABIT --data DIR --account MAC,KEY,SECRET [options of lab_cloud]
//
// A check that is switched off is the habit `overlook WORDS`: what the lab refuses with these words
// is taken as though nothing had been wrong with it. The others are in the table below.
#include <nlohmann/json.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <future>
#include <map>
#include <mutex>
#include <set>
#include <thread>

#include "lab/program.h"
#include "lab/request_head.h"
#include "lab/signature.h"

namespace {

using namespace std::chrono_literals;
using lab::Call;
using lab::Handler;
using lab::Reply;
using Json = nlohmann::ordered_json;

std::string words;     // of "overlook"
std::string data_path; // the lab's folder
std::string mac;       // and its account
lab::Account account;

std::mutex memory; // over what a habit remembers

// --- What a request says.

std::string header(const Call& call, const char* name) {
    const auto head = lab::parse_request_head(call.head);
    if (head)
        for (const lab::HeaderLine& line : head->lines)
            if (lab::same_name(line.name, name))
                return line.value;
    return {};
}

// The nonce and the timestamp with it.
std::string triple(const Call& call) { return header(call, "Authorization"); }
std::string nonce(const Call& call) { return triple(call).substr(triple(call).rfind('=') + 1); }

std::int64_t timestamp(const Call& call) {
    const std::string text = triple(call);
    const std::size_t at = text.rfind("timestamp=");
    return at == std::string::npos ? 0 : std::atoll(text.c_str() + at + 10);
}

bool is_checkin(const std::string& listener) { return listener == "checkin"; }
bool is_poll(const std::string& listener) { return listener == "keeper"; }
bool is_time(const Call& call) { return call.path == "/time"; }

bool refused(const Reply& reply, const std::string& why) {
    return reply.status == 403 && reply.body.starts_with(why);
}

bool at_fallback(const Call& call) {
    static const int port = [] {
        std::ifstream file(data_path + "/ports.json");
        return Json::parse(file).at("https").at(1).get<int>();
    }();
    return call.port == port;
}

const Json::json_pointer number_place("/system/cloud/config_seqno");

std::int64_t number_of(const std::string& document) {
    const Json json = Json::parse(document, nullptr, false);
    return json.is_object() && json.contains(number_place) ? json.at(number_place).get<int>() : 0;
}

std::string with_number(const std::string& document, const Json& number) {
    Json json = Json::parse(document);
    json[number_place] = number;
    return json.dump();
}

// --- What a good switch would have sent in its place.

std::string fresh_nonce() {
    static std::atomic<unsigned> count{0};
    char text[33];
    std::snprintf(text, sizeof text, "%032x", ++count);
    return text;
}

bool is_signed(const Call& call) {
    return header(call, "Signature") ==
           lab::sign_request(account.secret, triple(call), call.path, call.body);
}

Call made_right(const Call& call, const std::string& body) {
    const std::string path = "/cloud-switch/" + mac + "/checkin";
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::string proof =
        "key=" + account.key + ",timestamp=" +
        std::to_string(std::chrono::duration_cast<std::chrono::seconds>(now).count()) +
        ",nonce=" + fresh_nonce();
    Call right = call;
    right.method = "POST";
    right.path = path;
    right.body = body;
    right.body_flaw.clear();
    right.tls = true;
    right.head = "POST " + path + " HTTP/1.1\r\nContent-Length: " + std::to_string(body.size()) +
                 "\r\nContent-Type: application/json\r\nAuthorization: " + proof +
                 "\r\nSignature: " + lab::sign_request(account.secret, proof, path, body) +
                 "\r\n\r\n";
    return right;
}

Call made_right(const Call& call) {
    return made_right(call, Json::parse(call.body, nullptr, false).is_object() ? call.body : "{}");
}

Call with_reported(const Call& call, std::int64_t number) {
    return made_right(call, with_number(call.body, number));
}

Reply refuse(int status = 403) { return {status, "refused\n", "text/plain"}; }
Reply nothing() { return {200, "{}"}; }

bool is_settings(const Reply& reply) { return reply.status == 200 && number_of(reply.body) != 0; }

// --- The habits. Each sees every call; what it does not change it serves.

using Answer = Reply (*)(const std::string& listener, const Call& call, const Handler& serve);

Reply overlook(const std::string&, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    return refused(reply, words) ? serve(made_right(call)) : reply;
}

// A good check-in is refused if it is of some kind.
template <bool (*kind)(const Call&)>
Reply refuse_if(const std::string& listener, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    return is_checkin(listener) && reply.status == 200 && kind(call) ? refuse() : reply;
}

bool on_one_line(const Call& call) { return call.body.find('\n') == std::string::npos; }
bool beyond_ascii(const Call& call) {
    return std::ranges::any_of(call.body, [](char c) { return c < 0; });
}
bool beyond_63_bits(const Call& call) {
    return call.body.find("446744073709551615") != std::string::npos;
}
bool long_report(const Call& call) { return call.body.size() > 64 << 10; }
bool lower_case_names(const Call& call) {
    return call.head.find("authorization:") != std::string::npos;
}
bool other_headers(const Call& call) { return call.head.find("X-Between:") != std::string::npos; }
std::int64_t seconds_off(const Call& call) { return timestamp(call) - std::time(nullptr); }
bool slow_clock(const Call& call) { return seconds_off(call) < -25; }
bool fast_clock(const Call& call) { return seconds_off(call) > 25; }
bool slow_sender(const Call& call) {
    return std::chrono::steady_clock::now() - call.connected_at > 2s;
}

bool known_nonce(const Call& call) {
    static std::set<std::string> known;
    const std::lock_guard lock(memory);
    return !known.insert(nonce(call)).second;
}

// Whoever is refused often is refused for ever.
Reply refuse_for_ever(const std::string&, const Call& call, const Handler& serve) {
    static std::atomic<int> refusals{0};
    Reply reply = serve(call);
    refusals += reply.status == 403;
    return refusals > 20 && reply.status == 200 ? refuse() : reply;
}

template <const char* text, int status>
Reply answer_all(const std::string& listener, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    return is_checkin(listener) && reply.status == 200 ? Reply{status, text} : reply;
}
constexpr char empty_document[] = "{}";
constexpr char page[] = "<html></html>";

Reply answer_long(const std::string& listener, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    return is_checkin(listener) && reply.status == 200 ? Reply{200, std::string(1100000, ' ')}
                                                       : reply;
}

Reply redirect(const std::string& listener, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    if (reply.status != 200 || is_poll(listener))
        return reply;
    reply = {302, "", "text/plain"};
    reply.headers = {{"Location", "https://elsewhere.example" + call.path}};
    return reply;
}

template <int status, bool object>
Reply refuse_otherwise(const std::string&, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    if (reply.status != 403)
        return reply;
    return object ? Reply{403, "{\"error\":\"refused\"}"} : refuse(status);
}

// Signatures that leave a part out.
template <bool authorization, bool path, bool body>
Reply take_signature(const std::string&, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    const std::string sloppy = lab::sign_request(
        account.secret, authorization ? triple(call) : "", path ? call.path : "",
        body ? call.body : "");
    const bool taken = refused(reply, "signature: ") && header(call, "Signature") == sloppy;
    return taken ? serve(made_right(call)) : reply;
}

Reply take_beginning(const std::string&, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    const std::string sent = header(call, "Signature");
    const std::string right = lab::sign_request(account.secret, triple(call), call.path, call.body);
    const bool taken = refused(reply, "signature: ") && !sent.empty() && right.starts_with(sent);
    return taken ? serve(made_right(call)) : reply;
}

// --- Nonces.

// Remembered with the report, so that another report makes another triple.
Reply nonce_with_body(const std::string&, const Call& call, const Handler& serve) {
    static std::set<std::string> known;
    {
        const std::lock_guard lock(memory);
        if (is_signed(call) && !known.insert(triple(call) + call.body).second)
            return refuse();
    }
    Reply reply = serve(call);
    return refused(reply, "nonce: ") ? serve(made_right(call)) : reply;
}

template <const char* code>
Reply nonce_used_up(const std::string&, const Call& call, const Handler& serve) {
    static std::set<std::string> used;
    {
        const std::lock_guard lock(memory);
        if (used.contains(triple(call)))
            return refuse();
    }
    Reply reply = serve(call);
    const std::lock_guard lock(memory);
    if (refused(reply, code))
        used.insert(triple(call));
    return reply;
}
constexpr char by_signature[] = "signature: ";
constexpr char by_length[] = "content-length: ";

// Looked up, and written down only when all is done.
Reply nonce_late(const std::string&, const Call& call, const Handler& serve) {
    static std::multiset<std::string> under_way;
    std::unique_lock lock(memory);
    const bool again = under_way.contains(triple(call));
    const auto mine = under_way.insert(triple(call));
    lock.unlock();
    Reply reply = serve(call);
    if (again && refused(reply, "nonce: "))
        reply = serve(made_right(call));
    std::this_thread::sleep_for(200ms);
    lock.lock();
    under_way.erase(mine);
    return reply;
}

// Each host for itself.
Reply nonce_of_host(const std::string&, const Call& call, const Handler& serve) {
    static std::map<std::string, int> ports;
    std::unique_lock lock(memory);
    const int port = ports.emplace(triple(call), call.port).first->second;
    lock.unlock();
    Reply reply = serve(call);
    return port != call.port && refused(reply, "nonce: ") ? serve(made_right(call)) : reply;
}

// --- Pace.

Reply one_at_a_time(const std::string&, const Call& call, const Handler& serve) {
    static std::atomic<int> under_way{0};
    if (!call.body_flaw.empty())
        return serve(call);
    Reply reply = under_way++ ? refuse(503) : serve(call);
    std::this_thread::sleep_for(200ms);
    --under_way;
    return reply;
}

Reply wait_for_the_rest(const std::string&, const Call& call, const Handler& serve) {
    if (!call.body_flaw.empty() && !call.hung_up())
        std::this_thread::sleep_for(6s);
    return serve(call);
}

// --- Fallback.

Reply refuse_at_fallback(const std::string&, const Call& call, const Handler& serve) {
    return call.tls && at_fallback(call) ? refuse() : serve(call);
}

Reply overlook_at_fallback(const std::string&, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    return at_fallback(call) && refused(reply, "signature: ") ? serve(made_right(call)) : reply;
}

Reply no_settings_at_fallback(const std::string&, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    return at_fallback(call) && is_settings(reply) ? nothing() : reply;
}

// --- Settings.

Reply deliver_once(const std::string&, const Call& call, const Handler& serve) {
    static std::set<std::int64_t> delivered;
    Reply reply = serve(call);
    const std::lock_guard lock(memory);
    return is_settings(reply) && !delivered.insert(number_of(reply.body)).second ? nothing()
                                                                                 : reply;
}

std::string last_settings; // that were delivered

template <bool (*again)(std::int64_t reported, std::int64_t delivered)>
Reply deliver_again(const std::string&, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    const std::lock_guard lock(memory);
    if (is_settings(reply))
        last_settings = reply.body;
    const bool idle = reply.status == 200 && !is_settings(reply) && !last_settings.empty();
    if (idle && again(number_of(call.body), number_of(last_settings)))
        reply.body = last_settings;
    return reply;
}
bool unacknowledged(std::int64_t reported, std::int64_t delivered) { return reported < delivered; }
bool acknowledged(std::int64_t reported, std::int64_t delivered) { return reported >= delivered; }

Reply forged_acknowledgement(const std::string&, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    if (refused(reply, "signature: ") && number_of(call.body) > 1)
        serve(made_right(call));
    return reply;
}

// Every document has the number 2; the lab behind is told its own.
Reply same_number(const std::string&, const Call& call, const Handler& serve) {
    static std::int64_t last = 1;
    Reply reply =
        serve(number_of(call.body) == 2 && is_signed(call) ? with_reported(call, last) : call);
    if (is_settings(reply)) {
        last = number_of(reply.body);
        reply.body = with_number(reply.body, 2);
    }
    return reply;
}

// Numbers of the cloud alone: what a switch has from elsewhere is taken for the last of them.
Reply numbers_of_its_own(const std::string&, const Call& call, const Handler& serve) {
    static std::int64_t last = 1;
    const bool beyond = number_of(call.body) > last && is_signed(call);
    Reply reply = serve(beyond ? with_reported(call, last) : call);
    if (is_settings(reply))
        last = std::max(last, number_of(reply.body));
    return reply;
}

enum class Spoilt { no_number, text, other, changed };

template <Spoilt how>
Reply spoil_settings(const std::string&, const Call& call, const Handler& serve) {
    static std::map<std::int64_t, int> deliveries;
    Reply reply = serve(call);
    if (!is_settings(reply))
        return reply;
    const std::int64_t number = number_of(reply.body);
    Json document = Json::parse(reply.body);
    if (how == Spoilt::no_number)
        document["system"].erase("cloud");
    if (how == Spoilt::text)
        document[number_place] = std::to_string(number);
    if (how == Spoilt::other || (how == Spoilt::changed && deliveries[number]++ > 0))
        document["system"]["dark_mode"] = true;
    reply.body = document.dump();
    return reply;
}

// Of the two documents that come after the first, the second is delivered first.
Reply newest_first(const std::string&, const Call& call, const Handler& serve) {
    static std::set<std::int64_t> delivered;
    static std::string older;
    Reply reply = serve(call);
    if (!is_settings(reply))
        return reply;
    delivered.insert(number_of(reply.body));
    if (delivered.size() == 2 && older.empty()) {
        older = reply.body;
        const Reply next = serve(with_reported(call, number_of(older)));
        reply.body = with_number(next.body, number_of(older));
    } else if (delivered.size() == 2) {
        reply.body = with_number(older, number_of(reply.body));
    }
    return reply;
}

// --- The keeper.

Reply answer_poll_at_once(const std::string& listener, const Call& call, const Handler& serve) {
    return is_poll(listener) ? nothing() : serve(call);
}

Reply answer_strangers_at_once(
    const std::string& listener, const Call& call, const Handler& serve) {
    return is_poll(listener) && !call.path.ends_with(mac) ? nothing() : serve(call);
}

Reply ask_poll_for_signature(const std::string& listener, const Call& call, const Handler& serve) {
    return is_poll(listener) ? refuse(401) : serve(call);
}

// What was written to a connection that the switch has left counts as delivered.
Reply lose_with_connection(const std::string& listener, const Call& call, const Handler& serve) {
    if (!is_poll(listener))
        return serve(call);
    if (call.hung_up())
        return nothing();
    Call deaf = call;
    deaf.hung_up = [] { return false; };
    Reply reply = serve(deaf);
    reply.unsent = {};
    return reply;
}

Reply repeat_action(const std::string& listener, const Call& call, const Handler& serve) {
    static std::string last;
    if (!is_poll(listener))
        return serve(call);
    {
        const std::lock_guard lock(memory);
        if (!last.empty())
            return {200, std::exchange(last, {})};
    }
    Reply reply = serve(call);
    const std::lock_guard lock(memory);
    if (reply.body != "{}")
        last = reply.body;
    return reply;
}

// Only who waits is told.
Reply forget_what_waits(const std::string& listener, const Call& call, const Handler& serve) {
    if (!is_poll(listener))
        return serve(call);
    const auto begin = std::chrono::steady_clock::now();
    Reply reply = serve(call);
    const bool waited = std::chrono::steady_clock::now() - begin > 150ms;
    return waited || reply.body == "{}" ? reply : serve(call);
}

// A newer request waits for the older one to end.
Reply older_first(const std::string& listener, const Call& call, const Handler& serve) {
    static std::timed_mutex turn;
    if (!is_poll(listener))
        return serve(call);
    const std::unique_lock lock(turn, 5s);
    return serve(call);
}

Reply actions_in_a_list(const std::string& listener, const Call& call, const Handler& serve) {
    Reply reply = serve(call);
    if (is_poll(listener) && reply.body != "{}")
        reply.body = "[" + reply.body + "]";
    return reply;
}

Reply one_thing_at_a_time(const std::string& listener, const Call& call, const Handler& serve) {
    static std::atomic<int> polls{0};
    if (!is_poll(listener)) {
        for (int i = 0; i < 15 && polls; ++i)
            std::this_thread::sleep_for(100ms);
        return polls ? refuse(503) : serve(call);
    }
    ++polls;
    Reply reply = serve(call);
    --polls;
    return reply;
}

// --- Time.

template <const char* text>
Reply tell_time(const std::string&, const Call& call, const Handler& serve) {
    return is_time(call) ? Reply{200, text} : serve(call);
}
constexpr char without_zone[] = "{\"time\":\"2026-11-16T05:30:00\"}";
constexpr char as_number[] = "{\"time\":1795230000}";
constexpr char with_fraction[] = "{\"time\":\"2026-11-16T05:30:00.000Z\"}";
constexpr char no_date[] = "{\"time\":\"2026-13-41T05:30:00Z\"}";
constexpr char another_name[] = "{\"now\":\"2026-11-16T05:30:00Z\"}";
constexpr char long_ago[] = "{\"time\":\"2020-01-01T00:00:00Z\"}";

Reply tell_time_late(const std::string&, const Call& call, const Handler& serve) {
    if (is_time(call))
        std::this_thread::sleep_for(2300ms);
    return serve(call);
}

Reply no_time(const std::string&, const Call& call, const Handler& serve) {
    return is_time(call) ? refuse(404) : serve(call);
}

// --- Replies that are put off.

// A habit looks at the reply to a poll, so a thread waits for it.
class Awaited : public lab::Waiter {
  public:
    explicit Awaited(const Call& call) : hung_up_(call.hung_up) {}
    ~Awaited() override {
        if (!answered_)
            reply.set_value(nothing());
    }
    bool hung_up() const override { return hung_up_(); }
    void answer(const Reply& given) override {
        answered_ = true;
        reply.set_value(given);
    }

    std::promise<Reply> reply;

  private:
    const std::function<bool()> hung_up_;
    bool answered_ = false;
};

Reply serve_to_the_end(const Handler& serve, const Call& call) {
    const Reply reply = serve(call);
    if (!reply.put_off)
        return reply;
    auto awaited = std::make_unique<Awaited>(call);
    std::future<Reply> later = awaited->reply.get_future();
    reply.put_off(std::move(awaited));
    return later.get();
}

struct Habit {
    const char* name;
    Answer answer;
};

constexpr Habit habits[] = {
    {"reports on one line refused", refuse_if<on_one_line>},
    {"letters beyond ASCII refused", refuse_if<beyond_ascii>},
    {"counters of 63 bits", refuse_if<beyond_63_bits>},
    {"long reports refused", refuse_if<long_report>},
    {"header names by letter case", refuse_if<lower_case_names>},
    {"no other headers", refuse_if<other_headers>},
    {"no slow clocks", refuse_if<slow_clock>},
    {"no fast clocks", refuse_if<fast_clock>},
    {"created", answer_all<empty_document, 201>},
    {"a page for a reply", answer_all<page, 200>},
    {"a long reply", answer_long},
    {"redirection", redirect},
    {"refusals as documents", refuse_otherwise<403, true>},
    {"refusals with 200", refuse_otherwise<200, false>},
    {"refusals with 503", refuse_otherwise<503, false>},
    {"locked out for ever", refuse_for_ever},
    {"authorization not signed", take_signature<false, true, true>},
    {"path not signed", take_signature<true, false, true>},
    {"body not signed", take_signature<true, true, false>},
    {"half a signature", take_beginning},
    {"bare nonces", refuse_if<known_nonce>},
    {"nonces with bodies", nonce_with_body},
    {"nonces used up by strangers", nonce_used_up<by_signature>},
    {"nonces written down late", nonce_late},
    {"nonces of each host", nonce_of_host},
    {"impatience", refuse_if<slow_sender>},
    {"nonces used up by what was cut", nonce_used_up<by_length>},
    {"one check-in at a time", one_at_a_time},
    {"endless patience", wait_for_the_rest},
    {"no fallback", refuse_at_fallback},
    {"signatures overlooked at the fallback host", overlook_at_fallback},
    {"no settings at the fallback host", no_settings_at_fallback},
    {"settings once", deliver_once},
    {"settings at full speed", deliver_again<unacknowledged>},
    {"settings for ever", deliver_again<acknowledged>},
    {"forged acknowledgements", forged_acknowledgement},
    {"one number for all", same_number},
    {"numbers of its own", numbers_of_its_own},
    {"settings without a number", spoil_settings<Spoilt::no_number>},
    {"numbers as texts", spoil_settings<Spoilt::text>},
    {"other settings", spoil_settings<Spoilt::other>},
    {"settings changed under their number", spoil_settings<Spoilt::changed>},
    {"the newest first", newest_first},
    {"polls answered at once", answer_poll_at_once},
    {"strangers answered at once", answer_strangers_at_once},
    {"polls to be signed", ask_poll_for_signature},
    {"actions lost with a connection", lose_with_connection},
    {"actions repeated", repeat_action},
    {"actions only for who waits", forget_what_waits},
    {"the older poll first", older_first},
    {"actions in a list", actions_in_a_list},
    {"no check-ins during a poll", one_thing_at_a_time},
    {"time without a zone", tell_time<without_zone>},
    {"time as a number", tell_time<as_number>},
    {"time with fractions", tell_time<with_fraction>},
    {"a date that is none", tell_time<no_date>},
    {"time under another name", tell_time<another_name>},
    {"a clock that stands", tell_time<long_ago>},
    {"time told late", tell_time_late},
    {"no time", no_time},
    {"none",
     [](const std::string&, const Call& call, const Handler& serve) { return serve(call); }},
};

std::string value_of(const std::vector<std::string>& arguments, const std::string& option) {
    const auto found = std::ranges::find(arguments, option);
    return found == arguments.end() || found + 1 == arguments.end() ? "" : *(found + 1);
}

void take_account(const std::string& text) {
    const std::size_t first = text.find(',');
    const std::size_t second = text.find(',', first + 1);
    mac = text.substr(0, first);
    account = {text.substr(first + 1, second - first - 1), text.substr(second + 1)};
}

// The habit of that name; nullptr for none.
Answer find_habit(const std::string& name) {
    constexpr std::string_view check = "overlook ";
    if (name.starts_with(check)) {
        words = name.substr(check.size());
        return overlook;
    }
    for (const Habit& habit : habits)
        if (name == habit.name)
            return habit.answer;
    return nullptr;
}

} // namespace

int main(int count, char** given) {
    std::vector<std::string> arguments(given + 1, given + count);
    const Answer habit = find_habit(value_of(arguments, "--habit"));
    if (!habit) {
        std::fputs("there is no such habit\n", stderr);
        return 2;
    }
    const auto at = std::ranges::find(arguments, "--habit");
    arguments.erase(at, at + 2);
    data_path = value_of(arguments, "--data");
    take_account(value_of(arguments, "--account"));
    return lab::run_program(
        arguments, [habit](const std::string& listener, const Call& call, const Handler& serve) {
            return habit(
                listener, call, [&](const Call& other) { return serve_to_the_end(serve, other); });
        });
}
