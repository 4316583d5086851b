// What the agent prints to standard output. GoogleTest's own capture opens a file by name, which
// would be one of the board's.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <string>

class CapturedStdout {
  public:
    CapturedStdout() : file_(std::tmpfile()) {
        std::fflush(stdout);
        saved_ = dup(STDOUT_FILENO);
        dup2(fileno(file_), STDOUT_FILENO);
    }
    ~CapturedStdout() {
        std::fflush(stdout);
        dup2(saved_, STDOUT_FILENO);
        close(saved_);
        std::fclose(file_);
    }
    CapturedStdout(const CapturedStdout&) = delete;
    CapturedStdout& operator=(const CapturedStdout&) = delete;

    std::string text() const {
        std::fflush(stdout);
        std::string read;
        std::rewind(file_);
        for (int letter; (letter = std::fgetc(file_)) != EOF;)
            read += static_cast<char>(letter);
        return read;
    }

  private:
    std::FILE* file_;
    int saved_;
};
