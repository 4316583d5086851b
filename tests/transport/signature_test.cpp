// Nonce and signature of a request.
#include "transport/signature.h"

#include <cstdlib>
#include <cstring>

#include "base/debug.h"
#include "base/state.h"
#include "hex.h"
#include "tests/support/on_board.h"

namespace {

class Signature : public OnBoard {
  protected:
    Signature() { std::strcpy(macaddrstr, "AA:BB:CC:DD:EE:FF"); }

    std::string nonce() {
        std::uint8_t bytes[NONCE_SIZE];
        EXPECT_EQ(api_nonce_gen(1795000000, bytes), 0);
        return hex(bytes, sizeof bytes);
    }

    static std::string sign(
        const std::string& secret, const std::string& authorization, const std::string& path,
        const std::string& body) {
        std::uint8_t bytes[SIGNATURE_SIZE];
        api_sign_gen(
            secret.c_str(), authorization.c_str(), path.c_str(), body.data(),
            static_cast<std::int32_t>(body.size()), bytes);
        return hex(bytes, sizeof bytes);
    }
};

// What a switch with that MAC sends if its random numbers continue as they do now.
std::string expected_nonce(const std::string& fixed) {
    std::string block = fixed + '\0';
    while (block.size() < 64)
        block += static_cast<char>(random() & 0xFF);
    return independent_digest(EVP_md5(), block);
}

} // namespace

TEST_F(Signature, nonce_holds_the_mac_up_to_its_second_to_last_digit) {
    srandom(1); // where a process starts that never seeds
    std::string first = expected_nonce("AA:BB:CC:DD:EE:F");
    std::string second = expected_nonce("AA:BB:CC:DD:EE:F");
    srandom(1);
    EXPECT_EQ(nonce(), first);
    EXPECT_EQ(nonce(), second);
    EXPECT_NE(first, second);
    EXPECT_STREQ(reinterpret_cast<const char*>(gCattr.sign_block), "AA:BB:CC:DD:EE:F");
}

TEST_F(Signature, nonce_generator_is_never_seeded_here) {
    srandom(77);
    std::string expected = expected_nonce("AA:BB:CC:DD:EE:F");
    srandom(77);
    EXPECT_EQ(nonce(), expected);
}

TEST_F(Signature, covers_authorization_path_and_body_with_nothing_between) {
    std::string body("{\"a\": \0\xff}", 9);
    EXPECT_EQ(
        sign("thesecret", "key=k,timestamp=1,nonce=2", "/a/b", body),
        independent_hmac("thesecret", "key=k,timestamp=1,nonce=2/a/b" + body));
}

TEST_F(Signature, get_signs_authorization_and_path_only) {
    std::uint8_t bytes[SIGNATURE_SIZE];
    api_sign_gen("thesecret", "key=k", "/path", nullptr, 0, bytes);
    EXPECT_EQ(hex(bytes, sizeof bytes), independent_hmac("thesecret", "key=k/path"));
}

TEST_F(Signature, secret_of_64_bytes_counts_as_it_is_and_one_of_65_by_its_digest) {
    for (std::size_t length : {63, 64, 65, 127}) {
        std::string secret(length, 's');
        EXPECT_EQ(sign(secret, "a", "/p", "b"), independent_hmac(secret, "a/pb")) << length;
    }
}

TEST_F(Signature, console_shows_each_feed_and_never_secret_or_pads) {
    debug_flag = 1;
    sign("thesecret", "key=k", "/path", "body!");
    EXPECT_EQ(
        raw_console(), "hashing: auth 'key=k' (len=5)\n"
                       "hashing: path '/path' (len=5)\n"
                       "hashing: body (len=5)\n");
}

TEST_F(Signature, console_is_silent_without_the_debug_flag) {
    sign("thesecret", "key=k", "/path", "body!");
    nonce();
    EXPECT_EQ(raw_console(), "");
}
