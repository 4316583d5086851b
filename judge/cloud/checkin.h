// A check-in in the making: rightly made and rightly signed, until a check spoils a part of it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace judge::cloud {

struct Account {
    std::string mac; // AA:BB:CC:DD:EE:FF
    std::string key;
    std::string secret;
};

struct Checkin {
    std::string method = "POST";
    std::string host; // for the Host header
    std::string path;
    Account account;
    std::int64_t timestamp = 0; // seconds since 1970
    std::string nonce;
    std::string body;

    // What is sent other than it is signed; nothing: as it is.
    std::optional<std::string> authorization;      // the header's whole value
    std::optional<std::string> sent_authorization; // likewise, changed after signing
    std::optional<std::string> sent_body;
    std::optional<std::string> signed_path;
    std::optional<std::string> signature;
    // The last change to the header lines "Name: value".
    std::function<void(std::vector<std::string>& lines)> rearrange;
    std::function<std::string(const std::string& body)> encode; // the body on its way

    bool plain = false;  // over HTTP
    bool cut = false;    // the sender ends in the middle: nothing comes behind what is sent
    std::string instead; // these bytes instead of a request

    std::string authorization_value() const;
    std::vector<std::string> lines() const; // the request line and the headers
    std::string text() const;               // the bytes
};

// The path of a switch's check-ins.
std::string checkin_path(const std::string& mac);

// HMAC-SHA256 keyed with the secret, as 64 lower-case hexadecimal digits.
std::string sign(const std::string& secret, const std::string& message);

// 32 lower-case hexadecimal digits that were not there before.
std::string fresh_nonce();

std::int64_t now_seconds();

} // namespace judge::cloud
