# What a Debian machine needs to build and run this project, and how it gets it. Sourced.

build_packages=(
  cmake ninja-build pkg-config g++ libc6-dev
  libcurl4-openssl-dev libmbedtls-dev libcjson-dev
  libssl-dev libcpp-httplib-dev nlohmann-json3-dev libvalijson-dev libsqlite3-dev
  zlib1g-dev
  python3 python3-jsonschema)
check_packages=(
  libgtest-dev libbenchmark-dev clang-14 libclang-rt-14-dev clang-format-14 clang-tidy-14 cppcheck
  binutils curl strace systemd python3-clang-14 lld-14
  chromium chromium-driver python3-selenium fonts-dejavu-core)
# A Node.js of somebody's own brings npm along, and goes with no other.
command -v npm >/dev/null || check_packages+=(npm)
package_packages=(build-essential debhelper dh-python dpkg-dev git lintian mmdebstrap)
mips_packages=(g++-mipsel-linux-gnu qemu-user-static)

missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f '${Status}\n' "$package" 2>/dev/null | grep -q 'ok installed' ||
      echo "$package"
  done
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# Installs those of the named packages that are missing.
need_packages() {
  local missing
  missing=$(missing_packages "$@")
  [ -z "$missing" ] && return
  echo "Installing:" $missing
  as_root env DEBIAN_FRONTEND=noninteractive apt-get update -q >/dev/null
  # shellcheck disable=SC2086
  as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -q --no-install-recommends $missing >/dev/null
}
