# The agent as it ships, on a platform library that does nothing. Sourced.

build_null_agent() { # <source> <build> <cmake argument...>
  local source=$1 build=$2
  shift 2
  mkdir -p "$build"
  python3 "$source/packaging/null_platform.py" "$source"/platform/*.h > "$build/null_platform.c"
  gcc -shared -fPIC -w -I"$source" "$build/null_platform.c" -o "$build/libnull_platform.so"
  cmake -S "$source" -B "$build/agent" -G Ninja -DVX_WORKSTATION=OFF -DCMAKE_C_COMPILER=gcc \
    -DCMAKE_CXX_COMPILER=g++ -DPLATFORM_LIBRARY="$build/libnull_platform.so" "$@" \
    > "$build/configure.log"
  cmake --build "$build/agent" --target vx_cloud vx_cloud_doctor > "$build/build.log" || {
    cat "$build/build.log"
    return 1
  }
}
