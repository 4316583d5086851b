// How a function of the simulated platform library is written: under the board's lock, in the
// trace, and with the fault plan asked first.
//
//     int sal_port_speed_set(int port, int automatic, int speed) {
//         return call("sal_port_speed_set", [&](Switch& s) { ... return 0; }, port, automatic,
//         speed);
//     }
//
// Only inputs are traced; records are passed as texts. A call that the library makes to itself is
// neither traced nor failed: the agent did not make it.
#pragma once

#include "sim/instruments/codes.h"
#include "sim/instruments/trace.h"
#include "sim/library/board.h"

namespace sim {

// Marks what happens inside the platform library, on this thread.
class InsideLibrary {
  public:
    InsideLibrary() { ++depth_; }
    ~InsideLibrary() { --depth_; }
    InsideLibrary(const InsideLibrary&) = delete;
    InsideLibrary& operator=(const InsideLibrary&) = delete;
    static bool active() { return depth_ > 0; }

  private:
    static thread_local int depth_;
};

// A call that returns 0 or a code.
template <class Body, class... Arguments>
int call(const char* name, Body body, const Arguments&... arguments) {
    Board& here = board();
    bool outermost = !InsideLibrary::active();
    std::lock_guard lock(here.lock);
    InsideLibrary inside;
    auto fault = outermost ? here.faults.hit(Edge::platform, name) : std::nullopt;
    int result = fault ? *fault : body(here.device);
    if (outermost) {
        here.trace.add_call(name, result, arguments...);
        here.carry_out_orders();
    }
    return result;
}

// A call that returns a value and cannot fail.
template <class Body, class... Arguments>
auto value(const char* name, Body body, const Arguments&... arguments) {
    Board& here = board();
    bool outermost = !InsideLibrary::active();
    std::lock_guard lock(here.lock);
    InsideLibrary inside;
    auto result = body(here.device);
    if (outermost)
        here.trace.add_call(name, result, arguments...);
    return result;
}

// Copies a text into a caller's buffer of `size` bytes; a text that does not fit is cut.
void copy_text(char* buffer, std::size_t size, const std::string& text);

} // namespace sim
