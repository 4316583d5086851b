// Firmware images as the simulated switch and the lab know them. An image is a header of 76 bytes
// and what is to run, the payload; numbers have their most significant byte first.
//
//     offset  bytes
//          0      4  "VXFW"
//          4     32  version, a text padded with NULs
//         36      4  when it was built, seconds since 1970-01-01 00:00:00 UTC
//         40      4  length of the payload in bytes
//         44     32  SHA-256 over bytes 4 to 43 and the payload
//         76      …  payload
//
// tools/make_image.py makes such files.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace sim {

constexpr std::size_t largest_image = 32 << 20; // bytes; a partition of the flash

struct ImageHeader {
    std::string raw_version; // 32 bytes
    std::uint32_t built = 0;
    std::uint32_t length = 0;
    std::array<std::uint8_t, 32> digest{};
};

// Nothing when `image` does not begin with a header.
std::optional<ImageHeader> read_header(const std::string& image);

// code_ok, code_no_image for no header, code_bad_image when length or digest are not what the
// header says.
int check_image(const std::string& image);

std::string
make_image(const std::string& version, const std::string& payload, std::uint32_t built = 0);

// What is shown of a raw version: its printable characters up to the first NUL, without blanks at
// the end.
std::string shown_version(const std::string& raw_version);

} // namespace sim
