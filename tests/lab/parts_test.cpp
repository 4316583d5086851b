// The pure pieces: request heads, MAC texts, the signature.
#include <gtest/gtest.h>

#include "lab/mac.h"
#include "lab/request_head.h"
#include "lab/signature.h"

namespace lab_test {

namespace {

TEST(RequestHead, keeps_lines_in_the_order_received) {
    const auto head = lab::parse_request_head(
        "POST /a%20b?c HTTP/1.1\r\nZ: 1\r\nA:  two words \t\r\nz: 3\r\nEmpty:\r\n\r\n");
    ASSERT_TRUE(head);
    EXPECT_EQ(head->method, "POST");
    EXPECT_EQ(head->target, "/a%20b?c");
    EXPECT_EQ(head->version, "HTTP/1.1");
    ASSERT_EQ(head->lines.size(), 4u);
    EXPECT_EQ(head->lines[0].name, "Z");
    EXPECT_EQ(head->lines[1].value, "two words");
    EXPECT_EQ(head->lines[2].name, "z");
    EXPECT_EQ(head->lines[3].value, "");
}

TEST(RequestHead, must_be_whole) {
    for (const char* bytes :
         {"", "\r\n\r\n", "GET /\r\n\r\n", "GET / HTTP/1.1\r\n", "GET / HTTP/2\r\n\r\n",
          "GET / x HTTP/1.1\r\n\r\n", "GET / HTTP/1.1\nA: 1\n\n",
          "GET / HTTP/1.1\r\nno colon\r\n\r\n", "GET / HTTP/1.1\r\n: no name\r\n\r\n",
          "GET / HTTP/1.1\r\nA : 1\r\n\r\n", "GET / HTTP/1.1\r\nA: 1\r\n folded: 2\r\n\r\n"})
        EXPECT_FALSE(lab::parse_request_head(bytes)) << bytes;
}

TEST(Mac, is_taken_in_both_forms) {
    EXPECT_EQ(lab::canonical_mac("aa:Bb:0c:dd:ee:9F"), "AA:BB:0C:DD:EE:9F");
    EXPECT_EQ(lab::canonical_mac("aabb0cddee9f"), "AA:BB:0C:DD:EE:9F");
    for (const char* text :
         {"", "aabb0cddee9", "aabb0cddee9g", "aa-bb-0c-dd-ee-9f", "aa:bb:0c:dd:ee",
          "aa:bb:0cdd:ee:9f0", "aa:bb:0c:dd:ee:9f:"})
        EXPECT_FALSE(lab::canonical_mac(text)) << text;
}

// RFC 4231, test case 2, cut into three parts.
TEST(Signature, is_hmac_sha256_over_the_parts_joined) {
    EXPECT_EQ(
        lab::sign_request("Jefe", "what do ya", " want for", " nothing?"),
        "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
}

// RFC 4231, test case 6: a secret longer than the hash's block.
TEST(Signature, hashes_a_long_secret_first) {
    EXPECT_EQ(
        lab::sign_request(
            std::string(131, '\xaa'), "Test Using Larger Than Block-Size Key", " - ",
            "Hash Key First"),
        "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54");
}

// The worked example of docs/wire.md.
TEST(Signature, fits_the_worked_example) {
    EXPECT_EQ(
        lab::sign_request(
            "example-secret",
            "key=example-key,timestamp=1795230000,nonce=0123456789abcdef0123456789abcdef",
            "/cloud-switch/02:00:00:00:00:01/checkin",
            R"({"system":{"cloud":{"config_seqno":1}}})"),
        "760792927a5f38ebf4d7ad2a997b34cf1e57d9ff59ac8fe753893e8995870be8");
}

} // namespace

} // namespace lab_test
