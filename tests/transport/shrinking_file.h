// A file that loses its last bytes between being measured and being read.
#pragma once

#include <string>

class ShrinkingFile {
  public:
    ShrinkingFile(const std::string& path, long lost_bytes);
    ~ShrinkingFile();
    ShrinkingFile(const ShrinkingFile&) = delete;
    ShrinkingFile& operator=(const ShrinkingFile&) = delete;
};
