// Checks of texts that come from the cloud.
#pragma once

extern "C" {

// A dotted IPv4 address: four numbers below 256. Returns 0, ERROR_NO_SECTION for null,
// ERROR_REFUSED for a part that is no such number (or where memory is short), or the code of the
// platform's tokenizer, which is also recorded, when there are fewer than four parts.
int ipv4_addr_validate(const char* text);

// A device name: ASCII letters, digits and "-", beginning with a letter and not ending with "-", of
// any length. Returns 0, ERROR_NO_SECTION for null, ERROR_BAD_VALUE for any other text.
int systemName_validate(const char* name);
}
