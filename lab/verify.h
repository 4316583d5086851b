// The examination of a check-in: everything that makes the lab refuse one.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>

#include "lab/http.h"

namespace lab {

struct Account {
    std::string key;
    std::string secret;
};

struct Authorization {
    std::string key;
    std::int64_t timestamp = 0; // seconds since 1970
    std::string nonce;          // 32 lower-case hexadecimal digits
};

// What a request is held against.
struct Examiner {
    std::function<std::optional<Account>(const std::string& mac)> find_account;
    // Remembers switch, nonce and timestamp; false when they were known.
    std::function<bool(const std::string& mac, const Authorization&)> record_nonce;
    std::int64_t now = 0;
    std::int64_t window = 0; // seconds a timestamp may lie off either way; 0: any timestamp
};

struct Verified {
    std::string mac;
    Authorization authorization;
};

struct Rejection {
    std::string code;   // one word of docs/wire.md, "Rejections"
    std::string reason; // a sentence for a person
};

std::variant<Verified, Rejection> examine(const Call& call, const Examiner& examiner);

} // namespace lab
