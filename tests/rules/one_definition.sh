#!/usr/bin/env bash
# A name means one thing in the whole agent: the link-time optimiser sees every type at once.
set -euo pipefail
source=$1
build=$2
. "$source/tests/rules/null_agent.sh"
build_null_agent "$source" "$build" -DCMAKE_BUILD_TYPE=Debug \
  "-DCMAKE_CXX_FLAGS=-O0 -flto -Wodr -Wlto-type-mismatch -Werror" \
  -DCMAKE_AR="$(command -v gcc-ar)" -DCMAKE_RANLIB="$(command -v gcc-ranlib)"
# An agent without the optimiser's part would pass unseen.
readelf -S "$build"/agent/base/libvx_base.a | grep 'gnu.lto_' > /dev/null || {
  echo "the objects were not made for link-time optimisation"
  exit 1
}
