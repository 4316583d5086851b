// The trace; see trace.h.
#include "sim/trace.h"

#include <cstdio>
#include <span>

namespace sim {

void Trace::add(const std::string& line) {
    std::lock_guard lock(mutex_);
    if (file_.is_open())
        file_ << line << std::endl;
    else
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

void Trace::clear() {
    std::lock_guard lock(mutex_);
    lines_.clear();
}

void Trace::copy_to(const std::filesystem::path& file) {
    std::lock_guard lock(mutex_);
    file_.open(file, std::ios::app);
}

namespace {

std::string show_set(std::span<const std::uint32_t> words) {
    auto has = [&](std::size_t bit) {
        return bit < words.size() * 32 && (words[bit / 32] >> (bit % 32) & 1) != 0;
    };
    std::string text = "{";
    for (std::size_t first = 0; first < words.size() * 32; ++first) {
        if (!has(first))
            continue;
        std::size_t last = first;
        while (has(last + 1))
            ++last;
        text += (text.size() > 1 ? "," : "") + std::to_string(first);
        if (last > first)
            text += "-" + std::to_string(last);
        first = last;
    }
    return text + "}";
}

} // namespace

std::string show(const char* text) { return text ? "\"" + std::string(text) + "\"" : "null"; }
std::string show(const std::string& text) { return text; }
std::string show(const PortBitmap& ports) { return show_set(ports.words); }
std::string show(const VlanMask& vlans) { return show_set(vlans.words); }

std::string show_mac(const std::uint8_t* mac) {
    char text[18];
    std::snprintf(
        text, sizeof text, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3], mac[4],
        mac[5]);
    return text;
}

} // namespace sim
