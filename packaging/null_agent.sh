# The agent as it ships, on a platform library that does nothing. Sourced.

# What docs/porting.md tells for a small agent.
small_build=(-DCMAKE_BUILD_TYPE=MinSizeRel -DCMAKE_INTERPROCEDURAL_OPTIMIZATION=ON)

# build_null_agent <build> [cmake argument...]: BUILD/vx_cloud as it is linked, and stripped as
# BUILD/stripped. The toolchain is the machine's own, or that of VX_ARCHITECTURE with its root in
# VX_SYSROOT.
build_null_agent() {
  local source build=$1 compiler=gcc strip=strip target=(-DCMAKE_C_COMPILER=gcc -DCMAKE_CXX_COMPILER=g++)
  source=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
  shift
  if [ -n "${VX_ARCHITECTURE-}" ]; then
    compiler="$VX_ARCHITECTURE-linux-gnu-gcc --sysroot=$VX_SYSROOT"
    strip=$VX_ARCHITECTURE-linux-gnu-strip
    target=(-DCMAKE_TOOLCHAIN_FILE="$source/packaging/mips/toolchain.cmake"
            -DVX_ARCHITECTURE="$VX_ARCHITECTURE" -DVX_SYSROOT="$VX_SYSROOT")
  fi
  mkdir -p "$build"
  python3 "$source/tools/null_platform.py" "$source"/platform/*.h > "$build/null_platform.c"
  $compiler -shared -fPIC -w -I"$source" "$build/null_platform.c" -o "$build/libnull_platform.so"
  cmake -S "$source" -B "$build" -G Ninja "${target[@]}" -DVX_WORKSTATION=OFF \
    -DPLATFORM_LIBRARY="$build/libnull_platform.so" "$@" > "$build/configure.log"
  cmake --build "$build" --target vx_cloud vx_cloud_doctor > "$build/build.log" || {
    cat "$build/build.log"
    return 1
  }
  "$strip" -s -R .comment -R .pdr -o "$build/stripped" "$build/vx_cloud"
}
