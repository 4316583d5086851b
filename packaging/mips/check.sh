#!/usr/bin/env bash
# Builds the agent, the simulated switch and their tests for the switch's processor, 32-bit MIPS, and
# runs them under qemu: where a long, a pointer and a time_t have four bytes, words must be aligned,
# and SIGUSR1 is 16. Installs what is missing.
#
#     packaging/mips/check.sh [BUILD...]      mipsel, mipsel-time64, shipped, end_to_end; all by default
set -euo pipefail
cd "$(dirname "$0")/../.."
. packaging/requirements.sh
[ $# -gt 0 ] || set -- mipsel mipsel-time64 shipped end_to_end

need_packages "${build_packages[@]}" "${mips_packages[@]}"
sysroot=$PWD/build/sysroot/mipsel
packaging/mips/make_sysroot.sh mipsel "$sysroot"

build() { # <preset> [target...]
  cmake --preset "$1" > /dev/null
  cmake --build --preset "$1" ${2:+--target "${@:2}"}
}

run_suites() { # <preset>
  build "$1"
  ctest --preset "$1" --parallel "$(nproc)"
}

# The size of what ships, loaded anywhere and at a fixed place.
look_at_what_ships() {
  export VX_ARCHITECTURE=mipsel VX_SYSROOT=$sysroot
  tests/rules/shipped_agent.sh build/mipsel-shipped 190000
  tests/rules/shipped_agent.sh build/mipsel-shipped-fixed 160000 \
    -DCMAKE_POSITION_INDEPENDENT_CODE=OFF "-DCMAKE_CXX_FLAGS=-fno-pic -mplt -mno-shared" \
    "-DCMAKE_EXE_LINKER_FLAGS=-no-pie -Wodr -Wlto-type-mismatch -Werror"
}

# The emulated switch checks in to a lab of this machine's own.
check_in() {
  local pair=$PWD/build/mipsel-pair
  build mipsel vx_cloud_sim
  build release lab_cloud
  mkdir -p "$pair"/{lab,sim}
  ln -sfn "$PWD/build/release/lab/lab_cloud" "$pair/lab/lab_cloud"
  printf '#!/bin/sh\nexec qemu-mipsel-static -L "%s" "%s" "$@"\n' \
    "$sysroot" "$PWD/build/mipsel/sim/vx_cloud_sim" > "$pair/sim/vx_cloud_sim"
  chmod +x "$pair/sim/vx_cloud_sim"
  cd tests/end_to_end
  VX_BUILD=$pair PYTHONPATH=$PWD/../../tools python3 -B -m unittest checkin_test keeper_test
  cd ../..
}

for part in "$@"; do
  case $part in
    mipsel | mipsel-time64) run_suites "$part" ;;
    shipped) look_at_what_ships ;;
    end_to_end) check_in ;;
    *) sed -n '6s/^# *//p' "$0" >&2; exit 2 ;;
  esac
done
