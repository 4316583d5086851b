// Settings in conversation: a switch that checks in, and documents that the cloud's operator
// queues.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "judge/cloud/session.h"

namespace judge::cloud {

struct Delivery {
    Reply reply;
    Json document;           // without the number
    std::int64_t number = 0; // 0: none, or one that a switch cannot store
};

// What a reply delivers; nullopt when it holds no settings.
std::optional<Delivery> read_delivery(const Reply& reply);

// A document that no other is mistaken for, and that does a switch no harm.
struct Settings {
    Settings();
    std::string marker;
    Json document;
};

// Has it queued. False, and the check knows why, when that cannot be.
bool queue(Session& session, Check& check, const Settings& settings);

// A check-in of the switch with the number of what it applied last.
Checkin report(const Session& session, const Host& host);

// Checks in until one of the documents is delivered; what somebody else has queued is acknowledged
// on the way, so that it comes to an end. `last` is the last reply.
std::optional<Delivery> await(
    Session& session, const Host& host, const std::vector<const Settings*>& documents,
    double seconds, Reply& last);

// Whether a reply delivers the document.
bool delivers(const Reply& reply, const Settings& settings);

} // namespace judge::cloud
