// Firmware images: a folder of files, served over plain HTTP, sound or damaged.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lab/events.h"
#include "lab/http.h"

namespace lab {

class ImageFolder {
  public:
    explicit ImageFolder(std::filesystem::path folder);

    static bool good_name(std::string_view name); // letters, digits, "._-"; no leading "."
    void put(const std::string& name, const std::string& image);
    std::optional<std::string> get(const std::string& name) const;
    bool drop(const std::string& name);
    std::vector<std::pair<std::string, std::uintmax_t>> list() const; // name and bytes, by name

  private:
    std::filesystem::path folder_;
};

class FirmwareService {
  public:
    FirmwareService(EventLog& events, const ImageFolder& images)
        : events_(events), images_(images) {}

    static bool serves(const Call& call) { return call.path.starts_with("/firmware/"); }
    // GET /firmware/NAME, and /firmware/corrupt/NAME for a copy with one byte altered.
    Reply answer(const Call& call);

  private:
    EventLog& events_;
    const ImageFolder& images_;
};

} // namespace lab
