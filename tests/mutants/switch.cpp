// Linked into the test programs of the mutants' build. VX_MUTANT=<path>:<number> switches one
// mutant on; VX_REACHED=<file> keeps a line of JSON for each test, with the mutants that it
// reaches.
#include "switch.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <map>
#include <string>

namespace {

struct Reached {
    int count;
    unsigned char* marks;
};

std::map<std::string, Reached>& sources() {
    static std::map<std::string, Reached> all;
    return all;
}

// Shared with processes that a test starts of itself.
unsigned char* make_marks(std::size_t count) {
    void* memory = mmap(nullptr, count, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        std::abort();
    return static_cast<unsigned char*>(memory);
}

void write_reached(std::ostream& out) {
    const char* next_source = "";
    for (auto& [path, reached] : sources()) {
        const char* next = "";
        for (int mutant = 1; mutant <= reached.count; ++mutant) {
            if (!reached.marks[mutant])
                continue;
            if (!*next)
                out << next_source << '"' << path << "\":[";
            out << next << mutant;
            next = next_source = ",";
        }
        if (*next)
            out << ']';
        std::memset(reached.marks, 0, reached.count + 1);
    }
}

// What is reached before the first test is that of no test's name.
class Keeper : public testing::EmptyTestEventListener {
  public:
    explicit Keeper(const char* path) : out_(path) {}

    void OnTestProgramStart(const testing::UnitTest&) override { write("", 0, true); }

    void OnTestStart(const testing::TestInfo&) override { started_ = std::clock(); }

    // The processor's time, for that of the clock on the wall tells how busy the machine is.
    void OnTestEnd(const testing::TestInfo& test) override {
        std::string name = std::string(test.test_suite_name()) + "." + test.name();
        long milliseconds = (std::clock() - started_) / (CLOCKS_PER_SEC / 1000);
        write(name, milliseconds, !test.result()->Failed());
    }

  private:
    std::ofstream out_;
    std::clock_t started_ = 0;

    void write(const std::string& name, long milliseconds, bool passed) {
        out_ << "{\"test\":\"" << name << "\",\"ms\":" << milliseconds
             << ",\"passed\":" << (passed ? "true" : "false") << ",\"reached\":{";
        write_reached(out_);
        out_ << "}}" << std::endl;
    }
};

// Before every other initialisation of the program, so that mutants in tables count, too.
__attribute__((init_priority(101))) struct Start {
    Start() {
        if (const char* path = std::getenv("VX_REACHED"))
            testing::UnitTest::GetInstance()->listeners().Append(new Keeper(path));
    }
} start;

} // namespace

vx_mutants::Source vx_mutants::enter(const char* path, int count) {
    auto [source, is_new] = sources().try_emplace(path, Reached{count, nullptr});
    if (is_new)
        source->second.marks = make_marks(count + 1);
    const char* wanted = std::getenv("VX_MUTANT");
    std::size_t length = std::strlen(path);
    bool is_here = wanted && std::strncmp(wanted, path, length) == 0 && wanted[length] == ':';
    return {is_here ? std::atoi(wanted + length + 1) : 0, source->second.marks};
}
