#!/usr/bin/env bash
# The agent and its doctor as they ship, on a platform library that does nothing: they link without
# the simulated switch, no name means two things in them, they need no C++ run-time library; the
# agent exports the driver functions to its platform library and nothing else, and it is small.
#
#     shipped_agent.sh BUILD LARGEST_BYTES [CMAKE_ARGUMENT...]
#
# For another processor: VX_ARCHITECTURE and VX_SYSROOT, as in packaging/null_agent.sh.
set -euo pipefail
source=$(cd "$(dirname "$0")/../.." && pwd)
build=$1
largest=$2
shift 2
. "$source/packaging/null_agent.sh"
build_null_agent "$build" "${small_build[@]}" \
  "-DCMAKE_EXE_LINKER_FLAGS=-Wodr -Wlto-type-mismatch -Werror" "$@"
tool=${VX_ARCHITECTURE:+$VX_ARCHITECTURE-linux-gnu-}

for program in vx_cloud vx_cloud_doctor; do
  "${tool}readelf" -d "$build/$program" | grep NEEDED > "$build/needed"
  cat "$build/needed"
  if grep -E 'libstdc\+\+|libgcc_s' "$build/needed"; then
    echo "$program needs the C++ run-time library"
    exit 1
  fi
done

sed -n 's/^int \([A-Za-z0-9_]*\)(.*/\1/p' $(ls "$source"/driver/*.h | grep -v shapes.h) |
  sort > "$build/declared"
"${tool}nm" -D --defined-only "$build/stripped" | awk '$2 == "T" { print $3 }' |
  grep -vxE '_init|_fini|_start|__start|_ftext|main' | sort > "$build/exported"
[ "$(wc -l < "$build/declared")" -gt 500 ] || { echo "driver functions were not found"; exit 1; }
diff "$build/declared" "$build/exported" || {
  echo "< declared by the driver, > exported by the agent"
  exit 1
}

bytes=$(stat -c %s "$build/stripped")
echo "$(wc -l < "$build/exported") driver functions exported; $bytes bytes, at most $largest"
[ "$bytes" -le "$largest" ]
