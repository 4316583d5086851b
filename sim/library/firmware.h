// The flash with its two firmware partitions, files "/flash/image0" and "/flash/image1" of the
// board, and the selection of the one to start from, "/flash/boot". They outlive every restart.
#pragma once

#include <filesystem>
#include <string>

#include "sim/instruments/fields.h"

namespace sim {

struct Firmware {
    // What leaves the factory beside the running version; without a text, no second image.
    std::string second_version = "0.9.0";
    bool locked = false; // an upgrade is on its way

    void hardware(Fields& f);
};

class Flash {
  public:
    static constexpr int partitions = 2;

    explicit Flash(const std::filesystem::path& root) : folder_(root / "flash") {}

    static bool has(int partition) { return partition >= 0 && partition < partitions; }

    // What writes is false when the disk does not take it, and the flash is as it was.

    // Writes the images of a new switch, unless the flash holds something already.
    [[nodiscard]] bool
    leave_factory(const std::string& version, const std::string& second_version) const;
    // The version of the image that starts: the selected one, or the other when that is damaged.
    // Empty when neither can be started.
    std::string booted_version() const;

    std::string read(int partition) const; // nothing for an empty partition
    bool write(int partition, const std::string& image) const;
    int selected() const;
    bool select(int partition) const;

  private:
    std::filesystem::path file(int partition) const {
        return folder_ / ("image" + std::to_string(partition));
    }

    std::filesystem::path folder_;
};

} // namespace sim
