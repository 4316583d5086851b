// HMAC-SHA256 (RFC 2104) over mbedTLS's hash.
//
// The pads belong to the process and not to the context: only one computation may be in progress
// at a time. They hold what the secret can be read from and are never printed.
#pragma once

#include <mbedtls/sha256.h>
#include <stddef.h>
#include <stdint.h>

enum {
    HMAC_BLOCK_SIZE = 64,
    HMAC_SHA256_SIZE = 32,
    HMAC_SHA224_SIZE = 28,
};

extern "C" {

extern uint8_t ipad[HMAC_BLOCK_SIZE];
extern uint8_t opad[HMAC_BLOCK_SIZE];

// Begins a computation in `context`, which the caller has initialised. `key` is any run of bytes;
// one longer than a block counts by its digest. `is224` is 0 for SHA-256, 1 for SHA-224.
void sha256_hmac_starts(
    mbedtls_sha256_context* context, const uint8_t* key, size_t key_length, int is224);

// Feeds `length` bytes; `data` may be null when there are none.
void sha256_hmac_update(mbedtls_sha256_context* context, const uint8_t* data, size_t length);

// Writes HMAC_SHA256_SIZE bytes to `output`, or HMAC_SHA224_SIZE if SHA-224 was asked for. The
// caller frees the context.
void sha256_hmac_finish(mbedtls_sha256_context* context, uint8_t* output);
}
