// The pads are hashed before the message and before its digest. The hash is computed in software,
// where its result codes are always 0.
#include "transport/hmac.h"

#include <string.h>

#include "transport/mbedtls_names.h"

uint8_t ipad[HMAC_BLOCK_SIZE];
uint8_t opad[HMAC_BLOCK_SIZE];

namespace {

size_t digest_size(int is224) { return is224 ? HMAC_SHA224_SIZE : HMAC_SHA256_SIZE; }

// Volatile, for the compiler may drop stores to a buffer that nobody reads again.
void wipe(volatile uint8_t* bytes, size_t count) {
    while (count-- > 0)
        *bytes++ = 0;
}

void fill_pads(const uint8_t* key, size_t key_length) {
    memset(ipad, 0x36, sizeof ipad);
    memset(opad, 0x5C, sizeof opad);
    for (size_t i = 0; i < key_length; ++i) {
        ipad[i] ^= key[i];
        opad[i] ^= key[i];
    }
}

} // namespace

void sha256_hmac_starts(
    mbedtls_sha256_context* context, const uint8_t* key, size_t key_length, int is224) {
    uint8_t digest[HMAC_SHA256_SIZE];
    if (key_length > HMAC_BLOCK_SIZE) {
        mbedtls_sha256(key, key_length, digest, is224);
        key = digest;
        key_length = digest_size(is224);
    }
    fill_pads(key, key_length);
    mbedtls_sha256_starts(context, is224);
    mbedtls_sha256_update(context, ipad, sizeof ipad);
    wipe(digest, sizeof digest);
}

void sha256_hmac_update(mbedtls_sha256_context* context, const uint8_t* data, size_t length) {
    mbedtls_sha256_update(context, data, length);
}

void sha256_hmac_finish(mbedtls_sha256_context* context, uint8_t* output) {
    uint8_t inner[HMAC_SHA256_SIZE];
    int is224 = context->MBEDTLS_PRIVATE(is224);
    mbedtls_sha256_finish(context, inner);
    mbedtls_sha256_starts(context, is224);
    mbedtls_sha256_update(context, opad, sizeof opad);
    mbedtls_sha256_update(context, inner, digest_size(is224));
    mbedtls_sha256_finish(context, output);
    wipe(inner, sizeof inner);
}
