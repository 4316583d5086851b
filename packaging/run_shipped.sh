#!/usr/bin/env bash
# Runs a shipped vx_cloud on a workstation that it cannot touch: its files lie in BOARD, and it may
# not set the clock. Needs no privileges, but a kernel that grants user namespaces.
#
#     run_shipped.sh BOARD PROGRAM [ARGUMENT...]
#
# BOARD/run holds the pid file, BOARD/tmp the local request and what side commands write, BOARD/certs
# the authorities it trusts, BOARD/console the debug texts. There is no /dev/ski: driver functions
# return 501. LD_LIBRARY_PATH tells where the platform library lies, if it is a shared one.
set -euo pipefail
[ $# -ge 2 ] || { sed -n '2,5s/^# \{0,1\}//p' "$0" >&2; exit 2; }
mkdir -p "$1"/{run,tmp,certs}
touch "$1/console"
board=$(realpath "$1")
program=$(realpath "$2")
shift 2
# /tmp comes last: board and program may lie in it.
exec unshare --user --map-root-user --mount sh -c '
  board=$1 program=$2
  shift 2
  exec 3<"$program"
  mount --bind "$board/run" /run
  mount --bind "$board/certs" /etc/ssl/certs
  mount --bind "$board/console" /dev/console
  mount --bind "$board/tmp" /tmp
  exec /proc/self/fd/3 "$@"' sh "$board" "$program" "$@"
