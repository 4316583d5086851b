// A pattern is compiled once; the C library matches it from any thread.
#include "lab/schema_pattern.h"

#include <regex.h>

#include <cctype>
#include <memory>
#include <stdexcept>

namespace lab {

namespace {

// "\d", "\b" and their like, "(?:": of a schema, but not of POSIX.
bool is_foreign(const std::string& pattern) {
    for (std::size_t at = 0; at + 1 < pattern.size(); at++) {
        const char next = pattern[at + 1];
        if (pattern[at] == '\\' && std::isalnum(static_cast<unsigned char>(next)))
            return true;
        if (pattern[at] == '(' && next == '?')
            return true;
    }
    return false;
}

class Expression {
  public:
    explicit Expression(const std::string& pattern) {
        if (is_foreign(pattern) ||
            regcomp(&compiled_, pattern.c_str(), REG_EXTENDED | REG_NOSUB) != 0)
            throw std::invalid_argument("the pattern " + pattern + " is not read here");
    }
    ~Expression() { regfree(&compiled_); }
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;

    // No text of a switch has a NUL in it.
    bool fits(const std::string& text) const {
        return text.find('\0') == std::string::npos &&
               regexec(&compiled_, text.c_str(), 0, nullptr, 0) == 0;
    }

  private:
    regex_t compiled_;
};

} // namespace

Rule make_pattern_rule(const std::string& pattern) {
    return [expression = std::make_shared<const Expression>(pattern)](
               const valijson::adapters::Adapter& value, const std::vector<std::string>& place,
               valijson::ValidationResults* results) {
        const bool right = !value.isString() || expression->fits(value.asString());
        if (!right && results)
            results->pushError(place, "String does not fit the pattern");
        return right;
    };
}

} // namespace lab
