// One check-in from the request to the reply.
#include "lab/checkin_service.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <cmath>
#include <limits>

#include "lab/json_text.h"
#include "lab/mac.h"
#include "lab/request_head.h"
#include "lab/settings_document.h"

namespace lab {

namespace {

std::string join_keys(const nlohmann::json& object) {
    std::string text;
    for (const auto& [key, value] : object.items())
        text += (text.empty() ? "" : ", ") + key;
    return text.empty() ? "none" : text;
}

constexpr std::size_t most_keys = 50; // of those that an event names

nlohmann::json list_keys(const nlohmann::json& object) {
    auto list = nlohmann::json::array();
    for (const auto& [key, value] : object.items())
        if (list.size() < most_keys)
            list.push_back(key);
    return list;
}

// The switch that a refused request speaks for; empty when its path names none.
std::string find_mac(const std::string& target) {
    constexpr std::string_view before = "/cloud-switch/";
    constexpr std::size_t mac_length = 17;
    if (!target.starts_with(before))
        return {};
    return canonical_mac(target.substr(before.size(), mac_length)).value_or("");
}

std::string find_target(const Call& call) {
    const auto head = parse_request_head(call.head);
    return head ? head->target : std::string();
}

// From the first packet of the connection to the whole request: what the way to the cloud takes.
double milliseconds_since(std::chrono::steady_clock::time_point begin) {
    const std::chrono::duration<double, std::milli> spent =
        std::chrono::steady_clock::now() - begin;
    return std::round(spent.count() * 10) / 10;
}

} // namespace

Reply CheckinService::answer(const Call& call) {
    const auto verdict = examine_call(call);
    if (const auto* rejection = std::get_if<Rejection>(&verdict))
        return reject(call, *rejection);
    if (is_nested_too_deeply(call.body))
        return reject(call, {"body", "the body is nested too deeply"});
    const auto report = nlohmann::json::parse(call.body, nullptr, false);
    if (!report.is_object())
        return reject(call, {"body", "the body is not a JSON object"});
    return accept(call, std::get<Verified>(verdict), report);
}

std::variant<Verified, Rejection> CheckinService::examine_call(const Call& call) {
    Examiner examiner;
    examiner.window = policy_.get().window;
    examiner.now = policy_.now();
    // What lies outside the window is refused by its timestamp and need not be remembered.
    const std::int64_t oldest = examiner.window > 0 ? examiner.now - examiner.window
                                                    : std::numeric_limits<std::int64_t>::min();
    examiner.find_account = [this](const std::string& mac) { return store_.find_account(mac); };
    examiner.record_nonce = [this, oldest](const std::string& mac, const Authorization& used) {
        return store_.record_nonce(mac, used, oldest);
    };
    return examine(call, examiner);
}

Reply CheckinService::reject(const Call& call, const Rejection& rejection) {
    const std::string target = find_target(call);
    const std::string mac = find_mac(target);
    store_.count("rejected." + rejection.code);
    events_.note(
        "rejected", mac, "rejected " + target + ": " + rejection.code + ": " + rejection.reason,
        {{"code", rejection.code}, {"reason", rejection.reason}, {"target", target}});
    // Plain text on purpose: a switch applies the body of any reply that is a JSON document.
    return {403, rejection.code + ": " + rejection.reason + "\n", "text/plain"};
}

Reply CheckinService::accept(
    const Call& call, const Verified& verified, const nlohmann::json& report) {
    const std::string& mac = verified.mac;
    const std::int64_t seqno = find_reported_seqno(report).value_or(0);
    const std::int64_t id = store_.add_report(mac, wall_seconds(), call.body, seqno);
    note_report(call, mac, report, seqno, id);
    if (store_.acknowledge(mac, seqno))
        events_.note(
            "settings-acknowledged", mac, mac + " acknowledged settings " + std::to_string(seqno),
            {{"config_seqno", seqno}});
    return deliver(mac, seqno);
}

void CheckinService::note_report(
    const Call& call, const std::string& mac, const nlohmann::json& report, std::int64_t seqno,
    std::int64_t id) {
    events_.note(
        "checkin", mac,
        mac + " checked in: signature verified, " + std::to_string(call.body.size()) +
            " bytes, sections " + join_keys(report) + "; config_seqno " + std::to_string(seqno),
        {{"bytes", call.body.size()},
         {"sections", list_keys(report)},
         {"config_seqno", seqno},
         {"report", id},
         {"milliseconds", milliseconds_since(call.connected_at)}});
}

Reply CheckinService::deliver(const std::string& mac, std::int64_t seqno) {
    const Policy policy = policy_.get();
    const auto delivery = store_.deliver(
        mac, seqno,
        {wall_milliseconds(), static_cast<std::int64_t>(policy.redeliver_seconds * 1000),
         policy.redeliver_tries});
    for (const std::int64_t refused : delivery.refused)
        events_.note(
            "settings-refused", mac,
            mac + " did not acknowledge settings " + std::to_string(refused) + ", given up",
            {{"config_seqno", refused}});
    if (!delivery.document)
        return {200, "{}"};
    const SettingsRecord& settings = *delivery.document;
    events_.note(
        "settings-delivered", mac,
        mac + " is sent settings " + std::to_string(settings.seqno) + ", try " +
            std::to_string(settings.tries),
        {{"config_seqno", settings.seqno}, {"try", settings.tries}});
    return {200, number_settings(settings.document, settings.seqno)};
}

} // namespace lab
