// How the switch names itself to its cloud: by its MAC.
#pragma once

// Reads the switch's MAC address into macstr and macaddrstr. One that cannot be read counts as
// 00:00:00:00:00:00.
void name_switch();

// Makes the path of every check-in, which names the switch by macaddrstr, in Checkinstr.
void format_checkin_path();
