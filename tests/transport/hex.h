// Bytes as hexadecimal text and back, and the hashes of a second, independent library.
#pragma once

#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <cstdint>
#include <cstdio>
#include <string>

inline std::string hex(const std::uint8_t* bytes, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", bytes[i]);
        text += digits;
    }
    return text;
}

inline std::string bytes_of_hex(const std::string& digits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    return bytes;
}

inline const unsigned char* raw(const std::string& bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

inline std::string independent_hmac(const std::string& key, const std::string& message) {
    unsigned char mac[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    HMAC(
        EVP_sha256(), key.data(), static_cast<int>(key.size()), raw(message), message.size(), mac,
        &size);
    return hex(mac, size);
}

inline std::string independent_digest(const EVP_MD* kind, const std::string& message) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    EVP_Digest(message.data(), message.size(), digest, &size, kind, nullptr);
    return hex(digest, size);
}
