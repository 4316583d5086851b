// One set of names for the hash functions of mbedTLS 2.28 and 3.x. In 2.28 the ones that report a
// failure carry a suffix, which 3.x dropped; 3.x marks record members as private.
#pragma once

#include <mbedtls/md5.h>
#include <mbedtls/sha256.h>
#include <mbedtls/version.h>

#if MBEDTLS_VERSION_MAJOR < 3
#define MBEDTLS_PRIVATE(member) member
#define mbedtls_md5 mbedtls_md5_ret
#define mbedtls_sha256 mbedtls_sha256_ret
#define mbedtls_sha256_starts mbedtls_sha256_starts_ret
#define mbedtls_sha256_update mbedtls_sha256_update_ret
#define mbedtls_sha256_finish mbedtls_sha256_finish_ret
#endif
