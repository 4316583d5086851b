// A day on which nothing happens, and which is over at once: waits of the agent for a file or
// socket that are a second long or longer return as if that time had passed.
#pragma once

class IdleDay {
  public:
    IdleDay();
    ~IdleDay();
    IdleDay(const IdleDay&) = delete;
    IdleDay& operator=(const IdleDay&) = delete;

    // Returns once the agent has waited for a day; false when it has not in ten seconds.
    bool wait_for_end() const;
    // The agent's waits until then, and so how often it was woken.
    int waits() const;
};
