// VLANs of the chip and the ports in them. What is configured is what is: nothing delays it.
#include "sim/chip/vlans.h"

#include <algorithm>
#include <iterator>

#include "sim/chip/handlers.h"

namespace sim {
namespace {

bool is_vlan(std::uint32_t vid) { return vid >= 1 && vid <= chip_vlans; }

// --- VLANs.

// Null when there is no such VLAN.
ChipVlan* vlan_at(ChipState& chip, std::uint32_t vid) {
    auto vlan = chip.vlans.all.find(vid);
    return vlan == chip.vlans.all.end() ? nullptr : &vlan->second.entry;
}

ChipVlan& come(ChipState& chip, std::uint32_t vid) {
    constexpr std::uint32_t configured = 1;
    ChipVlans::Vlan& vlan = chip.vlans.all[vid];
    vlan.entry.vid = vid;
    vlan.entry.kind = configured;
    vlan.came_s = chip.running_s;
    return vlan.entry;
}

int create(ChipState& chip, ChipWords& words) {
    if (!is_vlan(words.word[0]))
        return code_bad_value;
    if (vlan_at(chip, words.word[0]))
        return code_exists;
    come(chip, words.word[0]);
    return code_ok;
}

int destroy(ChipState& chip, ChipWords& words) {
    const std::uint32_t vid = words.word[0];
    if (!vlan_at(chip, vid))
        return code_no_vlan;
    if (vid == chip.vlans.by_default)
        return code_busy;
    chip.vlans.all.erase(vid);
    for (auto& [port, masks] : chip.vlans.of_ports)
        for (VlanMask& mask : masks)
            mask.words[vid / 32] &= ~(1u << (vid % 32));
    ++chip.vlans.deleted;
    return code_ok;
}

// The contents of a VLAN that is not there yet bring it along.
int set(ChipState& chip, OrderedEntry<ChipVlan>& record) {
    const std::uint32_t vid = record.words.word[0];
    if (!is_vlan(vid))
        return code_bad_value;
    (vlan_at(chip, vid) ? *vlan_at(chip, vid) : come(chip, vid)) = record.entry;
    return code_ok;
}

int set_name(ChipState& chip, OrderedEntry<ChipText<CHIP_VLAN_NAME_SIZE>>& record) {
    ChipVlan* vlan = vlan_at(chip, record.words.word[0]);
    if (!vlan)
        return code_no_vlan;
    std::copy_n(record.entry.text, sizeof vlan->name, vlan->name);
    return code_ok;
}

int get(ChipState& chip, OrderedEntry<ChipVlan>& record) {
    const ChipVlan* vlan = vlan_at(chip, record.words.word[0]);
    return vlan ? hand_out(vlan, record.entry) : int{code_no_vlan};
}

int get_at_place(ChipState& chip, OrderedEntry<ChipVlan>& record) {
    if (record.words.word[0] >= chip.vlans.all.size())
        return code_not_found;
    record.entry = std::next(chip.vlans.all.begin(), record.words.word[0])->second.entry;
    return code_ok;
}

int exists(ChipState& chip, ChipWords& words) {
    words.word[1] = vlan_at(chip, words.word[0]) != nullptr;
    return code_ok;
}

int count(ChipState& chip, ChipWords& words) {
    words.word[0] = static_cast<std::uint32_t>(chip.vlans.all.size());
    return code_ok;
}

int get_room(ChipState&, ChipWords& words) {
    words.word[0] = chip_vlans;
    return code_ok;
}

int count_deleted(ChipState& chip, ChipWords& words) {
    words.word[0] = chip.vlans.deleted;
    return code_ok;
}

int get_creation_time(ChipState& chip, ChipWords& words) {
    auto vlan = chip.vlans.all.find(words.word[0]);
    if (vlan == chip.vlans.all.end())
        return code_no_vlan;
    words.word[1] = static_cast<std::uint32_t>(vlan->second.came_s * 100);
    return code_ok;
}

int set_default(ChipState& chip, ChipWords& words) {
    if (!is_vlan(words.word[0]))
        return code_bad_value;
    if (!vlan_at(chip, words.word[0]))
        return code_no_vlan;
    chip.vlans.by_default = words.word[0];
    return code_ok;
}

int get_default(ChipState& chip, ChipWords& words) {
    words.word[0] = chip.vlans.by_default;
    return code_ok;
}

// --- Ports in VLANs.

template <auto change> int change_mask(ChipState& chip, OrderedEntry<VlanMask>& record) {
    const auto [port, kind, unused1, unused2] = record.words.word;
    if (kind >= chip_memberships)
        return code_bad_value;
    std::uint32_t(&words)[VLAN_MASK_WORDS] = chip.vlans.of_ports[port][kind].words;
    for (std::size_t word = 0; word < std::size(words); ++word)
        words[word] = change(words[word], record.entry.words[word]);
    return code_ok;
}

constexpr auto with = [](std::uint32_t set, std::uint32_t added) { return set | added; };
constexpr auto without = [](std::uint32_t set, std::uint32_t removed) { return set & ~removed; };

int get_mask(ChipState& chip, OrderedEntry<VlanMask>& record) {
    const auto [port, kind, unused1, unused2] = record.words.word;
    if (kind >= chip_memberships)
        return code_bad_value;
    record.entry = chip.vlans.of_ports[port][kind];
    return code_ok;
}

// By what was configured for the port, or by what the VLAN holds.
std::uint32_t membership(ChipState& chip, std::uint32_t port, std::uint32_t vid) {
    auto masks = chip.vlans.of_ports.find(port);
    for (std::uint32_t kind : {forbidden, untagged, tagged})
        if (masks != chip.vlans.of_ports.end() && holds(masks->second[kind].words, vid))
            return kind;
    const ChipVlan* vlan = vlan_at(chip, vid);
    if (!vlan || !holds(vlan->members.words, port))
        return excluded;
    return holds(vlan->untagged.words, port) ? untagged : tagged;
}

int get_membership(ChipState& chip, ChipWords& words) {
    words.word[2] = membership(chip, words.word[0], words.word[1]);
    return code_ok;
}

int is_member(ChipState& chip, ChipWords& words) {
    words.word[2] = membership(chip, words.word[0], words.word[1]) >= untagged;
    return code_ok;
}

constexpr ChipHandler handlers[] = {
    handler<set_default>(4481),
    handler<create>(4482),
    handler<destroy>(4483),
    handler<set>(4484),
    handler<set_name>(4485),
    handler<change_mask<with>>(4491),
    handler<change_mask<without>>(4492),
    handler<get_default>(4545),
    handler<exists>(4546),
    handler<get>(4547),
    handler<count>(4549),
    handler<exists>(4550),
    handler<get>(4551),
    handler<get_at_place>(4552),
    handler<get_mask>(4558),
    handler<is_member>(4559),
    handler<get_membership>(4560),
    handler<is_member>(4563),
    handler<get_membership>(4564),
    handler<count_deleted>(4567),
    handler<get_creation_time>(4568),
    handler<get_room>(4574),
};

} // namespace

std::span<const ChipHandler> vlan_handlers() { return handlers; }

// --- Dynamic registration.

namespace {

int register_vlan(ChipState& chip, MeantEntry<GvrpVlan>& record) {
    return is_vlan(record.entry.vlan) ? chip.vlans.registered.put(record.entry)
                                      : int{code_bad_value};
}

int forget_registered(ChipState& chip, RequestWords& words) {
    return chip.vlans.registered.remove(GvrpVlan{words.vlan, 0, {}, {}});
}

// In a place that is there, or as the next one.
int set_registered(ChipState& chip, MeantEntry<GvrpVlan>& record) {
    if (GvrpVlan* place = chip.vlans.registered.at(record.words.index))
        *place = record.entry;
    else
        return chip.vlans.registered.put(record.entry);
    return code_ok;
}

int get_registered(ChipState& chip, MeantEntry<GvrpVlan>& record) {
    return hand_out(chip.vlans.registered.at(record.words.index), record.entry);
}

int count_registered(ChipState& chip, RequestWords& words) {
    words.value = static_cast<std::uint32_t>(chip.vlans.registered.size());
    return code_ok;
}

int get_registered_mask(ChipState& chip, MeantEntry<VlanMask>& record) {
    record.entry = {};
    for (const GvrpVlan& entry : chip.vlans.registered.entries())
        add_to(record.entry.words, entry.vlan);
    return code_ok;
}

constexpr ChipHandler registration[] = {
    handler<register_vlan>(1541),       handler<forget_registered>(1544),
    handler<set_registered>(1545),      handler<get_registered>(1602),
    handler<get_registered_mask>(1605), handler<count_registered>(1607),
};

} // namespace

std::span<const ChipHandler> registration_handlers() { return registration; }

} // namespace sim
