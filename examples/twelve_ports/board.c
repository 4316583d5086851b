// The board's state and its lock.
#include "board.h"

#include <pthread.h>
#include <string.h>

#include "platform/port.h"
#include "platform/rate.h"

struct Port board_ports[LOGICAL_PORTS];
struct PoePort board_poe[POE_PORTS];
struct Vlan board_vlans[VLAN_COUNT];

static pthread_mutex_t board_lock = PTHREAD_MUTEX_INITIALIZER;
static pthread_once_t built = PTHREAD_ONCE_INIT;

// The switch as it comes: everything on, all ports untagged in VLAN 1.
static void build_board(void) {
    for (int port = 0; port < LOGICAL_PORTS; ++port) {
        board_ports[port] = (struct Port){
            .enable = 1,
            .automatic_speed = 1,
            .automatic_duplex = 1,
            .media_10g = PORT_10G_MEDIA_10G,
            .rx_kbps = RATE_UNLIMITED,
            .tx_kbps = RATE_UNLIMITED,
            .pvid = VLAN_FIRST};
        set_bit(board_vlans[VLAN_FIRST].untagged.words, port, 1);
    }
    for (int port = 0; port < POE_PORTS; ++port)
        board_poe[port] = (struct PoePort){
            .enable = 1, .limit_type = POE_LIMIT_BY_CLASS, .user_limit = 150, .classification = 1};
    board_vlans[VLAN_FIRST].exists = 1;
    strcpy(board_vlans[VLAN_FIRST].name, "default");
}

void lock_board(void) {
    pthread_once(&built, build_board);
    pthread_mutex_lock(&board_lock);
}

int unlock_board(int code) {
    pthread_mutex_unlock(&board_lock);
    return code;
}

int get_word(const uint32_t* place, uint32_t* value) {
    lock_board();
    *value = *place;
    return unlock_board(OK);
}

int set_word(uint32_t* place, long long value, long long low, long long high) {
    if (!is_within(value, low, high))
        return BAD_VALUE;
    lock_board();
    *place = (uint32_t)value;
    return unlock_board(OK);
}

static uint32_t* member_of(int port, size_t member) {
    return (uint32_t*)((char*)&board_ports[port] + member);
}

int get_of_port(int port, size_t member, uint32_t* value) {
    return is_port(port) ? get_word(member_of(port, member), value) : BAD_VALUE;
}

int set_of_port(int port, size_t member, long long value, long long low, long long high) {
    return is_port(port) ? set_word(member_of(port, member), value, low, high) : BAD_VALUE;
}

int get_text(const char* place, char* text) {
    lock_board();
    strcpy(text, place);
    return unlock_board(OK);
}

int set_text(char* place, const char* text, size_t size) {
    if (strlen(text) >= size)
        return BAD_TEXT;
    lock_board();
    strcpy(place, text);
    return unlock_board(OK);
}
