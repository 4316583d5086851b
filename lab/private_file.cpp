// A file is private from its first moment: made with its mode, never changed to it afterwards.
#include "lab/private_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace lab {

void make_private_file(const std::filesystem::path& path) {
    constexpr mode_t owner_only = S_IRUSR | S_IWUSR;
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, owner_only);
    const bool done = file >= 0 && fchmod(file, owner_only) == 0;
    const int error = errno;
    if (file >= 0)
        close(file);
    if (!done)
        throw std::runtime_error(
            "cannot make " + path.string() +
            " readable by its owner only: " + std::strerror(error));
}

} // namespace lab
