// Ranges of layer-4 ports, which entries of access lists refer to by their place.
#include <algorithm>

#include "driver/acl.h"
#include "sim/chip/handlers.h"

namespace sim {

ChipL4Range* l4_range_at(ChipState& chip, std::size_t place) {
    bool used = place < chip.l4_ranges.size() && chip.l4_ranges[place].kind != 0;
    return used ? &chip.l4_ranges[place] : nullptr;
}

namespace {

using L4Ranges = std::array<ChipL4Range, chip_l4_ranges>;

// Entries with the same range share it: the same range, a free place, or the place of a range that
// is not used: not of the one set last, for which an entry may be on its way.
L4Ranges::iterator place_for(ChipState& chip, const AclPortRange& wanted) {
    L4Ranges& ranges = chip.l4_ranges;
    auto same = std::ranges::find_if(ranges, [&](const ChipL4Range& r) {
        return r.kind == wanted.kind && r.first == wanted.first && r.last == wanted.last;
    });
    if (same != ranges.end())
        return same;
    auto free = std::ranges::find(ranges, 0u, &ChipL4Range::kind);
    if (free != ranges.end())
        return free;
    auto last = ranges.begin() + static_cast<std::ptrdiff_t>(chip.last_l4_range);
    for (auto range = ranges.begin(); range != ranges.end(); ++range)
        if (range->users == 0 && range != last)
            return range;
    return ranges.end();
}

int set_l4_range(ChipState& chip, AclRecord& record) {
    const AclPortRange& wanted = record.range;
    bool known_kind = wanted.kind == 1 || wanted.kind == 2;
    if (!known_kind || wanted.first > wanted.last || wanted.last > 65535)
        return code_bad_value;
    auto place = place_for(chip, wanted);
    if (place == chip.l4_ranges.end())
        return code_table_full;
    *place = {wanted.kind, wanted.first, wanted.last, place->users};
    chip.last_l4_range = static_cast<std::size_t>(place - chip.l4_ranges.begin());
    record.range_index = static_cast<std::uint8_t>(chip.last_l4_range);
    return code_ok;
}

int get_l4_range(ChipState& chip, AclRecord& record) {
    ChipL4Range* range = l4_range_at(chip, record.range_index);
    if (!range)
        return code_not_found;
    record.range = {range->kind, range->first, range->last, range->users};
    return code_ok;
}

int del_l4_range(ChipState& chip, AclRecord& record) {
    ChipL4Range* range = l4_range_at(chip, record.range_index);
    if (!range)
        return code_not_found;
    if (range->users > 0)
        return code_busy;
    *range = {};
    return code_ok;
}

constexpr ChipHandler handlers[] = {
    handler<del_l4_range>(264),
    handler<get_l4_range>(327),
    handler<set_l4_range>(328),
};

} // namespace

std::span<const ChipHandler> l4_range_handlers() { return handlers; }

} // namespace sim
