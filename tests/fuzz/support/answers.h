// Answers to the agent's transfers, from within the process: libcurl gets one end of a pair of
// sockets for its connection, and the answer waits at it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class Answers {
  public:
    // Bytes for the first transfer, and for all others. Without bytes the connection is refused.
    Answers(std::string first, std::string others);
    ~Answers();
    Answers(const Answers&) = delete;
    Answers& operator=(const Answers&) = delete;

  private:
    int connect();

    std::string first_, others_;
    std::size_t made_ = 0;
    std::vector<int> peers_;
};

// A text that begins as an answer does, or an answer with status 200 and that body.
std::string as_answer(const std::string& text);
