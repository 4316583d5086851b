// A line a change, written before the change is made and taken off once it is put back.
#include "judge/journal.h"

#include <sys/stat.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace judge {

Journal* journal = nullptr;

namespace {

// A word without blanks: what is no letter, digit or one of a few signs is %XX.
std::string coded(const std::string& word) {
    std::string text = "=";
    for (char c : word) {
        char byte[4];
        bool plain = std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '-';
        std::snprintf(byte, sizeof byte, plain ? "%c" : "%%%02X", c & 0xFF);
        text += byte;
    }
    return text;
}

std::string decoded(const std::string& text) {
    std::string word;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            word += static_cast<char>(std::strtol(text.substr(i + 1, 2).c_str(), nullptr, 16));
            i += 2;
        } else {
            word += text[i];
        }
    }
    return word;
}

} // namespace

Journal::Journal(std::string file) : file_(std::move(file)) {
    std::ifstream in(file_);
    for (std::string line; std::getline(in, line);) {
        std::istringstream text(line);
        Words words;
        for (std::string word; text >> word;)
            words.push_back(decoded(word));
        if (!words.empty())
            lines_[next_++] = words;
    }
}

std::size_t Journal::note(const Words& call) {
    lines_[next_] = call;
    write();
    return next_++;
}

void Journal::strike(std::size_t line) {
    lines_.erase(line);
    write();
}

std::vector<std::pair<std::size_t, Words>> Journal::pending() const {
    return {lines_.rbegin(), lines_.rend()};
}

// The new one takes the place of the old one at once.
void Journal::write() const {
    if (lines_.empty()) {
        std::remove(file_.c_str());
        return;
    }
    std::string fresh = file_ + ".new";
    {
        std::ofstream out(fresh, std::ios::trunc);
        chmod(fresh.c_str(), 0600);
        for (const auto& [number, words] : lines_) {
            for (const std::string& word : words)
                out << coded(word) << ' ';
            out << '\n';
        }
    }
    std::rename(fresh.c_str(), file_.c_str());
}

} // namespace judge
