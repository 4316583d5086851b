#!/usr/bin/env bash
# The agent and the doctor as they ship, on a platform library that does nothing: it links without the simulated
# switch, needs no C++ run-time library, and exports the driver functions to its platform library.
set -euo pipefail
source=$1
build=$2
. "$source/tests/rules/null_agent.sh"
build_null_agent "$source" "$build" -DCMAKE_BUILD_TYPE=MinSizeRel
cd "$build"
for program in vx_cloud vx_cloud_doctor; do
  readelf -d agent/$program | grep NEEDED
  if readelf -d agent/$program | grep -E 'NEEDED.*(libstdc\+\+|libgcc_s)'; then
    echo "$program needs the C++ run-time library"
    exit 1
  fi
done
nm -D --defined-only agent/vx_cloud > exported
declared=$(find "$source/driver" -name '*.h' ! -name shapes.h \
  -exec sed -n 's/^int \([A-Za-z0-9_]*\)(.*/\1/p' {} +)
[ "$(wc -w <<< "$declared")" -gt 500 ] || { echo "driver functions were not found"; exit 1; }
for name in $declared; do
  grep -q " T $name\$" exported || { echo "$name is not exported"; exit 1; }
done
size agent/vx_cloud
