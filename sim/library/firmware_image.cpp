// Making and checking firmware images: header, digest, payload.
#include "sim/library/firmware_image.h"

#include <mbedtls/md.h>

#include <algorithm>
#include <cstring>

#include "sim/instruments/codes.h"

namespace sim {

namespace {

constexpr const char* magic = "VXFW";
constexpr std::size_t version_at = 4;
constexpr std::size_t version_size = 32;
constexpr std::size_t built_at = 36;
constexpr std::size_t length_at = 40;
constexpr std::size_t digest_at = 44;
constexpr std::size_t header_size = 76;

std::uint32_t number_at(const std::string& image, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = at; i < at + 4; ++i)
        number = number << 8 | static_cast<std::uint8_t>(image[i]);
    return number;
}

std::string as_bytes(std::uint32_t number) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

std::array<std::uint8_t, 32> digest_of(const std::string& image) {
    std::string covered =
        image.substr(version_at, digest_at - version_at) + image.substr(header_size);
    std::array<std::uint8_t, 32> digest{};
    mbedtls_md(
        mbedtls_md_info_from_type(MBEDTLS_MD_SHA256),
        reinterpret_cast<const unsigned char*>(covered.data()), covered.size(), digest.data());
    return digest;
}

} // namespace

std::optional<ImageHeader> read_header(const std::string& image) {
    if (image.size() < header_size || !image.starts_with(magic))
        return std::nullopt;
    ImageHeader header{
        image.substr(version_at, version_size),
        number_at(image, built_at),
        number_at(image, length_at),
        {}};
    std::memcpy(header.digest.data(), &image[digest_at], header.digest.size());
    return header;
}

int check_image(const std::string& image) {
    auto header = read_header(image);
    if (!header)
        return code_no_image;
    bool whole = image.size() - header_size == header->length;
    return whole && digest_of(image) == header->digest ? code_ok : code_bad_image;
}

std::string
make_image(const std::string& version, const std::string& payload, std::uint32_t built) {
    std::string raw_version = version;
    raw_version.resize(version_size, '\0');
    std::string image = magic + raw_version + as_bytes(built) +
                        as_bytes(static_cast<std::uint32_t>(payload.size())) +
                        std::string(header_size - digest_at, '\0') + payload;
    auto digest = digest_of(image);
    std::copy(digest.begin(), digest.end(), image.begin() + digest_at);
    return image;
}

std::string shown_version(const std::string& raw_version) {
    std::string shown;
    for (char c : raw_version.substr(0, raw_version.find('\0')))
        if (c >= ' ' && c <= '~')
            shown += c;
    shown.erase(shown.find_last_not_of(' ') + 1);
    return shown;
}

} // namespace sim
