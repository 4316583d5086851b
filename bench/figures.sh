#!/usr/bin/env bash
# Prints the figures of docs/performance.md, or writes them there. Takes some minutes and installs
# what is missing. Sizes are printed by packaging/mips/sizes.sh.
#
#     bench/figures.sh [--write]
set -uo pipefail
cd "$(dirname "$0")/.."
. packaging/requirements.sh
build=build/release
sources=$PWD/build/json_sources
page=docs/performance.md

set -e
need_packages "${build_packages[@]}" libbenchmark-dev libgtest-dev rapidjson-dev valgrind strace
bench/json/fetch.sh "$sources"
cmake --preset release "-DVX_CJSON_SOURCE=$sources/cjson" "-DVX_YYJSON_SOURCE=$sources/yyjson" > /dev/null
cmake --build --preset release --target bench_programs lab_cloud vx_cloud_sim > /dev/null
set +e

failed=0
show() { # <title> <command>...
  printf '\n%s\n' "$1"
  shift
  "$@" || { echo "above its limit"; failed=1; }
}

# The cross build that ./check --target mipsel leaves, if it is there.
show_on_target() {
  local root=build/sysroot/mipsel program=build/mipsel/bench/report_heap
  [ -x "$program" ] || return 0
  show "Heap of a report, on the switch's processor" qemu-mipsel-static -L "$root" "$program"
}

figures() {
  echo "$(nproc) processors, load $(cut -d' ' -f1 /proc/loadavg), $(date -u +%F)"
  show "A report as JSON: processor time" $build/bench/json/json_against_others
  show "A driver request against a bare open, ioctl, close" $build/bench/driver_bench
  show "Signing" $build/bench/signing_bench
  show "Instructions" python3 -B bench/instructions.py $build
  show "Heap of a report" $build/bench/report_heap
  show_on_target
  show "From a push to the platform call" python3 -B bench/push_latency.py $build
  show "Memory of an idle agent" python3 -B bench/idle_memory.py $build
  show "The simulated switch on a desk" python3 -B bench/sim_figures.py $build
  return $failed
}

# Between the marks of the page.
write_into_page() {
  awk -v figures="$1" '
    /^<!-- figures -->$/ { print; print "```"; while ((getline line < figures) > 0) print line
                           print "```"; skipping = 1; next }
    /^<!-- end of figures -->$/ { skipping = 0 }
    !skipping' "$page" > "$page.new" && mv "$page.new" "$page"
}

case ${1-} in
  "") figures ;;
  --write)
    text=$(mktemp)
    figures > "$text"
    code=$?
    write_into_page "$text"
    rm "$text"
    exit $code ;;
  *) sed -n '5s/^# *//p' "$0" >&2; exit 2 ;;
esac
