// The account in the platform's store, each value with the MAC behind it.
#include "base/credentials.h"

#include <stdio.h>
#include <string.h>

#include "base/debug.h"
#include "base/state.h"
#include "platform/vxcloud.h"

namespace {

// What differs between the two.
struct Credential {
    int (*store)(const char* text);
    int (*fetch)(char* text);
    const char* failure;
};

const Credential key_credential = {sal_vxcloud_key_set, sal_vxcloud_key_get, "api_key_get fail\n"};
const Credential secret_credential = {
    sal_vxcloud_secret_set, sal_vxcloud_secret_get, "api_secret_get fail\n"};

// The bound text may be longer than the store takes: refusing it is the platform's part, for a text
// cut here would lose the MAC and could never be read back.
int store_bound(const Credential& credential, const char* text) {
    char bound[CREDENTIAL_SIZE + MAC_TEXT_SIZE] = "";
    snprintf(bound, sizeof bound, "%s%s", text, macstr);
    return credential.store(bound);
}

// The length of the credential within `stored`, or -1 when another device stored it.
int bound_length(const char* stored) {
    size_t length = strlen(stored);
    size_t suffix = strlen(macstr);
    if (length < suffix || strcmp(stored + length - suffix, macstr) != 0)
        return -1;
    return static_cast<int>(length - suffix);
}

int fetch_bound(const Credential& credential, char* destination) {
    if (!destination)
        return 1;
    char stored[CREDENTIAL_SIZE] = "";
    credential.fetch(stored);
    int length = bound_length(stored);
    if (length < 0) {
        debug_print("%s", credential.failure);
        return 1;
    }
    memcpy(destination, stored, static_cast<size_t>(length));
    return 0;
}

} // namespace

int api_key_set(const char* key) { return store_bound(key_credential, key); }
int api_secret_set(const char* secret) { return store_bound(secret_credential, secret); }

int api_key_get(char* destination) { return fetch_bound(key_credential, destination); }
int api_secret_get(char* destination) { return fetch_bound(secret_credential, destination); }

int api_vxcloud_seqno_set(int32_t number) { return sal_vxcloud_seqno_set(number); }
int api_vxcloud_seqno_get(int32_t* number) { return sal_vxcloud_seqno_get(number); }
