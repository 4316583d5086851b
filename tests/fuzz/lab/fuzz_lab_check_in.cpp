// What comes in at a check-in port: requests as they are, and check-ins that are signed as a switch
// signs them, with any body. Whoever is not refused is answered by a JSON object.
#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

#include "lab_in_process.h"
#include "tests/lab/wire_client.h"

namespace {

std::string signed_check_in(const std::string& body) {
    lab_test::Checkin checkin;
    checkin.body = body;
    return checkin.text();
}

void check(const std::string& reply) {
    const std::size_t body = reply.find("\r\n\r\n");
    const bool good =
        !reply.starts_with("HTTP/1.1 200 ") || nlohmann::json::accept(reply.substr(body + 4));
    if (!good)
        std::abort();
}

} // namespace

// A first byte of 0 makes the rest a body.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    lab_fuzz::InProcess& lab = lab_fuzz::lab_of_the_hour();
    if (size > 0 && data[0] == 0)
        check(lab.check_in(signed_check_in(input.substr(1))));
    else
        lab.check_in(input);
    return 0;
}
