#!/usr/bin/env bash
# Prints how large the agent is for the switch's processor, built in the ways that docs/performance.md
# names. Each way is built in a folder of BUILD (build/mipsel-sizes).
set -euo pipefail
cd "$(dirname "$0")/../.."
. packaging/requirements.sh
. packaging/null_agent.sh
need_packages "${build_packages[@]}" "${mips_packages[@]}"
build=${1:-build/mipsel-sizes}
mkdir -p "$build"
build=$(realpath "$build")
export VX_ARCHITECTURE=mipsel VX_SYSROOT=$PWD/build/sysroot/mipsel
packaging/mips/make_sysroot.sh mipsel "$VX_SYSROOT"

print_size() { # <what> <cmake argument...>
  local what=$1
  shift
  build_null_agent "$build/${what//[^a-z0-9]/_}" "$@" > /dev/null
  printf '| %s | %s |\n' "$what" "$(stat -c %s "$build/${what//[^a-z0-9]/_}/stripped")"
}

linked="-DVX_LINK_OPTIONS=-Wl,--as-needed;-static-libgcc"
small=-DCMAKE_BUILD_TYPE=MinSizeRel
fixed=(-DCMAKE_POSITION_INDEPENDENT_CODE=OFF "-DCMAKE_CXX_FLAGS=-fno-pic -mplt -mno-shared"
       -DCMAKE_EXE_LINKER_FLAGS=-no-pie)
printf '| build | bytes, stripped |\n|---|---|\n'
print_size "Release, every name visible" -DCMAKE_BUILD_TYPE=Release -DVX_VISIBILITY=default "$linked"
print_size "MinSizeRel" $small -DVX_VISIBILITY=default "$linked"
print_size "and names hidden but for the driver functions" $small "$linked"
print_size "and what nobody calls left out" $small
print_size "and optimised when it is linked" "${small_build[@]}"
print_size "and at a fixed place" "${small_build[@]}" "${fixed[@]}"
