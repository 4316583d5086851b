// The firmware images, as far as they are read. Fetching and writing one has its own option.
#include "platform/firmware.h"

#include <cstring>

#include "judge/family.h"
#include "platform/system.h"

namespace judge {

namespace {

const Parameter partition = within("partition", 0, FW_PARTITIONS - 1);

Operations reads() { return {{NAMED(sal_sys_dualImageCurrSel_get), {gives(partition)}}}; }

// A partition may be empty, so the selection of the other one may be refused.
Settings settings() {
    return {
        Setting(
            NAMED(sal_sys_dualImage_sel), {}, {partition}, outputs(sal_sys_dualImageCurrSel_get))
            .unless_refused()};
}

void judge_version(const Guarded& raw) {
    Guarded shown(FW_VERSION_SIZE);
    int code = bench->call_as<int, const char*, char*>(
        "sal_filter_ver_get(...)", sal_filter_ver_get, reinterpret_cast<const char*>(raw.data()),
        shown.text());
    if (!bench->works(code, "the version as it is shown"))
        return;
    bench->holds(
        shown.overrun() == 0, reason::overrun, "FW_VERSION_SIZE bytes",
        std::to_string(shown.overrun()) + " bytes outside it were written");
    bench->holds(
        shown.terminated(), reason::unterminated, "NUL-terminated in FW_VERSION_SIZE bytes",
        "no NUL within it");
}

bool is_none(int code) { return code == FW_NO_IMAGE; }

int judge_header(int number) {
    Guarded length(4), built(4), digest(FW_DIGEST_SIZE), raw(FW_RAW_VERSION_SIZE);
    int code =
        ASK(sal_sys_fwImageHdrInfo_get, number, length.as<std::uint32_t>(),
            built.as<std::uint32_t>(), digest.data(), raw.text());
    for (const Guarded* output : {&length, &built, &digest, &raw}) {
        bench->holds(
            output->overrun() == 0, reason::overrun, "4, 4, 32 and 32 bytes",
            std::to_string(output->overrun()) + " bytes outside one were written");
        bench->holds(
            output->untouched() == (code != 0), code ? reason::touched : reason::not_written,
            "a failing call leaves its outputs unchanged, another fills them",
            "code " + std::to_string(code) + (code ? ", and written" : ", and not written"));
    }
    if (code == 0) {
        Guarded repeated(FW_RAW_VERSION_SIZE);
        std::uint32_t length_again = 0, built_again = 0;
        std::uint8_t digest_again[FW_DIGEST_SIZE];
        ASK(sal_sys_fwImageHdrInfo_get, number, &length_again, &built_again, digest_again,
            repeated.text());
        bench->holds(
            raw.bytes() == repeated.bytes() && length_again == *length.as<std::uint32_t>() &&
                built_again == *built.as<std::uint32_t>() &&
                std::memcmp(digest.data(), digest_again, sizeof digest_again) == 0,
            reason::not_repeated, "the header of the image", "another");
        judge_version(raw);
    }
    return code;
}

void agreement() {
    int selected = -1;
    ASK(sal_sys_dualImageCurrSel_get, &selected);
    for (int number = 0; number < FW_PARTITIONS; ++number) {
        int code = judge_header(number);
        bench->holds(
            code == 0 || is_none(code) || code == FW_BAD_IMAGE, reason::refused,
            "the header, or FW_NO_IMAGE", "code " + std::to_string(code));
        if (number == selected)
            bench->holds(
                !is_none(code), reason::disagrees,
                "a partition without an image cannot be selected",
                "partition " + std::to_string(number) + " is, and has none");
    }
    for (int wrong : {-1, FW_PARTITIONS + 0, INT32_MAX})
        bench->holds(judge_header(wrong) != 0, reason::accepted, partition.says, "code 0");
    // A version that fills its field is not terminated.
    Guarded full(FW_RAW_VERSION_SIZE, 'v');
    judge_version(full);
    Guarded padded(FW_RAW_VERSION_SIZE, 0);
    std::memcpy(padded.data(), "1.0", 3);
    judge_version(padded);
}

} // namespace

const Family firmware_family = {"firmware", reads, agreement, settings, nullptr};

} // namespace judge
