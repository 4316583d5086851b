"""Memory of an idle agent against a bare program that makes the same transfers: what is the process's
own once both have made their requests and wait. The agent's holds the simulated switch, too.

    bench/idle_memory.py BUILD [LIBCURL...]

Further libcurls, such as one for another TLS library, are put under the bare program in turn."""
import pathlib
import subprocess
import sys
import time

from pair import (BARE_MAC, anonymous_kilobytes, bare_client, check_in_url, child_of, lab_cloud,
                  listen_url, switch_at)

LIMIT = 512 # kilobytes
SOURCE = pathlib.Path(__file__).resolve().parent / "bare_transfers.c"
REPORT_BYTES = 47000


def bare_memory(lab, program):
    with bare_client(program, listen_url(lab, BARE_MAC), check_in_url(lab, BARE_MAC),
                     lab.ports["ca_dir"], REPORT_BYTES) as bare:
        told = bare.stdout.readline().strip()
        time.sleep(1)
        return anonymous_kilobytes(bare.pid), told


def agent_memory(lab, build, folder):
    with switch_at(lab, build, folder / "switch", 30) as process:
        time.sleep(1)
        return anonymous_kilobytes(child_of(process.child.pid))


def build_with(libcurl, folder):
    program = folder / f"bare_{pathlib.Path(libcurl).name}"
    subprocess.run(["cc", "-O2", "-pthread", str(SOURCE), libcurl, "-o", str(program)], check=True)
    return program


def main(build, libcurls):
    with lab_cloud(build) as (lab, folder):
        agent = agent_memory(lab, build, folder)
        bare, told = bare_memory(lab, build / "bench/bare_transfers")
        print(f"agent with the simulated switch {agent:8} kB")
        print(f"bare program                    {bare:8} kB   {told}")
        print(f"difference                      {agent - bare:8} kB   (limit {LIMIT})")
        for libcurl in libcurls:
            kilobytes, told = bare_memory(lab, build_with(libcurl, folder))
            print(f"bare on {pathlib.Path(libcurl).name:23} {kilobytes:8} kB   {told}")
    return 0 if agent - bare <= LIMIT else 1


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve(), sys.argv[2:]))
