// The nonce is a digest of the MAC and chance; the signature covers header, path and body.
#include "transport/signature.h"

#include <stdlib.h>
#include <string.h>

#include "base/debug.h"
#include "base/state.h"
#include "transport/hmac.h"
#include "transport/mbedtls_names.h"

static_assert(int(SIGNATURE_SIZE) == int(HMAC_SHA256_SIZE), "a signature is one HMAC");

namespace {

// What the nonce block keeps of the MAC text: all but its last digit, and a terminator.
enum { NONCE_MAC_LENGTH = 16 };

} // namespace

int api_nonce_gen(time_t, uint8_t* nonce) {
    uint8_t* block = gCattr.sign_block;
    memcpy(block, macaddrstr, NONCE_MAC_LENGTH);
    block[NONCE_MAC_LENGTH] = '\0';
    for (int i = NONCE_MAC_LENGTH + 1; i < SIGN_BLOCK_SIZE; ++i)
        block[i] = static_cast<uint8_t>(random() & 0xFF);
    mbedtls_md5(block, SIGN_BLOCK_SIZE, nonce);
    return 0;
}

namespace {

const uint8_t* bytes_of(const void* data) { return static_cast<const uint8_t*>(data); }

void feed_text(mbedtls_sha256_context* context, const char* name, const char* text) {
    size_t length = strlen(text);
    debug_print("hashing: %s '%s' (len=%lu)\n", name, text, static_cast<unsigned long>(length));
    sha256_hmac_update(context, bytes_of(text), length);
}

void feed_body(mbedtls_sha256_context* context, const void* body, int32_t length) {
    debug_print("hashing: body (len=%d)\n", static_cast<int>(length));
    if (length > 0)
        sha256_hmac_update(context, bytes_of(body), static_cast<size_t>(length));
}

} // namespace

void api_sign_gen(
    const char* secret, const char* authorization, const char* path, const void* body,
    int32_t body_length, uint8_t* signature) {
    mbedtls_sha256_context context;
    mbedtls_sha256_init(&context);
    sha256_hmac_starts(&context, bytes_of(secret), strlen(secret), 0);
    feed_text(&context, "auth", authorization);
    feed_text(&context, "path", path);
    feed_body(&context, body, body_length);
    sha256_hmac_finish(&context, signature);
    mbedtls_sha256_free(&context);
}
