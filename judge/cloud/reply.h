// What a cloud answered, read to its end.
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "judge/cloud/connection.h"

namespace judge::cloud {

using Json = nlohmann::ordered_json;

struct Reply {
    int status = 0; // 0: there is none, see `fault`
    std::string type;
    std::string location; // of a redirection
    std::string body;
    bool whole = false; // the body has come to its end
    bool late = false;  // there is none, but the connection stands still
    std::string fault;
    double seconds = 0; // that it took, from here on

    bool is_success() const { return status >= 200 && status < 300; }
    // The body's object; nullopt when it is none.
    std::optional<Json> object() const;
    std::string text() const; // for a person, on one line
};

// Longer ones are not read to their end: a switch takes none of more than 1 MiB.
constexpr std::size_t longest_body = 1 << 20;

Reply receive_reply(Connection& connection, Clock::time_point until);

} // namespace judge::cloud
