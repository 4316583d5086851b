# What the simulated board takes over from the agent at link time, under every name that a C library
# and its large-file, 64-bit-time and fortify macros give it. sim/edges/ answers
# them; a test compares this list with what the agent's objects call.
set(VX_EDGES
  open open64 __open_2 __open64_2
  fopen fopen64
  stat stat64 __stat64_time64
  unlink close opendir statvfs statvfs64
  ioctl __ioctl_time64
  system sleep
  time __time64
  clock_settime __clock_settime64
  __res_init
  malloc calloc realloc strdup
  pthread_create
  curl_easy_init curl_easy_setopt curl_easy_perform curl_easy_cleanup curl_multi_add_handle)
list(TRANSFORM VX_EDGES PREPEND -Wl,--wrap= OUTPUT_VARIABLE VX_WRAP_EDGES)
