// Counting calls against the fault plan, and reading a fault from a command line.
#include "sim/instruments/faults.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace sim {

void Faults::plan(Fault fault) {
    std::lock_guard lock(mutex_);
    faults_.push_back(std::move(fault));
}

void Faults::clear() {
    std::lock_guard lock(mutex_);
    faults_.clear();
    counts_ = {};
}

std::optional<int> Faults::hit(Edge edge, std::string_view name) {
    if (heard)
        heard(edge, name);
    std::lock_guard lock(mutex_);
    ++counts_[static_cast<std::size_t>(edge)];
    std::optional<int> code;
    for (Fault& fault : faults_) {
        if (fault.edge != edge || (!fault.name.empty() && fault.name != name))
            continue;
        ++fault.seen;
        if (fault.seen != fault.nth && !(fault.for_good && fault.seen > fault.nth))
            continue;
        if (fault.power_off)
            kill(getpid(), SIGKILL);
        code = fault.code;
    }
    return code;
}

std::uint64_t Faults::count(Edge edge) const {
    std::lock_guard lock(mutex_);
    return counts_[static_cast<std::size_t>(edge)];
}

bool Faults::planned() const {
    std::lock_guard lock(mutex_);
    return !faults_.empty();
}

bool Faults::planned(Edge edge) const {
    std::lock_guard lock(mutex_);
    return std::any_of(
        faults_.begin(), faults_.end(), [edge](const Fault& fault) { return fault.edge == edge; });
}

namespace {

template <class Number> Number number(std::string_view text, const char* what) {
    Number value{};
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size())
        throw std::invalid_argument(
            "fault: " + std::string(what) + " is not a number: \"" + std::string(text) + "\"");
    return value;
}

Edge edge_named(std::string_view name) {
    constexpr std::array<std::string_view, edge_count> names = {
        "platform", "ioctl", "allocation", "file", "transfer"};
    for (std::size_t i = 0; i < names.size(); ++i)
        if (names[i] == name)
            return static_cast<Edge>(i);
    throw std::invalid_argument("fault: no edge \"" + std::string(name) + "\"");
}

// Cuts the part of `text` from the last `mark` on, and returns what stood behind the mark.
std::string_view cut_behind(std::string_view& text, char mark) {
    std::size_t at = text.rfind(mark);
    if (at == std::string_view::npos)
        return {};
    std::string_view behind = text.substr(at + 1);
    text = text.substr(0, at);
    return behind;
}

} // namespace

Fault parse_fault(std::string_view text) {
    Fault fault;
    if (std::string_view code = cut_behind(text, '='); code == "off")
        fault.power_off = true;
    else if (!code.empty())
        fault.code = number<int>(code, "code");
    if (std::string_view nth = cut_behind(text, '#'); !nth.empty()) {
        fault.for_good = nth.back() == '+';
        fault.nth = number<std::uint64_t>(nth.substr(0, nth.size() - fault.for_good), "ordinal");
    }
    std::size_t colon = text.find(':');
    fault.edge = edge_named(text.substr(0, colon));
    if (colon != std::string_view::npos)
        fault.name = text.substr(colon + 1);
    return fault;
}

} // namespace sim
