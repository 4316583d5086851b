// The bytes of a check-in, by docs/wire.md and by nothing else.
#include "judge/cloud/checkin.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

#include <ctime>

namespace judge::cloud {

namespace {

std::string to_hex(const unsigned char* bytes, std::size_t count) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text;
}

} // namespace

std::string checkin_path(const std::string& mac) { return "/cloud-switch/" + mac + "/checkin"; }

std::string sign(const std::string& secret, const std::string& message) {
    unsigned char mac[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    HMAC(
        EVP_sha256(), secret.data(), static_cast<int>(secret.size()),
        reinterpret_cast<const unsigned char*>(message.data()), message.size(), mac, &length);
    return to_hex(mac, length);
}

std::string fresh_nonce() {
    unsigned char bytes[16];
    RAND_bytes(bytes, sizeof bytes);
    return to_hex(bytes, sizeof bytes);
}

std::int64_t now_seconds() { return std::time(nullptr); }

std::string Checkin::authorization_value() const {
    return authorization.value_or(
        "key=" + account.key + ",timestamp=" + std::to_string(timestamp) + ",nonce=" + nonce);
}

std::vector<std::string> Checkin::lines() const {
    const std::string proof = authorization_value();
    std::vector<std::string> lines = {
        "Host: " + host,
        "Accept: */*",
        "Content-Length: " + std::to_string(body.size()),
        "Content-Type: application/json",
        "Authorization: " + sent_authorization.value_or(proof),
        "Signature: " +
            signature.value_or(sign(account.secret, proof + signed_path.value_or(path) + body))};
    if (rearrange)
        rearrange(lines);
    lines.insert(lines.begin(), method + " " + path + " HTTP/1.1");
    return lines;
}

std::string Checkin::text() const {
    if (!instead.empty())
        return instead;
    std::string text;
    for (const std::string& line : lines())
        text += line + "\r\n";
    const std::string bytes = sent_body.value_or(body);
    return text + "\r\n" + (encode ? encode(bytes) : bytes);
}

} // namespace judge::cloud
