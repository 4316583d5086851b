#!/usr/bin/env bash
# The agent as it ships, on a platform library that does nothing: it links without the simulated
# switch, needs no C++ run-time library, and exports the driver functions to its platform library.
set -euo pipefail
source=$1
build=$2
mkdir -p "$build"
cd "$build"
python3 "$source/packaging/null_platform.py" "$source"/platform/*.h > null_platform.c
gcc -shared -fPIC -w -I"$source" null_platform.c -o libnull_platform.so
cmake -S "$source" -B agent -G Ninja -DCMAKE_BUILD_TYPE=MinSizeRel -DVX_WORKSTATION=OFF \
  -DCMAKE_C_COMPILER=gcc -DCMAKE_CXX_COMPILER=g++ \
  -DPLATFORM_LIBRARY="$build/libnull_platform.so" > configure.log
cmake --build agent --target vx_cloud > build.log || { cat build.log; exit 1; }
readelf -d agent/vx_cloud | grep NEEDED
if readelf -d agent/vx_cloud | grep -E 'NEEDED.*(libstdc\+\+|libgcc_s)'; then
  echo "the shipped agent needs the C++ run-time library"
  exit 1
fi
nm -D --defined-only agent/vx_cloud > exported
declared=$(find "$source/driver" -name '*.h' ! -name shapes.h \
  -exec sed -n 's/^int \([A-Za-z0-9_]*\)(.*/\1/p' {} +)
[ "$(wc -w <<< "$declared")" -gt 500 ] || { echo "driver functions were not found"; exit 1; }
for name in $declared; do
  grep -q " T $name\$" exported || { echo "$name is not exported"; exit 1; }
done
size agent/vx_cloud
