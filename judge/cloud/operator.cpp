// Documents told apart by a name in them, which comes back in the reply that delivers it.
#include "judge/cloud/operator.h"

#include <thread>

namespace judge::cloud {

namespace {

constexpr std::int64_t largest_number = 2147483647;
constexpr auto between_checkins = std::chrono::milliseconds(300);

// Takes "system" / "cloud" / "config_seqno" out, and what is empty without it.
std::int64_t take_number(Json& document) {
    static const Json::json_pointer place("/system/cloud/config_seqno");
    if (!document.contains(place))
        return 0;
    const Json value = document.at(place);
    Json& system = document["system"];
    system["cloud"].erase("config_seqno");
    if (system["cloud"].empty())
        system.erase("cloud");
    if (system.empty())
        document.erase("system");
    const bool fits = value.is_number_integer() && value > 0 && value <= largest_number;
    return fits ? value.get<std::int64_t>() : 0;
}

} // namespace

std::optional<Delivery> read_delivery(const Reply& reply) {
    auto document = reply.status == 200 ? reply.object() : std::nullopt;
    if (!document || document->empty())
        return std::nullopt;
    Delivery delivery{reply, std::move(*document)};
    delivery.number = take_number(delivery.document);
    return delivery;
}

Settings::Settings() : marker("Judge-" + fresh_nonce().substr(0, 12)) {
    document["system"]["summary_info"]["device_name"] = marker;
}

bool queue(Session& session, Check& check, const Settings& settings) {
    return check.expect_done(session.hand_over(
        session.options.queue_settings, "queue these settings", settings.document));
}

Checkin report(const Session& session, const Host& host) {
    Checkin checkin = session.good();
    checkin.host = host.text;
    return checkin;
}

bool delivers(const Reply& reply, const Settings& settings) {
    return read_delivery(reply) && reply.body.find(settings.marker) != std::string::npos;
}

std::optional<Delivery> await(
    Session& session, const Host& host, const std::vector<const Settings*>& documents,
    double seconds, Reply& last) {
    const auto end = after(seconds);
    do {
        last = session.send(report(session, host), host);
        auto delivery = read_delivery(last);
        for (const Settings* settings : documents)
            if (delivers(last, *settings))
                return delivery;
        if (delivery && delivery->number > 0)
            session.number = delivery->number; // a switch stores whatever number comes
        else
            std::this_thread::sleep_for(between_checkins);
    } while (Clock::now() < end && !interrupted);
    return std::nullopt;
}

} // namespace judge::cloud
