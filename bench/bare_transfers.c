/* The transfers of an agent and nothing else: a POST over TLS now and then, and a long-poll on a
   thread of its own, whose answers it tells on its standard output. Also the least that a client of
   the keeper channel can be.

       bare_transfers LISTEN_URL [POST_URL AUTHORITIES BYTES] */
#include <curl/curl.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum { CHECKIN_INTERVAL = 300, LISTEN_TIMEOUT = 1800, PAUSE_AFTER_FAILURE = 10 };

static size_t take(char* data, size_t size, size_t count, void* told) {
    (void)data;
    *(size_t*)told += size * count;
    return size * count;
}

static CURL* new_transfer(const char* url, size_t* taken) {
    CURL* transfer = curl_easy_init();
    curl_easy_setopt(transfer, CURLOPT_URL, url);
    curl_easy_setopt(transfer, CURLOPT_WRITEFUNCTION, take);
    curl_easy_setopt(transfer, CURLOPT_WRITEDATA, taken);
    curl_easy_setopt(transfer, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(transfer, CURLOPT_PROXY, "");
    curl_easy_setopt(transfer, CURLOPT_TCP_KEEPALIVE, 1L);
    return transfer;
}

static void* listen_for_ever(void* url) {
    for (;;) {
        size_t taken = 0;
        CURL* transfer = new_transfer(url, &taken);
        curl_easy_setopt(transfer, CURLOPT_TIMEOUT, (long)LISTEN_TIMEOUT);
        CURLcode result = curl_easy_perform(transfer);
        curl_easy_cleanup(transfer);
        printf("answer %d, %zu bytes\n", (int)result, taken);
        fflush(stdout);
        if (result != CURLE_OK)
            sleep(PAUSE_AFTER_FAILURE);
    }
    return NULL;
}

static void post(const char* url, const char* authorities, const char* body) {
    size_t taken = 0;
    CURL* transfer = new_transfer(url, &taken);
    struct curl_slist* headers = curl_slist_append(NULL, "Content-Type: application/json");
    curl_easy_setopt(transfer, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(transfer, CURLOPT_POSTFIELDS, body);
    curl_easy_setopt(transfer, CURLOPT_CAPATH, authorities);
    curl_easy_setopt(transfer, CURLOPT_CAINFO, NULL);
    CURLcode result = curl_easy_perform(transfer);
    curl_slist_free_all(headers);
    curl_easy_cleanup(transfer);
    printf("posted %d, %zu bytes\n", (int)result, taken);
    fflush(stdout);
}

static void post_for_ever(char** arguments) {
    size_t size = (size_t)atol(arguments[2]);
    for (;;) {
        char* body = malloc(size + 1); /* made for each, as a report is */
        memset(body, 'x', size);
        body[size] = '\0';
        post(arguments[0], arguments[1], body);
        free(body);
        sleep(CHECKIN_INTERVAL);
    }
}

int main(int argc, char** argv) {
    if (argc != 2 && argc != 5) {
        fputs("usage: bare_transfers LISTEN_URL [POST_URL AUTHORITIES BYTES]\n", stderr);
        return EXIT_FAILURE;
    }
    curl_global_init(CURL_GLOBAL_DEFAULT);
    pthread_t listener;
    pthread_create(&listener, NULL, listen_for_ever, argv[1]);
    if (argc == 5)
        post_for_ever(argv + 2);
    pthread_join(listener, NULL);
}
