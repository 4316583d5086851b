// Files with secrets in them: only the user who runs the lab can read them.
#pragma once

#include <filesystem>

namespace lab {

// Makes the file if it is not there, and takes everybody else's rights if it is. Throws when that
// cannot be done.
void make_private_file(const std::filesystem::path& path);

} // namespace lab
