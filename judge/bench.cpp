// Counting calls, noting the one that runs, and taking down findings.
#include "judge/bench.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace judge {

Bench* bench = nullptr;
std::atomic<bool> Bench::stop_{false};

namespace {

constexpr int in_handler = Shared::threads - 1;
thread_local int place = 0;
thread_local std::string last_call;

} // namespace

std::string field(const std::string& text) {
    std::string safe = text;
    for (char& c : safe)
        if (c == '\t' || c == '\n')
            c = ' ';
    return "\t" + safe;
}

std::string& Bench::last() { return last_call; }

void Bench::stand_at(int at) { place = at; }

void Bench::enter(const std::string& text) {
    last_call = text;
    std::size_t length = std::min(text.size(), sizeof shared_->call[0] - 1);
    std::memcpy(shared_->call[place], text.data(), length);
    shared_->call[place][length] = '\0';
    shared_->busy[place] = true;
    ++shared_->calls;
    if (place != in_handler)
        count_name(text);
}

void Bench::leave() { shared_->busy[place] = false; }

void Bench::count_name(const std::string& text) {
    std::lock_guard<std::mutex> guard(names_lock_);
    ++names_[text.substr(0, text.find('('))];
}

bool Bench::holds(bool good, const char* why, const std::string& says, const std::string& came) {
    count_case();
    if (!good)
        convict(why, says, came);
    return good;
}

bool Bench::works(int code, const std::string& says) {
    return holds(code == 0, reason::refused, says, "code " + std::to_string(code));
}

bool Bench::refuses(int code, const std::string& says) {
    return holds(code != 0, reason::accepted, says, "code 0");
}

void Bench::convict(const char* why, const std::string& says, const std::string& came) {
    convict(why, last_call, says, came);
}

void Bench::convict(
    const char* why, const std::string& call, const std::string& says, const std::string& came) {
    send("F" + field(why) + field(call) + field(says) + field(came));
}

void Bench::remark(const std::string& text) { send("R" + field(text)); }

void Bench::begin(int step, const std::string& family, const std::string& probe) {
    shared_->step = step;
    send("S" + field(std::to_string(step)) + field(family) + field(probe));
}

void Bench::end() {
    std::uint64_t calls = shared_->calls;
    std::uint64_t cases = cases_;
    for (const auto& [name, count] : names_)
        send("N" + field(name) + field(std::to_string(count)));
    names_.clear();
    send(
        "E" + field(std::to_string(calls - calls_sent_)) +
        field(std::to_string(cases - cases_sent_)));
    calls_sent_ = calls;
    cases_sent_ = cases;
}

// A line of less than PIPE_BUF bytes goes through the pipe in one piece.
void Bench::send(const std::string& event) {
    std::string line = event.substr(0, 4000) + "\n";
    std::size_t sent = 0;
    while (sent < line.size()) {
        ssize_t count = write(events_, line.data() + sent, line.size() - sent);
        if (count <= 0)
            _exit(3);
        sent += static_cast<std::size_t>(count);
    }
}

} // namespace judge
