// The account's key and secret as the switch stores them: bound to this device by its MAC, so that
// a configuration copied to another switch does not carry the account along.
#pragma once

#include <stdint.h>

extern "C" {

// Stores a credential (printable text) with macstr appended. Returns the platform's result.
int api_key_set(const char* key);
int api_secret_set(const char* secret);

// Reads a credential into `destination`, without a terminator: it must arrive zero-filled and hold
// CREDENTIAL_SIZE bytes. Returns 0, or 1 with the destination untouched when it is null or when the
// stored value does not end in this device's macstr.
int api_key_get(char* destination);
int api_secret_get(char* destination);

// The sequence number of the last configuration that was applied without error.
// Both return the platform's result; on failure `*number` is unchanged.
int api_vxcloud_seqno_set(int32_t number);
int api_vxcloud_seqno_get(int32_t* number);
}
