// The agent on this library, tried on a workstation: its files lie under a folder, it runs no
// commands, leaves the clock alone, and sleeps a thirtieth of the time. A switch needs nothing of
// this.
//
//     vx_cloud_twelve_ports ROOT CHECKIN_HOST KEEPER_HOST KEY SECRET
#define _POSIX_C_SOURCE 200809L

#include <curl/curl.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "platform/vxcloud.h"

enum { TIMES_FASTER = 30, PATH_SIZE = 1024 };

int __real_main(int argc, char** argv);
int __real_open(const char* path, int flags, ...);
FILE* __real_fopen(const char* path, const char* mode);
int __real_stat(const char* path, struct stat* status);
int __real_unlink(const char* path);
CURLcode __real_curl_easy_setopt(CURL* transfer, CURLoption option, ...);

int __wrap_main(int argc, char** argv);
int __wrap_open(const char* path, int flags, ...);
int __wrap_open64(const char* path, int flags, ...);
FILE* __wrap_fopen(const char* path, const char* mode);
FILE* __wrap_fopen64(const char* path, const char* mode);
int __wrap_stat(const char* path, struct stat* status);
int __wrap_stat64(const char* path, struct stat* status);
int __wrap_unlink(const char* path);
int __wrap_system(const char* command);
unsigned __wrap_sleep(unsigned seconds);
int __wrap_clock_settime(clockid_t clock, const struct timespec* now);
CURLcode __wrap_curl_easy_setopt(CURL* transfer, unsigned option, ...);

static const char* root;

static const char* under_root(const char* path, char* whole) {
    snprintf(whole, PATH_SIZE, "%s%s", root, path);
    return whole;
}

int __wrap_main(int argc, char** argv) {
    if (argc != 6) {
        fputs("usage: vx_cloud_twelve_ports ROOT CHECKIN_HOST KEEPER_HOST KEY SECRET\n", stderr);
        return 2;
    }
    root = argv[1];
    int refused = sal_vxcloud_checkin_host_set(argv[2]) || sal_vxcloud_fallback_host_set(argv[2]) ||
                  sal_vxcloud_connkeeper_host_set(argv[3]) || sal_vxcloud_key_set(argv[4]) ||
                  sal_vxcloud_secret_set(argv[5]);
    return refused ? 2 : __real_main(1, argv);
}

// The board has a console that shows nothing, and no device for the driver.
int __wrap_open(const char* path, int flags, ...) {
    char whole[PATH_SIZE];
    return __real_open(under_root(path, whole), flags, 0644);
}

int __wrap_open64(const char* path, int flags, ...) { return __wrap_open(path, flags); }

FILE* __wrap_fopen(const char* path, const char* mode) {
    char whole[PATH_SIZE];
    return __real_fopen(under_root(path, whole), mode);
}

FILE* __wrap_fopen64(const char* path, const char* mode) { return __wrap_fopen(path, mode); }

int __wrap_stat(const char* path, struct stat* status) {
    char whole[PATH_SIZE];
    return __real_stat(under_root(path, whole), status);
}

int __wrap_stat64(const char* path, struct stat* status) { return __wrap_stat(path, status); }

int __wrap_unlink(const char* path) {
    char whole[PATH_SIZE];
    return __real_unlink(under_root(path, whole));
}

int __wrap_system(const char* command) {
    fprintf(stderr, "not run: %s\n", command);
    return -1;
}

unsigned __wrap_sleep(unsigned seconds) {
    struct timespec pause = {
        seconds / TIMES_FASTER, seconds % TIMES_FASTER * (1000000000 / TIMES_FASTER)};
    nanosleep(&pause, NULL);
    return 0;
}

int __wrap_clock_settime(clockid_t clock, const struct timespec* now) {
    (void)clock, (void)now;
    errno = EPERM;
    return -1;
}

CURLcode __wrap_curl_easy_setopt(CURL* transfer, unsigned option, ...) {
    char whole[PATH_SIZE];
    va_list arguments;
    va_start(arguments, option);
    CURLcode code;
    if (option >= CURLOPTTYPE_OFF_T && option < CURLOPTTYPE_BLOB)
        code = __real_curl_easy_setopt(transfer, (CURLoption)option, va_arg(arguments, curl_off_t));
    else if (option < CURLOPTTYPE_OBJECTPOINT)
        code = __real_curl_easy_setopt(transfer, (CURLoption)option, va_arg(arguments, long));
    else if (option == CURLOPT_CAPATH)
        code = __real_curl_easy_setopt(
            transfer, CURLOPT_CAPATH, under_root(va_arg(arguments, const char*), whole));
    else
        code = __real_curl_easy_setopt(transfer, (CURLoption)option, va_arg(arguments, void*));
    va_end(arguments);
    return code;
}
