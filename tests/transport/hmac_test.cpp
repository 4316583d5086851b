// The keyed hash against the published vectors of RFC 4231 and against a second library.
#include "transport/hmac.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>

#include <algorithm>
#include <functional>

#include "hex.h"

namespace {

std::string hmac(const std::string& key, const std::string& message, int is224 = 0) {
    mbedtls_sha256_context context;
    std::uint8_t mac[HMAC_SHA256_SIZE] = {};
    mbedtls_sha256_init(&context);
    sha256_hmac_starts(&context, raw(key), key.size(), is224);
    sha256_hmac_update(&context, raw(message), message.size());
    sha256_hmac_finish(&context, mac);
    mbedtls_sha256_free(&context);
    return hex(mac, is224 ? HMAC_SHA224_SIZE : HMAC_SHA256_SIZE);
}

// A key of `length` different bytes.
std::string key_of(std::size_t length) {
    std::string key;
    for (std::size_t i = 0; i < length; ++i)
        key += static_cast<char>(7 * i + 1);
    return key;
}

// What `run` leaves on a stack that it has for itself.
std::string stack_after(std::function<void()> run) {
    constexpr std::size_t size = 1 << 20;
    void* stack = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack, size);
    pthread_t thread;
    auto call = [](void* function) -> void* {
        (*static_cast<std::function<void()>*>(function))();
        return nullptr;
    };
    EXPECT_EQ(pthread_create(&thread, &attributes, call, &run), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    std::string left(static_cast<const char*>(stack), size);
    munmap(stack, size);
    return left;
}

std::string sha256(const std::string& text) {
    std::uint8_t digest[HMAC_SHA256_SIZE];
    EVP_Digest(text.data(), text.size(), digest, nullptr, EVP_sha256(), nullptr);
    return {digest, digest + sizeof digest};
}

struct Vector {
    std::string key, message, mac256, mac224;
};

const Vector vectors[] = {
    {std::string(20, '\x0b'), "Hi There",
     "b0344c61d8db38535ca8afceaf0bf12b881dc200c9833da726e9376c2e32cff7",
     "896fb1128abbdf196832107cd49df33f47b4b1169912ba4f53684b22"},
    {"Jefe", "what do ya want for nothing?",
     "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843",
     "a30e01098bc6dbbf45690f3a7e9e6d0f8bbea2a39e6148008fd05e44"},
    {std::string(20, '\xaa'), std::string(50, '\xdd'),
     "773ea91e36800e46854db8ebd09181a72959098b3ef8c122d9635514ced565fe",
     "7fb3cb3588c6c1f6ffa9694d7d6ad2649365b0c1f65d69d1ec8333ea"},
    {bytes_of_hex("0102030405060708090a0b0c0d0e0f10111213141516171819"), std::string(50, '\xcd'),
     "82558a389a443c0ea4cc819899f2083a85f0faa3e578f8077a2e3ff46729665b",
     "6c11506874013cac6a2abc1bb382627cec6a90d86efc012de7afec5a"},
    {std::string(131, '\xaa'), "Test Using Larger Than Block-Size Key - Hash Key First",
     "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54",
     "95e9a0db962095adaebe9b2d6f0dbce2d499f112f2d2b7273fa6870e"},
    {std::string(131, '\xaa'),
     "This is a test using a larger than block-size key and a larger than block-size data. The key "
     "needs to be hashed before being used by the HMAC algorithm.",
     "9b09ffa71b942fcb27635fbcd5b0e944bfdc63644f0713938a7f51535c3a35e2",
     "3a854166ac5d9f023f54d517d0b39dbd946770db9c2b95c9f6f565d1"},
};

} // namespace

TEST(Hmac, published_vectors) {
    for (const Vector& vector : vectors) {
        EXPECT_EQ(hmac(vector.key, vector.message), vector.mac256) << vector.message;
        EXPECT_EQ(hmac(vector.key, vector.message, 1), vector.mac224) << vector.message;
    }
}

TEST(Hmac, published_vector_of_a_truncated_mac) {
    std::string mac = hmac(std::string(20, '\x0c'), "Test With Truncation");
    EXPECT_EQ(mac.substr(0, 32), "a3b6167473100ee06e0c796c2955552b");
}

TEST(Hmac, agrees_with_another_library_for_every_key_length) {
    for (std::size_t length = 0; length <= 130; ++length)
        EXPECT_EQ(hmac(key_of(length), "message"), independent_hmac(key_of(length), "message"))
            << length;
}

TEST(Hmac, message_fed_in_pieces_is_the_same_message) {
    mbedtls_sha256_context context;
    std::uint8_t mac[HMAC_SHA256_SIZE];
    std::string key = "key", first(70, 'a'), second = std::string("\0\xff", 2);
    mbedtls_sha256_init(&context);
    sha256_hmac_starts(&context, raw(key), key.size(), 0);
    sha256_hmac_update(&context, raw(first), first.size());
    sha256_hmac_update(&context, nullptr, 0);
    sha256_hmac_update(&context, raw(second), second.size());
    sha256_hmac_finish(&context, mac);
    mbedtls_sha256_free(&context);
    EXPECT_EQ(hex(mac, sizeof mac), independent_hmac(key, first + second));
}

TEST(Hmac, key_of_64_bytes_is_used_as_it_is_and_one_of_65_by_its_digest) {
    std::string block = key_of(64);
    hmac(block, "");
    EXPECT_TRUE(std::equal(block.begin(), block.end(), ipad, [](char key, std::uint8_t pad) {
        return static_cast<std::uint8_t>(key) == (pad ^ 0x36);
    }));

    std::string longer = key_of(65);
    std::string digest = bytes_of_hex(independent_digest(EVP_sha256(), longer));
    EXPECT_EQ(hmac(longer, "message"), hmac(digest, "message"));
    EXPECT_EQ(hmac(longer, "message"), independent_hmac(longer, "message"));
}

TEST(Hmac, pads_are_filled_beyond_the_key) {
    hmac("A", "");
    EXPECT_EQ(hex(ipad, 3), "773636");
    EXPECT_EQ(hex(opad, 3), "1d5c5c");
    EXPECT_EQ(ipad[63], 0x36);
    EXPECT_EQ(opad[63], 0x5c);
}

TEST(Hmac, neither_the_keys_digest_nor_the_inner_one_stays_on_the_stack) {
    std::string key = key_of(65);
    mbedtls_sha256_context context;
    std::uint8_t mac[HMAC_SHA256_SIZE];
    mbedtls_sha256_init(&context);
    std::string left = stack_after([&] { sha256_hmac_starts(&context, raw(key), key.size(), 0); });
    EXPECT_EQ(left.find(sha256(key)), std::string::npos);
    std::string inner = sha256(std::string(ipad, ipad + sizeof ipad));
    left = stack_after([&] { sha256_hmac_finish(&context, mac); });
    EXPECT_EQ(left.find(inner), std::string::npos);
    mbedtls_sha256_free(&context);
}
