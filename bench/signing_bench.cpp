// Signing a report against mbedTLS's own HMAC over the same bytes.
#include <mbedtls/md.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/turns.h"
#include "transport/signature.h"

namespace {

constexpr double limit = 1.02;
const std::string secret = "a secret of the usual length0a1b2c3d4e5f";
const std::string authorization =
    "key=lab-key021b2c3d4e5f,timestamp=1795000000,nonce=00112233445566778899aabbccddeeff";
const std::string path = "/cloud-switch/02:1B:2C:3D:4E:5F/checkin";
const std::string body(47000, 'x'); // as long as the default switch's report

using Signature = unsigned char[SIGNATURE_SIZE];

void sign(Signature& signature) {
    api_sign_gen(
        secret.c_str(), authorization.c_str(), path.c_str(), body.data(),
        static_cast<int>(body.size()), signature);
}

const unsigned char* bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

void sign_alone(Signature& signature) {
    mbedtls_md_context_t context;
    mbedtls_md_init(&context);
    mbedtls_md_setup(&context, mbedtls_md_info_from_type(MBEDTLS_MD_SHA256), 1);
    mbedtls_md_hmac_starts(&context, bytes(secret), secret.size());
    for (const std::string* part : {&authorization, &path, &body})
        mbedtls_md_hmac_update(&context, bytes(*part), part->size());
    mbedtls_md_hmac_finish(&context, signature);
    mbedtls_md_free(&context);
}

} // namespace

int main() {
    Signature own, alone;
    auto times = bench::take_turns(
        {[&] { return std::vector{bench::time_of([&] { sign(own); })}; },
         [&] { return std::vector{bench::time_of([&] { sign_alone(alone); })}; }},
        {});
    if (std::memcmp(own, alone, sizeof own) != 0) {
        std::fputs("the signatures differ\n", stderr);
        return EXIT_FAILURE;
    }
    bench::print_time("a signature over 47,000 bytes", times[0][0]);
    bench::print_time("mbedTLS alone", times[1][0]);
    const double ratio = bench::print_ratio("signature / mbedTLS alone", times[0][0], times[1][0]);
    return ratio <= limit ? EXIT_SUCCESS : EXIT_FAILURE;
}
