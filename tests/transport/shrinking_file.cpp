// Stands before the C library's stat, in the form that measures long files: the transport's.
#ifndef _FILE_OFFSET_BITS
#define _FILE_OFFSET_BITS 64
#endif
#include "shrinking_file.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace {

std::string shrinking;
long lost;

} // namespace

ShrinkingFile::ShrinkingFile(const std::string& path, long lost_bytes) {
    shrinking = path;
    lost = lost_bytes;
}
ShrinkingFile::~ShrinkingFile() { shrinking.clear(); }

extern "C" int stat(const char* path, struct stat* status) noexcept {
    int result = fstatat(AT_FDCWD, path, status, 0);
    if (result == 0 && shrinking == path)
        status->st_size += lost;
    return result;
}
