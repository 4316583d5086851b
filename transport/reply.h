// Where the reply of a transfer goes, and the libcurl callback that puts it there.
#pragma once

#include <stddef.h>
#include <stdint.h>

// Any other type of reply is discarded too.
enum { REPLY_DISCARD = 0, REPLY_TO_FILE = 1, REPLY_IN_MEMORY = 2 };

// The longest replies that are taken into memory, in bytes as they are after decoding: a document
// of settings, and a few words. Whoever is in the way of a transfer could fill the memory
// otherwise.
enum { LONGEST_DOCUMENT = 1048576, LONGEST_NOTE = 65536 };

// The longest head of a reply: its status line, header lines and trailers in bytes, and those of
// the preliminary replies before it. libcurl keeps them all until the transfer ends.
enum { LONGEST_HEAD = 65536 };

struct api_reply {
    uint32_t type;
    union {
        const char* path; // REPLY_TO_FILE: every chunk is appended to this file
        char* text;       // REPLY_IN_MEMORY: null until something arrives, then NUL-terminated;
                          // whoever made the descriptor frees it with free()
    };
    uint32_t length;                   // REPLY_IN_MEMORY: bytes in `text` with its terminator
    uint32_t limit = LONGEST_DOCUMENT; // REPLY_IN_MEMORY: most bytes without it
    uint32_t head_length = 0;          // bytes of the head that have arrived
};

extern "C" {

// A CURLOPT_WRITEFUNCTION whose CURLOPT_WRITEDATA is an api_reply or null. Returns the bytes taken;
// a file that cannot be opened takes all of them and loses them. Where memory is short, or the
// text would exceed its limit, it is freed, the descriptor is empty again, and the result 0 makes
// libcurl end the transfer.
size_t api_write_cb(char* data, size_t size, size_t count, void* descriptor);

// A CURLOPT_HEADERFUNCTION whose CURLOPT_HEADERDATA is an api_reply or null: counts the bytes of
// the head. Returns them, or 0 where there are more than LONGEST_HEAD, which makes libcurl end the
// transfer.
size_t api_head_cb(char* data, size_t size, size_t count, void* descriptor);

// 1 if `path` exists in any form, else 0.
int file_exists(const char* path);

// Empties `path`, or creates it empty with mode 0644. Returns 0, also where that is not possible.
int file_trunc_to_zero(const char* path);
}
