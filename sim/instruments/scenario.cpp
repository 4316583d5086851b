// Reading and writing scenario files. The parser counts lines as it goes, so that an error in a
// value names its place as an error in the syntax does.
#include "sim/instruments/scenario.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

namespace sim {

using nlohmann::ordered_json;

namespace {

// A place in a text. A newline counts once the character behind it is read, for a parser must read
// one character too many to see where a number ends.
struct Place {
    int line = 1;
    bool at_end = false;
};

// Text that knows which line its reader has come to.
class CountedText {
  public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountedText(const char* at, Place* place) : at_(at), place_(place) {}
    const char& operator*() const { return *at_; }
    CountedText& operator++() {
        if (place_) {
            place_->line += place_->at_end;
            place_->at_end = *at_ == '\n';
        }
        ++at_;
        return *this;
    }
    bool operator==(const CountedText& other) const { return at_ == other.at_; }
    bool operator!=(const CountedText& other) const { return at_ != other.at_; }

  private:
    const char* at_;
    Place* place_;
};

struct Document {
    std::string name;
    ordered_json root;
    std::map<std::string, int> lines; // by JSON pointer

    [[noreturn]] void refuse(const std::string& pointer, const std::string& reason) const {
        auto line = lines.find(pointer);
        throw ScenarioError(
            name + ":" + std::to_string(line == lines.end() ? 1 : line->second) + ": " + reason);
    }
};

// Notes the line at which each value of a document begins.
class LineNoter : public nlohmann::json_sax<ordered_json> {
  public:
    LineNoter(Document& document, const int& line) : document_(document), line_(line) {}

    bool null() override { return value(); }
    bool boolean(bool) override { return value(); }
    bool number_integer(number_integer_t) override { return value(); }
    bool number_unsigned(number_unsigned_t) override { return value(); }
    bool number_float(number_float_t, const string_t&) override { return value(); }
    bool string(string_t&) override { return value(); }
    bool binary(binary_t&) override { return value(); }
    bool start_object(std::size_t) override { return open(false); }
    bool key(string_t& name) override {
        levels_.back().key = name;
        return true;
    }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(true); }
    bool end_array() override { return close(); }
    bool parse_error(
        std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
        std::string reason = error.what();
        throw ScenarioError(
            document_.name + ":" + std::to_string(line_) + ": " +
            reason.substr(reason.find("] ") + 2));
    }

  private:
    struct Level {
        bool array;
        std::size_t index;
        std::string key;
    };

    std::string pointer() const {
        std::string text;
        for (const Level& level : levels_)
            text += "/" + (level.array ? std::to_string(level.index) : level.key);
        return text;
    }
    bool value() {
        document_.lines.emplace(pointer(), line_);
        next();
        return true;
    }
    bool open(bool array) {
        document_.lines.emplace(pointer(), line_);
        levels_.push_back({array, 0, {}});
        return true;
    }
    bool close() {
        levels_.pop_back();
        next();
        return true;
    }
    void next() {
        if (!levels_.empty() && levels_.back().array)
            ++levels_.back().index;
    }

    Document& document_;
    const int& line_;
    std::vector<Level> levels_;
};

class Reader : public Fields {
  public:
    Reader(const Document& document, const ordered_json& object, std::string pointer)
        : document_(document), object_(object), pointer_(std::move(pointer)) {
        if (!object.is_object())
            document.refuse(pointer_, "an object is expected here");
    }

    using Fields::integer;
    using Fields::list;
    using Fields::object;

    void boolean(const char* key, bool& value) override {
        if (const ordered_json* found = find(key)) {
            if (!found->is_boolean())
                wrong(key, "true or false");
            value = found->get<bool>();
        }
    }
    void
    integer(const char* key, std::int64_t& value, std::int64_t low, std::int64_t high) override {
        const ordered_json* found = find(key);
        if (!found)
            return;
        if (!found->is_number_integer() || found->get<std::int64_t>() < low ||
            found->get<std::int64_t>() > high)
            wrong(
                key, "a whole number from " + std::to_string(low) + " to " + std::to_string(high));
        value = found->get<std::int64_t>();
    }
    void text(const char* key, std::string& value, std::size_t longest) override {
        const ordered_json* found = find(key);
        if (!found)
            return;
        if (!found->is_string() || found->get<std::string>().size() > longest)
            wrong(key, "a text of at most " + std::to_string(longest) + " characters");
        value = found->get<std::string>();
    }
    void object(const char* key, const std::function<void(Fields&)>& members) override {
        if (const ordered_json* found = find(key)) {
            Reader inner(document_, *found, pointer_ + "/" + key);
            members(inner);
            inner.finish();
        }
    }
    void list(
        const char* key, const std::function<std::size_t(int)>& resize,
        const std::function<void(Fields&, std::size_t)>& element) override {
        const ordered_json* found = find(key);
        if (!found)
            return;
        if (!found->is_array())
            wrong(key, "a list");
        resize(static_cast<int>(found->size()));
        for (std::size_t i = 0; i < found->size(); ++i) {
            Reader inner(document_, (*found)[i], pointer_ + "/" + key + "/" + std::to_string(i));
            element(inner, i);
            inner.finish();
        }
    }
    void refuse(const std::string& reason) override {
        document_.refuse(last_.empty() ? pointer_ : last_, reason);
    }
    bool reading() const override { return true; }

    void finish() {
        for (const auto& [key, value] : object_.items())
            if (!known_.contains(key))
                document_.refuse(pointer_ + "/" + key, "\"" + key + "\" is not known here");
    }

  private:
    const ordered_json* find(const char* key) {
        known_.insert(key);
        last_ = pointer_ + "/" + key;
        auto found = object_.find(key);
        return found == object_.end() ? nullptr : &*found;
    }
    [[noreturn]] void wrong(const char* key, const std::string& expected) {
        document_.refuse(pointer_ + "/" + key, "\"" + std::string(key) + "\" must be " + expected);
    }

    const Document& document_;
    const ordered_json& object_;
    std::string pointer_;
    std::string last_;
    std::set<std::string> known_;
};

class Writer : public Fields {
  public:
    using Fields::integer;
    using Fields::list;
    using Fields::object;

    void boolean(const char* key, bool& value) override { written[key] = value; }
    void integer(const char* key, std::int64_t& value, std::int64_t, std::int64_t) override {
        written[key] = value;
    }
    void text(const char* key, std::string& value, std::size_t) override { written[key] = value; }
    void object(const char* key, const std::function<void(Fields&)>& members) override {
        Writer inner;
        members(inner);
        written[key] = std::move(inner.written);
    }
    void list(
        const char* key, const std::function<std::size_t(int)>& resize,
        const std::function<void(Fields&, std::size_t)>& element) override {
        ordered_json& elements = written[key] = ordered_json::array();
        std::size_t count = resize(-1);
        for (std::size_t i = 0; i < count; ++i) {
            Writer inner;
            element(inner, i);
            elements.push_back(std::move(inner.written));
        }
    }
    void refuse(const std::string&) override {}
    bool reading() const override { return false; }

    ordered_json written = ordered_json::object();
};

std::string slurp(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in || std::filesystem::is_directory(file))
        throw ScenarioError(file.string() + ":0: cannot be read");
    return {std::istreambuf_iterator<char>(in), {}};
}

} // namespace

void read_fields(const std::filesystem::path& file, const std::function<void(Fields&)>& record) {
    Document document{file.string(), {}, {}};
    std::string text = slurp(file);
    Place place;
    LineNoter noter(document, place.line);
    const char* begin = text.c_str();
    CountedText first(begin, &place);
    ordered_json::sax_parse(first, CountedText(begin + text.size(), nullptr), &noter);
    document.root = ordered_json::parse(text);
    Reader reader(document, document.root, "");
    record(reader);
    reader.finish();
}

std::int64_t peek_number(
    const std::filesystem::path& file, const char* section, const char* key,
    std::int64_t otherwise) {
    ordered_json root = ordered_json::parse(slurp(file), nullptr, false);
    auto at = ordered_json::json_pointer(std::string("/") + section + "/" + key);
    if (root.is_discarded() || !root.is_object() || !root.contains(at) ||
        !root[at].is_number_integer())
        return otherwise;
    return root[at].get<std::int64_t>();
}

std::string write_fields(const std::function<void(Fields&)>& record) {
    Writer writer;
    record(writer);
    return writer.written.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

bool write_atomically(const std::filesystem::path& file, const std::string& text) {
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    std::filesystem::path draft = file;
    draft += ".new";
    std::ofstream out(draft, std::ios::binary);
    out << text;
    out.close();
    if (out)
        std::filesystem::rename(draft, file, error);
    else
        error = std::make_error_code(std::errc::io_error);
    if (!error)
        return true;
    std::filesystem::remove(draft, error);
    return false;
}

} // namespace sim
