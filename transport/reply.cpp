// Capture of replies, chunk by chunk.
#include "transport/reply.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/debug.h"

namespace {

size_t append_to_file(const char* path, const char* data, size_t bytes) {
    FILE* file = fopen(path, "a");
    if (!file)
        return bytes;
    size_t written = fwrite(data, 1, bytes, file);
    fclose(file);
    return written;
}

// The descriptor is emptied with its text, so that nobody frees or reads it afterwards.
size_t abandon_text(api_reply* reply) {
    debug_print("cannot allocate buffer for output\n");
    free(reply->text);
    reply->text = nullptr;
    reply->length = 0;
    return 0;
}

size_t append_to_text(api_reply* reply, const char* data, size_t bytes) {
    size_t kept = reply->text ? reply->length - 1 : 0;
    if (bytes > reply->limit - kept)
        return abandon_text(reply);
    char* grown = static_cast<char*>(realloc(reply->text, kept + bytes + 1));
    if (!grown)
        return abandon_text(reply);
    memcpy(grown + kept, data, bytes);
    grown[kept + bytes] = '\0';
    reply->text = grown;
    reply->length = static_cast<uint32_t>(kept + bytes + 1);
    return bytes;
}

} // namespace

size_t api_write_cb(char* data, size_t size, size_t count, void* descriptor) {
    size_t bytes = size * count;
    api_reply* reply = static_cast<api_reply*>(descriptor);
    if (!reply) {
        debug_print("reply ignored\n");
        return bytes;
    }
    if (reply->type == REPLY_TO_FILE)
        return append_to_file(reply->path, data, bytes);
    if (reply->type == REPLY_IN_MEMORY)
        return append_to_text(reply, data, bytes);
    return bytes;
}

size_t api_head_cb(char*, size_t size, size_t count, void* descriptor) {
    size_t bytes = size * count;
    api_reply* reply = static_cast<api_reply*>(descriptor);
    if (!reply)
        return bytes;
    if (bytes > LONGEST_HEAD - reply->head_length)
        return 0;
    reply->head_length += static_cast<uint32_t>(bytes);
    return bytes;
}

int file_exists(const char* path) {
    struct stat status;
    int exists = stat(path, &status) == 0;
    debug_print("%s: %i\n\n", path, exists);
    return exists;
}

int file_trunc_to_zero(const char* path) {
    debug_print("fpath = %s\n\n", path);
    int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (file >= 0)
        close(file);
    return 0;
}
