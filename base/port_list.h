// The cloud's text form of a set of ports: numbers from 1, joined by ",", a run of two or more as
// first "-" last, such as "1,3-5,8". No port is the empty text.
#pragma once

#include <stdint.h>

// Room for any list of the 96 ports of a bitmap. A run of two and the gap behind it are three
// ports and at most six characters ("94-95,"), which no other pattern exceeds.
enum { PORT_LIST_SIZE = 192 };

extern "C" {

// Appends the list of a port bitmap (three words; see PortBitmap) to `text`, which is terminated
// and has PORT_LIST_SIZE bytes left. Ports that the switch does not have are left out. Returns 0.
int Bitmap2numstr(const uint32_t* bitmap, char* text);

// Adds the listed ports to `bitmap`. It knows no highest port: the caller makes sure that the
// bitmap has room for every number in the text. Returns 0, or -1 for a text that is not a list,
// with the ports before the fault added, and the first port of a range that is at fault.
int Numstr2bitmap(const char* text, uint32_t* bitmap);
}
