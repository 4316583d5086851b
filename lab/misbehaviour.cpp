// The list of misbehaviours in force and their names on the admin interface.
#include "lab/misbehaviour.h"

#include <algorithm>
#include <utility>

namespace lab {

namespace {

constexpr std::pair<std::string_view, Fault> fault_names[] = {
    {"refuse", Fault::refuse},
    {"reset", Fault::reset},
    {"silent", Fault::silent},
    {"status", Fault::status},
    {"redirect", Fault::redirect},
    {"truncate", Fault::truncate},
    {"short-length", Fault::short_length},
    {"endless", Fault::endless},
    {"endless-head", Fault::endless_head},
    {"bomb", Fault::bomb},
    {"slow", Fault::slow},
    {"corrupt", Fault::corrupt},
    {"expired", Fault::expired},
    {"unknown-ca", Fault::unknown_ca},
    {"wrong-name", Fault::wrong_name},
};

bool concerns(const Misbehaviour& misbehaviour, std::string_view listener, int port) {
    return misbehaviour.listener == listener &&
           (misbehaviour.port == 0 || misbehaviour.port == port);
}

} // namespace

std::optional<Fault> find_fault(std::string_view name) {
    for (const auto& [text, fault] : fault_names)
        if (text == name)
            return fault;
    return std::nullopt;
}

std::string_view fault_name(Fault fault) {
    for (const auto& [text, known] : fault_names)
        if (known == fault)
            return text;
    return "none";
}

bool is_certificate_fault(Fault fault) {
    return fault == Fault::expired || fault == Fault::unknown_ca || fault == Fault::wrong_name;
}

void Misbehaviours::add(const Misbehaviour& misbehaviour) {
    const std::lock_guard lock(mutex_);
    list_.push_back(misbehaviour);
}

void Misbehaviours::clear() {
    const std::lock_guard lock(mutex_);
    list_.clear();
}

std::vector<Misbehaviour> Misbehaviours::all() const {
    const std::lock_guard lock(mutex_);
    return list_;
}

Misbehaviour Misbehaviours::take(std::string_view listener, int port) {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find_if(list_, [&](const Misbehaviour& m) {
        return m.fault != Fault::refuse && concerns(m, listener, port);
    });
    if (found == list_.end())
        return {};
    const Misbehaviour taken = *found;
    if (found->left > 0 && --found->left == 0)
        list_.erase(found);
    return taken;
}

bool Misbehaviours::refuses(std::string_view listener, int port) const {
    const std::lock_guard lock(mutex_);
    return std::ranges::any_of(list_, [&](const Misbehaviour& m) {
        return m.fault == Fault::refuse && concerns(m, listener, port);
    });
}

} // namespace lab
