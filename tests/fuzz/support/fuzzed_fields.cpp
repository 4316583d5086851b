// Each member is asked for in turn; most are left as they are.
#include "tests/fuzz/support/fuzzed_fields.h"

#include <algorithm>

namespace {

constexpr std::size_t most_elements = 3; // of a list

struct Refused {};

class FuzzedFields : public sim::Fields {
  public:
    explicit FuzzedFields(FuzzedDataProvider& bytes) : bytes_(bytes) {}

    using sim::Fields::integer;
    using sim::Fields::list;
    using sim::Fields::object;

    void boolean(const char*, bool& value) override {
        if (wanted())
            value = bytes_.ConsumeBool();
    }
    void integer(const char*, std::int64_t& value, std::int64_t low, std::int64_t high) override {
        if (wanted())
            value = bytes_.ConsumeIntegralInRange(low, high);
    }
    void text(const char*, std::string& value, std::size_t longest) override {
        if (wanted())
            value = bytes_.ConsumeRandomLengthString(std::min<std::size_t>(longest, 300));
    }
    void object(const char*, const std::function<void(sim::Fields&)>& members) override {
        if (wanted())
            members(*this);
    }
    void list(
        const char*, const std::function<std::size_t(int)>& resize,
        const std::function<void(sim::Fields&, std::size_t)>& element) override {
        if (!wanted())
            return;
        const auto count = bytes_.ConsumeIntegralInRange<std::size_t>(0, most_elements);
        const std::size_t there = resize(static_cast<int>(count));
        for (std::size_t i = 0; i < std::min(count, there); ++i)
            element(*this, i);
    }
    void refuse(const std::string&) override { throw Refused(); }
    bool reading() const override { return true; }

  private:
    bool wanted() { return bytes_.remaining_bytes() > 0 && bytes_.ConsumeBool(); }

    FuzzedDataProvider& bytes_;
};

} // namespace

void fill_record(FuzzedDataProvider& bytes, const std::function<void(sim::Fields&)>& record) {
    FuzzedFields fields(bytes);
    try {
        record(fields);
    } catch (const Refused&) {
        // What came before it stays, as in a file that is refused.
    }
}
