// Mirror groups of the chip.
#include <algorithm>

#include "driver/mirror.h"
#include "sim/chip/handlers.h"

namespace sim {
namespace {

int set_mirror(ChipState& chip, OrderedEntry<MirrorGroup>& record) {
    if (record.words.word[0] >= chip.mirrors.size())
        return code_bad_value;
    if (!port_at(chip, record.entry.target))
        return code_no_port;
    ChipMirror mirror{record.entry.target, record.entry.ingress, {}, {}};
    std::ranges::copy(record.entry.rx.words, mirror.rx.begin());
    std::ranges::copy(record.entry.tx.words, mirror.tx.begin());
    chip.mirrors[record.words.word[0]] = mirror;
    return code_ok;
}

int del_mirror(ChipState& chip, ChipWords& words) {
    if (words.word[0] >= chip.mirrors.size())
        return code_bad_value;
    chip.mirrors[words.word[0]].reset();
    return code_ok;
}

constexpr ChipHandler handlers[] = {
    handler<set_mirror>(3077),
    handler<del_mirror>(3078),
};

} // namespace

std::span<const ChipHandler> mirror_handlers() { return handlers; }

} // namespace sim
