// The signature of a request.
#pragma once

#include <string>
#include <string_view>

namespace lab {

// HMAC-SHA256 keyed with the secret over authorization value, path and body with nothing between
// them, as 64 lower-case hexadecimal digits.
std::string sign_request(
    std::string_view secret, std::string_view authorization, std::string_view path,
    std::string_view body);

// Compares in a time that does not depend on where two equally long texts differ.
bool same_signature(std::string_view left, std::string_view right);

} // namespace lab
