// Which places of the program the inputs have reached, for unreached.py.
#pragma once

// To be called at the end of a run, while the fuzzer's counters are those of the run. Where the
// environment names a file in REACHED_PLACES, the program's end writes into it a line a place, its
// address within the program with "+" before it when it was reached and "-" when it was not.
void note_reached();
