// Images are written as drafts under names that are never served, and read whole.
#include "lab/firmware.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace lab {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view sound = "/firmware/";
constexpr std::string_view damaged = "/firmware/corrupt/";

} // namespace

ImageFolder::ImageFolder(fs::path folder) : folder_(std::move(folder)) {
    fs::create_directories(folder_);
}

bool ImageFolder::good_name(std::string_view name) {
    return !name.empty() && name.size() <= 100 && name.front() != '.' &&
           name.find_first_not_of(
               "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-") ==
               std::string_view::npos;
}

// Renamed when complete, so that no half-written image is served.
void ImageFolder::put(const std::string& name, const std::string& image) {
    const fs::path draft = folder_ / ("." + name);
    std::ofstream file(draft, std::ios::binary);
    file.write(image.data(), static_cast<std::streamsize>(image.size()));
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + draft.string());
    fs::rename(draft, folder_ / name);
}

std::optional<std::string> ImageFolder::get(const std::string& name) const {
    if (!good_name(name))
        return std::nullopt;
    std::ifstream file(folder_ / name, std::ios::binary);
    if (!file)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

bool ImageFolder::drop(const std::string& name) {
    return good_name(name) && fs::remove(folder_ / name);
}

std::vector<std::pair<std::string, std::uintmax_t>> ImageFolder::list() const {
    std::vector<std::pair<std::string, std::uintmax_t>> images;
    for (const auto& entry : fs::directory_iterator(folder_))
        if (entry.is_regular_file() && good_name(entry.path().filename().string()))
            images.emplace_back(entry.path().filename().string(), entry.file_size());
    std::ranges::sort(images);
    return images;
}

Reply FirmwareService::answer(const Call& call) {
    const bool corrupt = call.path.starts_with(damaged);
    const std::string name = call.path.substr(corrupt ? damaged.size() : sound.size());
    auto image = call.method == "GET" ? images_.get(name) : std::nullopt;
    if (!image) {
        events_.note("firmware", "", "firmware image " + name + " asked, there is none");
        return {404, "there is no image " + name + "\n", "text/plain"};
    }
    if (corrupt && !image->empty()) {
        char& byte = (*image)[image->size() / 2];
        byte = static_cast<char>(byte ^ 1);
    }
    events_.note(
        "firmware", "",
        "firmware image " + name + (corrupt ? " served damaged, " : " served, ") +
            std::to_string(image->size()) + " bytes");
    return {200, std::move(*image), "application/octet-stream"};
}

} // namespace lab
