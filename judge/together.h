// Calls from two threads at once, and from a signal handler while the main thread sleeps.
#pragma once

namespace judge {

void judge_two_threads();
void judge_signal_handler();

// While one thread sets and reads back, the other reads everything.
void judge_changes_at_once();

} // namespace judge
