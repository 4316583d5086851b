// The trace: kept in memory, written to a file, or both.
#include "sim/instruments/trace.h"

#include <cstdio>

#include "sim/instruments/number_list.h"

namespace sim {

void Trace::keep() {
    std::lock_guard lock(mutex_);
    wanted_ = kept_ = true;
}

void Trace::write_to(const std::filesystem::path& file) {
    std::lock_guard lock(mutex_);
    file_.open(file, std::ios::app);
    wanted_ = true;
}

void Trace::add(const std::string& line) {
    std::lock_guard lock(mutex_);
    if (file_.is_open())
        file_ << line << std::endl;
    if (kept_)
        lines_.push_back(line);
}

std::vector<std::string> Trace::lines() const {
    std::lock_guard lock(mutex_);
    return lines_;
}

std::vector<std::string> Trace::calls() const {
    std::vector<std::string> names = lines();
    for (std::string& line : names)
        line.erase(std::min(line.find('('), line.size()));
    return names;
}

std::size_t Trace::size() const {
    std::lock_guard lock(mutex_);
    return lines_.size();
}

void Trace::clear() {
    std::lock_guard lock(mutex_);
    lines_.clear();
}

std::string show(const char* text) { return text ? "\"" + std::string(text) + "\"" : "null"; }
std::string show(const std::string& text) { return text; }
std::string show(const PortBitmap& ports) { return "{" + write_numbers(ports.words, 0) + "}"; }
std::string show(const VlanMask& vlans) { return "{" + write_numbers(vlans.words, 0) + "}"; }

std::string show_mac(const std::uint8_t* mac) {
    char text[18];
    std::snprintf(
        text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3], mac[4],
        mac[5]);
    return text;
}

} // namespace sim
