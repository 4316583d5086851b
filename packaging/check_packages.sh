#!/usr/bin/env bash
# Builds the Debian packages from a clean clone, has lintian look at them, installs them in a clean
# root, tries them there and removes them without a trace.
#
#     check_packages.sh [FOLDER]    FOLDER is made anew [build/packages]
set -euo pipefail
source=$(cd "$(dirname "$0")/.." && pwd)
cd "$source"
. packaging/requirements.sh
need_packages "${build_packages[@]}" "${package_packages[@]}"

folder=$(realpath -m "${1-build/packages}")
rm -rf "$folder"
mkdir -p "$folder"
version=$(dpkg-parsechangelog -l debian/changelog -S Version)

say() { echo "--- $*"; }

build() {
  say "building $version from a clean clone"
  git clone -q --no-hardlinks . "$folder/vx-cloud-$version"
  (cd "$folder/vx-cloud-$version" && dpkg-buildpackage -us -uc > "$folder/build.log" 2>&1) || {
    tail -50 "$folder/build.log" | cut -c1-200
    return 1
  }
  grep -E '[0-9]+ names from outside' "$folder/build.log"
  if grep -E 'warning:' "$folder/build.log"; then
    echo "the build has warnings"
    return 1
  fi
}

look() {
  say "lintian"
  local allow=()
  [ "$(id -u)" -ne 0 ] || allow=(--allow-root)
  lintian "${allow[@]}" --fail-on error,warning "$folder"/vx-cloud_*.changes
}

# What the packages and their tests need of the distribution: it is there before they come.
needed() {
  for package in "$folder"/in/*.deb; do
    dpkg-deb -f "$package" Depends
  done | cat - <(sed -n 's/^Depends: //p' debian/tests/control) | tr ',' '\n' | sed 's/^ *//' |
    grep -v '^vx-cloud-' | grep . | sort -u | paste -sd,
}

# The machine's own sources, and its ways to them.
sources() { find /etc/apt -name '*.list' -size +0 -o -name '*.sources'; }

try() {
  say "a clean root"
  apt-config dump | grep '^Acquire::' > "$folder/apt.conf"
  mkdir "$folder/in"
  find "$folder" -maxdepth 1 -name '*.deb' ! -name '*-dbgsym_*' -exec cp -t "$folder/in" {} +
  cp packaging/try_packages.sh "$folder/in"
  cp -r debian/tests "$folder/in/tests"
  needed > "$folder/in/needed"
  # shellcheck disable=SC2046
  mmdebstrap --quiet --variant=apt --aptopt="$folder/apt.conf" \
    --customize-hook="copy-in '$folder/in' /root" \
    --customize-hook='chroot "$1" bash /root/in/try_packages.sh' \
    "$(. /etc/os-release && echo "$VERSION_CODENAME")" /dev/null $(sources)
}

build
look
try
say "packages are well"
