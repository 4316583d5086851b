"""Every call by which the agent could touch the workstation is taken over at link time.

What the agent's objects call is either the agent's, the platform library's, a packaged library's, a
harmless function of the C library that is listed here, or an edge that cmake/Edges.cmake wraps. A
call that is none of these fails the test: a new edge, or a new name for an old one."""
import pathlib
import re
import subprocess
import sys

HARMLESS = """
    abort snprintf __snprintf_chk vsnprintf __vsnprintf_chk sprintf __sprintf_chk __printf_chk __fprintf_chk
    __memcpy_chk sscanf __isoc99_sscanf
    __isoc23_sscanf strlen strcmp strncmp strcasecmp strncasecmp strcpy strncpy strchr strrchr strstr
    strcspn strspn strtok_r strtol strtoul strtoull strtod __isoc23_strtol __isoc23_strtoul strnlen
    strdup strndup strerror memcpy memset memmove memcmp memchr explicit_bzero free atoi qsort
    write read __read_chk fstat fstat64 __fstat64_time64 __errno_location perror stderr stdout printf puts fputs fflush putchar fputc
    fclose fread fwrite feof ferror fgets fgetc getc fprintf fputs __fdelt_chk __assert_fail
    mktime gmtime_r random getpid unsetenv signal sigaction sigemptyset sigaddset raise poll
    floor floorf fabs trunc isdigit isspace __ctype_b_loc __ctype_tolower_loc tolower
    __stack_chk_fail _GLOBAL_OFFSET_TABLE_ localeconv
""".split()
# What the doctor calls besides. It looks at the switch and the network, and seeds its nonces, which the
# agent must not do.
HARMLESS_TO_THE_DOCTOR = """
    __isoc99_fscanf __isoc23_fscanf closedir readdir readdir64 getaddrinfo freeaddrinfo gai_strerror
    kill putc srandom strftime
""".split()
PACKAGED = re.compile(r"^(curl_|cJSON_|mbedtls_|pthread_|__pthread|_pthread|_Unwind)")
COMPILER = re.compile(r"^(__asan|__ubsan|__sanitizer|__lsan|__sancov|__gcov|_Z|__gxx|__cxa_|__dso_handle)")
DECLARED = re.compile(r"\b([A-Za-z_]\w*)\s*(?:\(|;|\[)")


def symbols(nm, archives, kinds):
    lines = subprocess.run([nm, "--no-sort", *archives], check=True, capture_output=True,
                           text=True).stdout.splitlines()
    found = set()
    for line in lines:
        words = line.split()
        if len(words) >= 2 and words[-2] in kinds:
            found.add(words[-1])
    return found


def wrapped(root):
    text = (root / "cmake/Edges.cmake").read_text()
    return set(re.search(r"set\(VX_EDGES(.*?)\)", text, re.S).group(1).split())


def contract(root):
    names = set()
    for header in (root / "platform").glob("*.h"):
        text = re.sub(r"//.*", "", header.read_text())
        names.update(DECLARED.findall(text))
    return names


def main(nm, root, archives):
    doctor = any("vx_doctor" in archive for archive in archives)
    called = symbols(nm, archives, {"U", "w"})
    own = symbols(nm, archives, set("TtDdBbRrVvWwCSsGiu"))
    unknown = called - own - wrapped(root) - contract(root) - set(HARMLESS)
    unknown -= set(HARMLESS_TO_THE_DOCTOR) if doctor else set()
    unknown = {name for name in unknown if not PACKAGED.match(name) and not COMPILER.match(name)}
    for name in sorted(unknown):
        print(f"{name}: called by the agent, neither wrapped nor known to be harmless")
    print(f"{len(called - own)} names from outside, {len(called & wrapped(root))} of them wrapped")
    return 1 if unknown or not called & wrapped(root) else 0


sys.exit(main(sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3:]))
