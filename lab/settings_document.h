// Settings documents: what may be queued, and how a sequence number gets into one.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace lab {

struct BadDocument {
    std::string reason;
};

// The document as compact text with its members in the given order, or why it cannot be delivered.
std::variant<std::string, BadDocument> parse_settings(const std::string& text);

// A document that parse_settings() gave, with "system" / "cloud" / "config_seqno" put in.
std::string number_settings(const std::string& document, std::int64_t seqno);

// "system" / "cloud" / "config_seqno" of a report; nullopt when it is not there.
std::optional<std::int64_t> find_reported_seqno(const nlohmann::json& report);

} // namespace lab
