// HMAC-SHA256 over the three parts of a request, by OpenSSL.
#include "lab/signature.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <stdexcept>

namespace lab {

namespace {

std::string to_hex(const unsigned char* bytes, std::size_t count) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < count; i++) {
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text;
}

} // namespace

std::string sign_request(
    std::string_view secret, std::string_view authorization, std::string_view path,
    std::string_view body) {
    std::string message;
    message.reserve(authorization.size() + path.size() + body.size());
    message.append(authorization).append(path).append(body);
    unsigned char mac[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (!HMAC(
            EVP_sha256(), secret.data(), static_cast<int>(secret.size()),
            reinterpret_cast<const unsigned char*>(message.data()), message.size(), mac, &length))
        throw std::runtime_error("HMAC-SHA256 is not available");
    return to_hex(mac, length);
}

bool same_signature(std::string_view left, std::string_view right) {
    return left.size() == right.size() &&
           CRYPTO_memcmp(left.data(), right.data(), left.size()) == 0;
}

} // namespace lab
