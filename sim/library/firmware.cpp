// Platform library: firmware images, and the flash that holds them.
#include "sim/library/firmware.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "platform/firmware.h"
#include "sim/instruments/scenario.h"
#include "sim/library/call.h"
#include "sim/library/firmware_download.h"
#include "sim/library/firmware_image.h"

static_assert(
    int{FW_NO_IMAGE} == int{sim::code_no_image} && int{FW_BAD_IMAGE} == int{sim::code_bad_image});

namespace sim {

namespace {

constexpr std::size_t factory_payload = 4096; // bytes

std::string read_file(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

Flash flash() { return Flash(board().root()); }

} // namespace

void Firmware::hardware(Fields& f) { f.text("second_version", second_version, 32); }

bool Flash::leave_factory(const std::string& version, const std::string& second_version) const {
    if (std::filesystem::exists(folder_))
        return true;
    return write(0, make_image(version, std::string(factory_payload, '\x11'))) &&
           (second_version.empty() ||
            write(1, make_image(second_version, std::string(factory_payload, '\x22')))) &&
           select(0);
}

std::string Flash::booted_version() const {
    for (int partition : {selected(), 1 - selected()}) {
        std::string image = read(partition);
        if (check_image(image) == code_ok)
            return shown_version(read_header(image)->raw_version);
    }
    return "";
}

std::string Flash::read(int partition) const { return read_file(file(partition)); }

bool Flash::write(int partition, const std::string& image) const {
    return write_atomically(file(partition), image);
}

int Flash::selected() const { return read_file(folder_ / "boot") == "1" ? 1 : 0; }

bool Flash::select(int partition) const {
    return write_atomically(folder_ / "boot", std::to_string(partition));
}

} // namespace sim

using namespace sim;

int sal_fwImage_download(const char* path, const char* url) {
    return call(
        "sal_fwImage_download",
        [&](Switch& s) -> int {
            s.firmware.locked = true;
            std::string image;
            if (int code = fetch(url, image))
                return code;
            return write_atomically(board().path(path), image) ? check_image(image) : code_failed;
        },
        path, url);
}

int sal_sys_fwImage_write(const char* path, int partition) {
    return call(
        "sal_sys_fwImage_write",
        [&](Switch& s) -> int {
            s.firmware.locked = false;
            if (!Flash::has(partition))
                return code_bad_value;
            if (!std::filesystem::is_regular_file(board().path(path)))
                return code_not_found;
            return flash().write(partition, read_file(board().path(path))) ? code_ok : code_failed;
        },
        path, partition);
}

int sal_sys_fwImage_backup(int partition, const char* path) {
    return call(
        "sal_sys_fwImage_backup",
        [&](Switch&) -> int {
            if (!Flash::has(partition))
                return code_bad_value;
            std::string image = flash().read(partition);
            return write_atomically(board().path(path), image) ? check_image(image) : code_failed;
        },
        partition, path);
}

int sal_sys_fwImageSaveMem_gen(const char* path) {
    return call(
        "sal_sys_fwImageSaveMem_gen",
        [&](Switch&) -> int {
            std::error_code error;
            std::filesystem::remove(board().path(path), error);
            return error ? code_failed : code_ok;
        },
        path);
}

int sal_sys_fwImageLock_give(void) {
    return call("sal_sys_fwImageLock_give", [](Switch& s) {
        s.firmware.locked = false;
        return code_ok;
    });
}

int sal_sys_dualImageCurrSel_get(int* partition) {
    return call("sal_sys_dualImageCurrSel_get", [&](Switch&) {
        *partition = flash().selected();
        return code_ok;
    });
}

int sal_sys_dualImage_sel(int partition) {
    return call(
        "sal_sys_dualImage_sel",
        [&](Switch&) -> int {
            if (!Flash::has(partition))
                return code_bad_value;
            if (!read_header(flash().read(partition)))
                return code_no_image;
            return flash().select(partition) ? code_ok : code_failed;
        },
        partition);
}

int sal_sys_fwImageHdrInfo_get(
    int partition, uint32_t* length, uint32_t* built, uint8_t* digest, char* raw_version) {
    return call(
        "sal_sys_fwImageHdrInfo_get",
        [&](Switch&) -> int {
            if (!Flash::has(partition))
                return code_bad_value;
            auto header = read_header(flash().read(partition));
            if (!header)
                return code_no_image;
            *length = header->length;
            *built = header->built;
            std::copy(header->digest.begin(), header->digest.end(), digest);
            std::memcpy(raw_version, header->raw_version.data(), FW_RAW_VERSION_SIZE);
            return code_ok;
        },
        partition);
}

int sal_filter_ver_get(const char* raw_version, char* version) {
    return call("sal_filter_ver_get", [&](Switch&) {
        copy_text(version, FW_VERSION_SIZE, shown_version({raw_version, FW_RAW_VERSION_SIZE}));
        return code_ok;
    });
}

int sal_sys_restore_defaults(int what) {
    return call(
        "sal_sys_restore_defaults",
        [&](Switch&) -> int {
            if (what != 0)
                return code_bad_value;
            board().forget_startup_config();
            return code_ok;
        },
        what);
}
