// What proves to the cloud that a request comes from this switch and is not a repetition: a nonce
// and a keyed hash over the request.
//
// The debug console shows the authorization value, and so the account's key, since it is what one
// compares with the cloud's log when a signature is refused. The secret and the pads are never
// printed.
#pragma once

#include <stdint.h>
#include <time.h>

enum { NONCE_SIZE = 16, SIGNATURE_SIZE = 32 };

extern "C" {

// Fills NONCE_SIZE bytes from the switch's MAC and the process's random(), which stays unseeded:
// the nonces follow the same sequence after every start. `timestamp` is not used. Returns 0.
int api_nonce_gen(time_t timestamp, uint8_t* nonce);

// Writes SIGNATURE_SIZE bytes: the HMAC, keyed with `secret`, over `authorization` (the value of
// the Authorization header), `path` and `body_length` bytes of `body` (null for none), with nothing
// between them.
void api_sign_gen(
    const char* secret, const char* authorization, const char* path, const void* body,
    int32_t body_length, uint8_t* signature);
}
